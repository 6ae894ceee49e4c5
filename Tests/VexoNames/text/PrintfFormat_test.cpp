#include "text/PrintfFormat.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace templatenames {
namespace {

using TKind = TPrintfFormat::TKind;
using namespace std::string_literals;

NQ_TString Text(const std::string& utf8) { return NQ_TString(std::string_view(utf8)); }

// What printf prints, the slow and obvious way.
template <class TValue>
std::string Printed(const std::string& format, TValue value) {
  const int length = std::snprintf(nullptr, 0, format.c_str(), value);
  std::string printed(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(printed.data(), printed.size(), format.c_str(), value);
  printed.pop_back();
  return printed;
}

TEST(PrintfFormat, Refuses) {
  const char* const kUnfinished = "the format ends within a conversion";
  const char* const kSecond = "the format has more than one conversion";
  const char* const kOtherKind = "the format has a conversion that does not fit the value";
  const char* const kWideField = "a width or precision of the format is over 4096";
  struct {
    std::u16string_view format;
    TKind kind;
    const char* reason;
  } const cases[] = {
      {u"%n", TKind::Integer, kOtherKind},
      {u"%n", TKind::Text, kOtherKind},
      {u"%s", TKind::Integer, kOtherKind},
      {u"%d", TKind::Text, kOtherKind},
      {u"%c", TKind::Text, kOtherKind},
      {u"%f", TKind::Integer, kOtherKind},
      {u"%p", TKind::Integer, kOtherKind},
      {u"%ld", TKind::Integer, kOtherKind},
      {u"%hhd", TKind::Integer, kOtherKind},
      {u"%ls", TKind::Text, kOtherKind},
      {u"%S", TKind::Text, kOtherKind},
      {u"%m", TKind::Text, kOtherKind},
      {u"%*d", TKind::Integer, kOtherKind},
      {u"%.*d", TKind::Integer, kOtherKind},
      {u"%1$d", TKind::Integer, kOtherKind},
      {u"%'d", TKind::Integer, kOtherKind},
      {u"%.-3d", TKind::Integer, kOtherKind},
      {u"%5%", TKind::Integer, kOtherKind},
      {u"%\u0101", TKind::Text, kOtherKind},
      {u"%\uFF44", TKind::Integer, kOtherKind},
      {u"%d%d", TKind::Integer, kSecond},
      {u"%s and %n", TKind::Text, kSecond},
      {u"%d%", TKind::Integer, kSecond},
      {u"%", TKind::Text, kUnfinished},
      {u"100%", TKind::Integer, kUnfinished},
      {u"%-08.3", TKind::Integer, kUnfinished},
      {std::u16string_view(u"%\0d", 3), TKind::Integer, kUnfinished},
      {u"%4097d", TKind::Integer, kWideField},
      {u"%.4097s", TKind::Text, kWideField},
      {u"%99999999999999999999d", TKind::Integer, kWideField},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(NQ_TString(row.format).c_str());
    const char* reason = "accepted";
    EXPECT_FALSE(TPrintfFormat::Parse(row.format, row.kind, &reason));
    EXPECT_STREQ(reason, row.reason);
  }
}

TEST(PrintfFormat, PrintsText) {
  struct {
    std::string format, value, printed;
  } const cases[] = {
      {"%s", "J\u00f8rgen", "J\u00f8rgen"},
      {"%s", "a\0b"s, "a\0b"s},  // plain: the value itself
      {"[%s]", "a\0b"s, "[a]"},
      {"[%s\0]"s, "a", "[a"},
      {"[%5s]", "\u00f8", "[   \u00f8]"},                // two bytes
      {"[%-5.3s]", "\u00f8\u00f8", "[\u00f8\uFFFD  ]"},  // the second is cut
      {"[%.2s]", "\U0001F4C4", "[\uFFFD]"},
      {"\u20ac%.1s\u20ac", "\u00f8", "\u20ac\uFFFD\u20ac"},
      {"no conversion", "unused", "no conversion"},
      {"%%s", "unused", "%s"},
      {"%%%s%%", "a", "%a%"},
      {"", "unused", ""},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.format + " of " + row.value);
    const auto format = TPrintfFormat::Parse(Text(row.format).StringView(), TKind::Text);
    ASSERT_TRUE(format);
    NQ_TString out("before ");
    format->AppendText(Text(row.value).StringView(), out);
    EXPECT_EQ(out, Text("before " + row.printed));
    EXPECT_EQ(format->IsPlain(), row.format == "%s");
  }
}

TEST(PrintfFormat, UnpairedSurrogatesOfTheFormatAreReplaced) {
  NQ_TString out;
  TPrintfFormat::Parse(u"\xD83D%%\xDCC4\U0001F4C4%s\xD83D", TKind::Text)->AppendText(u"\xDCC4", out);
  EXPECT_EQ(out, NQ_TString(u"\uFFFD%\uFFFD\U0001F4C4\uFFFD\uFFFD"));
}

TEST(PrintfFormat, PrintsIntegers) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  struct {
    std::string format;
    std::int32_t value;
    std::string printed;
  } const cases[] = {
      {"%d", kLowest, "-2147483648"},
      {"%u", -1, "4294967295"},
      {"v%03d", 7, "v007"},
      {"%.0d", 0, ""},
      {"%+05d", 42, "+0042"},
      {"%#x", 255, "0xff"},
      {"[%c]", 65, "[A]"},
      {"[%c]", 0, "[\0]"s},
      {"[%c]", 200, "[\uFFFD]"},
      {"[%3c]", 0x141, "[  A]"},  // only the low byte counts
      {"%4096d", 1, std::string(4095, ' ') + "1"},
      {"%#.4096x", 1, "0x" + std::string(4095, '0') + "1"},
      {"no conversion", 7, "no conversion"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.format + " of " + std::to_string(row.value));
    const auto format = TPrintfFormat::Parse(Text(row.format).StringView(), TKind::Integer);
    ASSERT_TRUE(format);
    NQ_TString out;
    format->AppendInteger(row.value, out);
    EXPECT_EQ(out, Text(row.printed));
    EXPECT_EQ(format->IsPlain(), row.format == "%d");
  }
}

