#include "text/PrintfFormat.h"

#include <gtest/gtest.h>

#include <cstdio>
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
  for (const std::u16string format : {u"%n", u"%s", u"%f", u"%ld", u"%hhd", u"%*d", u"%.*d", u"%1$d", u"%'d", u"%.-3d",
                                      u"%5%", u"%\uFF44", u"%d%d", u"%d%", u"100%", u"%-08.3", u"%4097d", u"%.4097d"})
    EXPECT_FALSE(TPrintfFormat::Parse(format, TKind::Integer)) << NQ_TString(std::u16string_view(format));
  for (const std::u16string& format :
       {u"%n"s, u"%d"s, u"%c"s, u"%ls"s, u"%S"s, u"%\u0101"s, u"%\0s"s, u"%99999999999s"s})
    EXPECT_FALSE(TPrintfFormat::Parse(format, TKind::Text)) << NQ_TString(std::u16string_view(format));
}

// What printf does otherwise, or what depends on UTF-8 being UTF-16 here.
TEST(PrintfFormat, Prints) {
  const std::pair<std::u16string, std::u16string> texts[] = {
      {u"%s", u"a\0\xDCC4"s},  // plain: the value itself
      {u"[%s]", u"[a]"s},
      {u"[%s\0]"s, u"[a"s},
      {u"\xD83D%%\xDCC4\U0001F4C4%.0s\xD83D", u"\uFFFD%\uFFFD\U0001F4C4\uFFFD"s},
  };
  for (const auto& [format, printed] : texts) {
    NQ_TString out("before ");
    TPrintfFormat::Parse(format, TKind::Text)->AppendText(u"a\0\xDCC4"s, out);
    EXPECT_EQ(out.StringView(), u"before " + printed);
    EXPECT_EQ(TPrintfFormat::Parse(format, TKind::Text)->IsPlain(), format == u"%s");
  }
  const std::pair<std::u16string, std::string> integers[] = {
      {u"%d", "65"}, {u"%4096d", std::string(4094, ' ') + "65"}, {u"%#.4096x", "0x" + std::string(4094, '0') + "41"}};
  for (const auto& [format, printed] : integers) {
    NQ_TString out;
    TPrintfFormat::Parse(format, TKind::Integer)->AppendInteger(65, out);
    EXPECT_EQ(out, Text(printed));
    EXPECT_EQ(TPrintfFormat::Parse(format, TKind::Integer)->IsPlain(), format == u"%d");
  }
}

// Random accepted formats and values, against printf itself.
TEST(PrintfFormat, PrintsAsPrintfDoes) {
  std::mt19937 random(20240611);
  const auto some = [&](const std::vector<std::string>& from, std::size_t most) {
    std::string text;
    for (std::size_t n = random() % (most + 1); n > 0; --n) text += from[random() % from.size()];
    return text;
  };
  const std::vector<std::string> words = {"a", "Z9", " ", "%%", "\u00e9", "\u20ac", "\U0001F4C4"};
  const auto format = [&](const std::string& letters) {
    std::string text = some(words, 3) + "%" + some({"-", "+", " ", "#", "0"}, 2);
    if (random() % 2 != 0) text += std::to_string(1 + random() % 20);
    if (random() % 2 != 0) text += "." + some({"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}, 1);
    return text + letters[random() % letters.size()] + some(words, 3);
  };
  for (int i = 0; i < 20'000; ++i) {
    const std::string forInteger = format("ddduixXoc"), forText = format("s");
    const auto integerFormat = TPrintfFormat::Parse(Text(forInteger).StringView(), TKind::Integer);
    const auto textFormat = TPrintfFormat::Parse(Text(forText).StringView(), TKind::Text);
    ASSERT_TRUE(integerFormat && textFormat) << forInteger << " or " << forText;
    const std::int32_t integer = static_cast<std::int32_t>(random()) >> random() % 32;
    NQ_TString out;
    integerFormat->AppendInteger(integer, out);
    ASSERT_EQ(out, Text(Printed(forInteger, integer))) << forInteger << " of " << integer;
    const std::string text = some(words, 6) + (random() % 2 != 0 ? some({"abc", " ", "XYZ"}, 4) : "");
    out.Clear();
    textFormat->AppendText(Text(text).StringView(), out);
    ASSERT_EQ(out, Text(Printed(forText, text.c_str()))) << forText << " of " << text;
  }
}

}  // namespace
}  // namespace templatenames
