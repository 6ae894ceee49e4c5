#include "text/Log.h"

#include <locale>

#include "Support.h"

namespace templatenames {
namespace {

/// Groups digits, as the locales of many countries do.
struct TGrouping : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Log, NumbersAreTheSameInEveryLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale(), new TGrouping));
  NQ_EException error("m");
  error.__PREPARE_FOR_THROW__(12345, "f.cpp");
  names_test::Output output;
  Log(0, 1234567, ' ', NQ_TAny(1234567), ' ', error);
  std::ostringstream grouping;
  grouping << error << ' ' << 12345;
  std::locale::global(before);
  EXPECT_EQ(output.Take(), "1234567 1234567 NQ_EException: m (f.cpp:12345)\n");
  EXPECT_EQ(grouping.str(), "NQ_EException: m (f.cpp:12345) 12.345");
}

}  // namespace
}  // namespace templatenames
