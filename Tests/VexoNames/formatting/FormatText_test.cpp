#include "formatting/FormatText.h"

#include <gtest/gtest.h>

#include <boost/regex.hpp>
#include <chrono>
#include <random>
#include <string>

#include "NQ_EException.h"
#include "NQ_TURL.h"
#include "OptionsText.h"
#include "formatting/Rewriting.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::Pairs;
using formatting_test::S;
using namespace std::literals;

std::string Formatted(const NQ_TDict& options, const std::string& value) {
  NQ_TString text = S(value);
  EXPECT_TRUE(FormatText(options, text));
  return std::string(text.Narrow());
}

TEST(FormatText, Values) {
  struct {
    const char* options;
    std::string value, formatted;
  } const cases[] = {
      {"RemoveSpaces=true", "  a b  ", "a b"},
      {"RemoveSpaces=true", "\t\r\n", ""},
      {"RemoveSpaces=true", "\0\u001Fa\0"s, "a"},
      {"RemoveSpaces=true", "\u00A0 a\u2003", "\u00A0 a\u2003"},
      {"Transformation=UPPERCASE", "stra\u00DFe", "STRASSE"},
      {"Transformation=LOWERCASE", "\u00C4B", "\u00E4b"},
      {"Encoding=XML|Transformation=UPPERCASE", "a&b", "A&amp;B"},
      {"Encoding=XML", "&quot;'\U0001F4C4\0"s, "&amp;quot;&apos;\U0001F4C4\0"s},
      {"Encoding=URL", "a b/\u00E9\u20AC\U0001F4C4~", "a%20b/%C3%A9%E2%82%AC%F0%9F%93%84~"},
      {"Encoding=URL", "smb://server:445/share/a b", "smb://server:445/share/a%20b"},
      {"Encoding=url", "a b", "a b"},
      {"Encoding=CUSTOM|CustomEncoding=a>b,b>c", "ab", "cc"},
      {"Encoding=CUSTOM|CustomEncoding=>x,b>", "ab", "a"},
      {"Encoding=CUSTOM|CustomEncoding=\u00E9>e,e>a longer text,t>T", "\u00E9", "a longer TexT"},
      {"Encoding=CUSTOM|CustomEncoding=\u00E4>ae,\u00DF>ss,\u20AC>\u00A4,\u00A4>EUR, >_", "\u00E4\u00DF \u20AC\u00F6",
       "aess_EUR\u00F6"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(row.options) + " of " + row.value);
    EXPECT_EQ(Formatted(Options(row.options), row.value), row.formatted);
  }
}

// The replacements of earlier pairs stay.
TEST(FormatText, BrokenPairsThrow) {
  NQ_TDict noReplace, textForFind;
  noReplace["Find"] = "b";
  textForFind["Find"] = 1;
  textForFind["Replace"] = "x";
  struct {
    const char* before;
    NQ_TAny element;
    const char* message;
    const char* ofAba;
  } const cases[] = {
      {"a>b,bb>cc", NQ_TAny("b>c"), "An element of CustomEncoding is no dictionary", "ccb"},
      {"a>b", NQ_TAny(), "An element of CustomEncoding is no dictionary", "bbb"},
      {"ab>cc,c>d", NQ_TDict(), "The dictionary has no such key", "dda"},
      {"a>b,c>d", noReplace, "The dictionary has no such key", "bbb"},
      {"", textForFind, "This value in an element of CustomEncoding is no text", "aba"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.message);
    NQ_TArray pairs = Pairs(row.before);
    pairs.Add(row.element);
    NQ_TDict options = Options("Encoding=CUSTOM");
    options["CustomEncoding"] = pairs;
    NQ_TString value = "aba";
    try {
      FormatText(options, value);
      ADD_FAILURE() << "nothing thrown";
    } catch (const NQ_EException& error) {
      EXPECT_STREQ(error.NQ_Message().c_str(), row.message);
      EXPECT_STREQ(value.c_str(), row.ofAba);
    }
  }
}

// A list may change in place, or through a pointer from before; another list may take the place of one.
TEST(FormatText, PairsAreReadAnew) {
  NQ_TDict options = Options("Encoding=CUSTOM|CustomEncoding=a>b,c>d");
  EXPECT_EQ(Formatted(options, "ac"), "bd");
  NQ_TArray& pairs = *options["CustomEncoding"].As<NQ_TArray>();
  NQ_TDict& pair = *pairs.At(0)->As<NQ_TDict>();
  for (const char* replace : {"x", "y", "z"}) {
    pair["Replace"] = replace;
    EXPECT_EQ(Formatted(options, "ac"), replace + "d"s);
  }
  pairs.Add(*Pairs("z>q").At(0));
  const NQ_TDict copy = options;
  EXPECT_EQ(Formatted(options, "ac") + Formatted(copy, "ac"), "qdqd");
  *pair["Replace"].As<NQ_TString>() = "r";
  EXPECT_EQ(Formatted(options, "ac") + Formatted(copy, "ac"), "rdqd");
  pair["Find"] = 1;
  EXPECT_THROW(Formatted(options, "ac"), NQ_EException);
  for (int i = 0; i < 1'000; ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(Formatted(Options("Encoding=CUSTOM|CustomEncoding=a>" + number), "a"), number);
  }
}