// Random accepted formats and values, against printf itself.
class TRandomFormats : public ::testing::Test {
 protected:
  static constexpr unsigned kSeed = 20240611;

  std::size_t Below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }
  std::string Some(const std::string& letters, std::size_t most) {
    std::string some;
    for (std::size_t n = Below(most + 1); n > 0; --n) some += letters[Below(letters.size())];
    return some;
  }
  std::string Words(std::size_t most) {
    static const std::string kWords[] = {"a", "Z9", " ", "%%", "\u00e9", "\u20ac", "\U0001F4C4"};
    std::string words;
    for (std::size_t n = Below(most + 1); n > 0; --n) words += kWords[Below(std::size(kWords))];
    return words;
  }
  std::string Format(const std::string& letters) {
    std::string format = Words(3) + "%" + Some("-+ #0", 2);
    if (Below(2) != 0) format += std::to_string(1 + Below(20));
    if (Below(2) != 0) format += "." + Some("0123456789", 1);
    return format + letters[Below(letters.size())] + Words(3);
  }
  std::int32_t Integer() {
    const auto bits = static_cast<std::int32_t>(random_());
    return bits >> Below(32);
  }

  std::mt19937 random_{kSeed};
};

TEST_F(TRandomFormats, IntegersPrintAsPrintfDoes) {
  for (int i = 0; i < 20'000; ++i) {
    const std::string format = Format("ddduixXoc");
    const std::int32_t value = Integer();
    const auto parsed = TPrintfFormat::Parse(Text(format).StringView(), TKind::Integer);
    ASSERT_TRUE(parsed) << format;
    NQ_TString out;
    parsed->AppendInteger(value, out);
    ASSERT_EQ(out, Text(Printed(format, value))) << format << " of " << value << ", seed " << kSeed;
  }
}

TEST_F(TRandomFormats, TextPrintsAsPrintfDoes) {
  for (int i = 0; i < 20'000; ++i) {
    const std::string format = Format("s");
    const std::string value = Below(2) != 0 ? Some("abc XYZ", 12) : Words(6);
    const auto parsed = TPrintfFormat::Parse(Text(format).StringView(), TKind::Text);
    ASSERT_TRUE(parsed) << format;
    NQ_TString out;
    parsed->AppendText(Text(value).StringView(), out);
    ASSERT_EQ(out, Text(Printed(format, value.c_str()))) << format << " of " << value << ", seed " << kSeed;
  }
}

}  // namespace
}  // namespace templatenames
