#include "text/PrintfFormat.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

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
  struct {
    const char* reason;
    TKind kind;
    std::vector<std::u16string> formats;
  } const cases[] = {
      {"the format has a conversion that does not fit the value",
       TKind::Integer,
       {u"%n", u"%s", u"%f", u"%p", u"%ld", u"%hhd", u"%*d", u"%.*d", u"%1$d", u"%'d", u"%.-3d", u"%5%", u"%\uFF44"}},
      {"the format has a conversion that does not fit the value",
       TKind::Text,
       {u"%n", u"%d", u"%c", u"%ls", u"%S", u"%m", u"%\u0101"}},
      {"the format has more than one conversion", TKind::Integer, {u"%d%d", u"%d and %n", u"%d%"}},
      {"the format ends within a conversion", TKind::Text, {u"%", u"100%", u"%-08.3", u"%\0s"s}},
      {"a width or precision of the format is over 4096",
       TKind::Text,
       {u"%4097s", u"%.4097s", u"%99999999999999999999s"}},
  };
  for (const auto& row : cases) {
    for (const std::u16string& format : row.formats) {
      SCOPED_TRACE(NQ_TString(std::u16string_view(format)).c_str());
      const char* reason = "accepted";
      EXPECT_FALSE(TPrintfFormat::Parse(format, row.kind, &reason));
      EXPECT_STREQ(reason, row.reason);
    }
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

TEST_F(TRandomFormats, PrintAsPrintfDoes) {
  for (int i = 0; i < 20'000; ++i) {
    const std::string forInteger = Format("ddduixXoc");
    const std::string forText = Format("s");
    SCOPED_TRACE(forInteger + " or " + forText + ", seed " + std::to_string(kSeed));
    const auto integerFormat = TPrintfFormat::Parse(Text(forInteger).StringView(), TKind::Integer);
    const auto textFormat = TPrintfFormat::Parse(Text(forText).StringView(), TKind::Text);
    ASSERT_TRUE(integerFormat && textFormat);
    const std::int32_t integer = Integer();
    NQ_TString out;
    integerFormat->AppendInteger(integer, out);
    ASSERT_EQ(out, Text(Printed(forInteger, integer))) << integer;
    const std::string text = Below(2) != 0 ? Some("abc XYZ", 12) : Words(6);
    out.Clear();
    textFormat->AppendText(Text(text).StringView(), out);
    ASSERT_EQ(out, Text(Printed(forText, text.c_str()))) << text;
  }
}

}  // namespace
}  // namespace templatenames