// A list, a pair or a text may belong to somebody else, who changes it.
TEST(FormatText, PairsHeldByReferenceAreReadAnew) {
  const auto referring = [](const auto& object) { return NQ_TAny(static_cast<const NQ_TObject*>(&object)); };
  NQ_TString text;
  NQ_TDict pair, pairWithText;
  NQ_TArray list, listWithPair, listWithText;
  listWithPair.Add(referring(pair));
  pairWithText.Add("Find", NQ_TString("a"));
  pairWithText.Add("Replace", referring(text));
  listWithText.Add(pairWithText);
  NQ_TDict options[3] = {Options("Encoding=CUSTOM"), Options("Encoding=CUSTOM"), Options("Encoding=CUSTOM")};
  options[0].Add("CustomEncoding", referring(list));
  options[1].Add("CustomEncoding", listWithPair);
  options[2].Add("CustomEncoding", listWithText);
  for (const char* replace : {"1", "2", "3"}) {
    list = Pairs(std::string("a>") + replace);
    pair = *list.At(0)->As<NQ_TDict>();
    text = replace;
    for (const NQ_TDict& each : options) EXPECT_EQ(Formatted(each, "a"), replace) << each;
  }
}

// ---- limits

TEST(FormatText, TextsDoNotGrowWithoutEnd) {
  std::string doubling = "a>aa";
  for (int i = 1; i < 60; ++i) doubling += ",a>aa";
  NQ_TString value = "a-a";
  EXPECT_FALSE(FormatText(Options("Encoding=CUSTOM|CustomEncoding=" + doubling), value));
  EXPECT_LE(value.Length(), kMostRewritten);
  EXPECT_GT(value.Length(), kMostRewritten / 3);

  const std::u16string text(kMostRewritten / 3, u'<');
  value = NQ_TString(text);
  EXPECT_FALSE(FormatText(Options("Encoding=XML"), value));
  EXPECT_TRUE(value.Equals(text));
  EXPECT_TRUE(FormatText(Options("Encoding=URL"), value));
  EXPECT_EQ(value.Length(), kMostRewritten / 3 * 3);

  value = NQ_TString(std::u16string(kMostRewritten + 2, u'a') + u"bb");  // too long already, and may shrink
  EXPECT_TRUE(FormatText(Options("Encoding=CUSTOM|CustomEncoding=bb>b"), value));
  EXPECT_EQ(value.Length(), kMostRewritten + 3);
}

// Takes hours when a long text is compared anew at every place.
TEST(FormatText, ReplacingTakesLinearTime) {
  NQ_TDict pair;
  pair["Find"] = S(std::string(1'000'000, 'a') + "b");
  pair["Replace"] = "";
  NQ_TArray pairs;
  pairs.Add(pair);
  NQ_TDict options = Options("Encoding=CUSTOM");
  options["CustomEncoding"] = pairs;
  EXPECT_EQ(Formatted(options, std::string(3'000'000, 'a') + "bc").size(), 2'000'001U);
}

// ---- against the plain way

class TextsAgainstTheObvious : public ::testing::Test {
 protected:
  static constexpr unsigned kSeed = 20250311;
  static constexpr int kTexts = 5'000;

  std::size_t Below(std::size_t end) { return random_() % end; }
  std::u16string Some(std::u16string_view units, std::size_t most) {
    std::u16string some;
    if (units.empty()) return some;
    for (std::size_t n = Below(most + 1); n > 0; --n) some += units[Below(units.size())];
    return some;
  }
  void Expect(const NQ_TDict& options, const std::u16string& text, const NQ_TString& expected) {
    NQ_TString value{std::u16string_view(text)};
    ASSERT_TRUE(FormatText(options, value));
    ASSERT_EQ(value, expected) << options << " of " << NQ_TString(text) << ", seed " << kSeed;
  }

  std::mt19937 random_{kSeed};
};

