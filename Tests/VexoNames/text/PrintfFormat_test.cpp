// Formats against printf itself, and what is refused or done otherwise.
#include "text/PrintfFormat.h"

#include <random>

#include "Support.h"

namespace templatenames {
namespace {

using TKind = TPrintfFormat::TKind;
using names_test::Repeated;
using names_test::S;
using std::string;
using std::u16string_view;
using namespace std::string_literals;

NQ_TString Printed(u16string_view format, u16string_view value) {
  NQ_TString out;
  TPrintfFormat::Parse(format, TKind::Text)->AppendText(value, out);
  return out;
}
NQ_TString Printed(u16string_view format, std::int32_t value) {
  NQ_TString out;
  TPrintfFormat::Parse(format, TKind::Integer)->AppendInteger(value, out);
  return out;
}

TEST(PrintfFormat, Refuses) {
  for (const u16string_view format :
       {u"%n", u"%s", u"%f", u"%lc", u"%hhhd", u"%ls", u"%Lf", u"%*d", u"%.*d", u"%1$d", u"%.-3d", u"%5%", u"%\uFF44",
        u"%d%d", u"%d%", u"100%", u"%-08.3", u"%4097d", u"%.4097d"})
    EXPECT_FALSE(TPrintfFormat::Parse(format, TKind::Integer)) << NQ_TString(format);
  for (const std::u16string& format :
       {u"%n"s, u"%d"s, u"%c"s, u"%ls"s, u"%hs"s, u"%'s"s, u"%S"s, u"%\u0101"s, u"%\0s"s, u"%99999999999s"s})
    EXPECT_FALSE(TPrintfFormat::Parse(format, TKind::Text)) << NQ_TString(format);
}

// What printf does otherwise, what depends on UTF-8 being UTF-16 here, and the largest fields.
TEST(PrintfFormat, Prints) {
  const std::u16string value = u"a\0\xDCC4"s;
  EXPECT_EQ(Printed(u"%s", value), NQ_TString(value));  // plain: the value itself
  EXPECT_EQ(Printed(u"[%s]", value), "[a]");
  EXPECT_EQ(Printed(u"[%s\0]"s, value), "[a");
  EXPECT_EQ(Printed(u"\xD83D%%\xDCC4\U0001F4C4%.0s\xD83D", value), NQ_TString(u"\uFFFD%\uFFFD\U0001F4C4\uFFFD"));
  EXPECT_EQ(Printed(u"%4096d", 65), S(Repeated(" ", 4094) + "65"));
  EXPECT_EQ(Printed(u"%#.4096x", 65), S("0x" + Repeated("0", 4094) + "41"));
  EXPECT_EQ(Printed(u"%hhd %%", 300) + Printed(u"|%hx|", -1) + Printed(u"%#jx", -1), "44 %|ffff|0xffffffffffffffff");
  for (const auto& [format, writes] : {std::pair(u"100%%", false), {u"", false}, {u"x%ldx", true}})
    EXPECT_EQ(TPrintfFormat::Parse(format, TKind::Integer)->WritesValue(), writes);
  for (const auto& [format, plain] : {std::pair(u"%d", true), {u"%i", false}, {u"%dx", false}})
    EXPECT_EQ(TPrintfFormat::Parse(format, TKind::Integer)->IsPlain(), plain);
}

TEST(PrintfFormat, PrintsAsPrintfDoes) {
  std::mt19937 random(20240611);
  const auto some = [&](std::initializer_list<const char*> from, std::size_t most) {
    string text;
    for (std::size_t n = random() % (most + 1); n > 0; --n) text += from.begin()[random() % from.size()];
    return text;
  };
  const auto words = [&](std::size_t most) {
    return some({"a", "Z9", " ", "%%", "\u00e9", "\u20ac", "\U0001F4C4"}, most);
  };
  const auto format = [&](std::initializer_list<const char*> flags, const string& length, const string& letters) {
    string text = words(3) + "%" + some(flags, 2);
    if (random() % 2 != 0) text += std::to_string(1 + random() % 20);
    if (random() % 2 != 0) text += "." + some({"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}, 1);
    return text + length + letters[random() % letters.size()] + words(3);
  };
  for (int i = 0; i < 20'000; ++i) {
    const string length = some({"h", "hh", "l", "ll", "j", "z", "t"}, 1);
    const string forInteger = format({"-", "+", " ", "#", "0", "'"}, length, length.empty() ? "ddduixXoc" : "diuxXo");
    const string forText = format({"-", "+", " ", "#", "0"}, "", "s");
    const bool isInt = length.empty() || length[0] == 'h';
    const std::int32_t integer = static_cast<std::int32_t>(random()) >> random() % 32;
    const NQ_TString text = S(words(6) + (random() % 2 != 0 ? some({"abc", " ", "XYZ"}, 4) : ""));
    const NQ_TString byPrintf = isInt ? NQ_TString::Format(forInteger.c_str(), integer)
                                      : NQ_TString::Format(forInteger.c_str(), std::int64_t{integer});
    ASSERT_EQ(Printed(S(forInteger).StringView(), integer), byPrintf) << forInteger << " of " << integer;
    ASSERT_EQ(Printed(S(forText).StringView(), text.StringView()), NQ_TString::Format(forText.c_str(), text.c_str()))
        << forText << " of " << text;
  }
}

}  // namespace
}  // namespace templatenames