TEST_F(TextsAgainstTheObvious, XmlIsFiveReplacements) {
  const NQ_TDict options = Options("Encoding=XML");
  for (int i = 0; i < kTexts; ++i) {
    const std::u16string text = Some(u"ab \u00E9\xD83D\xDCC4&&<>'\"", i % 50 == 0 ? 5'000 : 40);
    const NQ_TString expected = NQ_TString(text)
                                    .Replace("&", "&amp;")
                                    .Replace("\"", "&quot;")
                                    .Replace("<", "&lt;")
                                    .Replace(">", "&gt;")
                                    .Replace("'", "&apos;");
    ASSERT_NO_FATAL_FAILURE(Expect(options, text, expected));
  }
}

TEST_F(TextsAgainstTheObvious, CustomIsOneReplacementAfterTheOther) {
  // Of what texts, what is found in them and what is put in consist; and how many pairs there are.
  struct {
    std::u16string texts, finds, replaces;
    std::size_t longestFind, longestReplace, pairs;
  } kinds[] = {
      {u"aaabbc\u00E9\xD83D", u"aaabbc\u00E9\xD83D", u"aaabbc\u00E9\xD83D", 2, 3, 6},
      {u"aaabbc", u"abc", u"abd", 1, 300, 6},
      {u"aaaaaaab", u"", u"ab", 0, 3, 6},  // finds parts of the text
      {u"", u"", u"\u0400\u0401", 1, 2, 150},
  };
  for (char16_t c = u'!'; c < u'\u0200'; ++c) kinds[3].texts += c;
  kinds[3].finds = kinds[3].texts + kinds[3].replaces;
  for (int i = 0; i < kTexts; ++i) {
    const auto& kind = kinds[i % 50 == 3 ? 3 : i % 3];
    const std::u16string text = Some(kind.texts, i % 50 == 0 ? 3'000 : 40);
    NQ_TString expected(text);
    NQ_TArray pairs;
    for (std::size_t n = kind.pairs == 6 ? Below(7) : kind.pairs; n > 0 && expected.Length() < 100'000; --n) {
      NQ_TString find(Some(kind.finds, kind.longestFind));
      if (kind.finds.empty() && !expected.Empty())
        find = expected.Substring(static_cast<int>(Below(expected.Length())), static_cast<int>(17 + Below(20)));
      const NQ_TString replace(Some(kind.replaces, kind.longestReplace));
      expected = expected.Replace(find, replace);
      NQ_TDict pair;
      pair["Find"] = find;
      pair["Replace"] = replace;
      pairs.Add(pair);
    }
    NQ_TDict options = Options("Encoding=CUSTOM");
    options["CustomEncoding"] = pairs;
    ASSERT_NO_FATAL_FAILURE(Expect(options, text, expected));
  }
}

// The structure of URLs as two regular expressions for the whole text.
NQ_TString UrlByRegex(const std::u16string& text) {
  static const boost::wregex url(L"(?i)([a-z]*):(.*)"), server(L"(?i)//([a-z]*):([0-9]*)/(.*)");
  const std::wstring wide(text.begin(), text.end());  // unit by unit
  const auto part = [&text](const std::wstring& subject, const boost::wsmatch& match, unsigned group) {
    const std::size_t before = text.size() - subject.size();
    return NQ_TString(text.substr(before + static_cast<std::size_t>(match.position(group)),
                                  static_cast<std::size_t>(match.length(static_cast<int>(group)))));
  };
  const auto encoded = [](const NQ_TString& piece) { return NQ_TURL::HexEncode(piece); };
  boost::wsmatch match;
  if (!boost::regex_match(wide, match, url)) return encoded(NQ_TString(text));
  const NQ_TString scheme = part(wide, match, 1), rest = part(wide, match, 2);
  const std::wstring wideRest = match[2].str();
  if (!boost::regex_match(wideRest, match, server)) return scheme + ":" + encoded(rest);
  return scheme + "://" + encoded(part(wideRest, match, 1)) + ":" + part(wideRest, match, 2) + "/" +
         encoded(part(wideRest, match, 3));
}

TEST_F(TextsAgainstTheObvious, UrlsAreTakenApartAsByRegularExpressions) {
  // The Kelvin sign, the long s and the dotted I fold to ASCII letters in some locales.
  constexpr std::u16string_view kUnits = u"aZ@[`{09/::\n\r\0\u2028 %\u00E9\u212A\u017F\u0130\xD83D\xDCC4\x19"sv;
  const std::u16string_view pieces[] = {u"smb", u":", u"//", u"Server", u":", u"445", u"/", u"a b"};
  const NQ_TDict options = Options("Encoding=URL");
  int whole = 0;
  for (int i = 0; i < kTexts; ++i) {
    std::u16string text;
    for (const std::u16string_view piece : pieces) {
      if (Below(16) != 0) text += piece;
      if (Below(16) == 0) text += Some(kUnits, 3);
    }
    if (i % 4 == 0) text = Some(kUnits, i % 50 == 0 ? 3'000 : 12);
    whole += text.starts_with(u"smb://Server:445/") ? 1 : 0;
    ASSERT_NO_FATAL_FAILURE(Expect(options, text, UrlByRegex(text)));
  }
  EXPECT_GT(whole, kTexts / 10);
}

}  // namespace
}  // namespace templatenames
