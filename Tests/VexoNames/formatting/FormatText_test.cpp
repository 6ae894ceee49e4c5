// Texts by the fast ways against the obvious ones, and what lists of pairs may do; the rest stands in Values.txt.
#include "formatting/text/FormatText.h"

#include <boost/regex.hpp>
#include <locale>
#include <random>

#include "NQ_TURL.h"
#include "OptionsText.h"
#include "Support.h"
#include "formatting/text/EncodeUrl.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::Pairs;
using names_test::Repeated;
using names_test::S;
using std::u16string;
using std::u16string_view;
using namespace std::literals;

constexpr std::size_t kMost = 64 * 1024 * 1024;

NQ_TString Formatted(const NQ_TDict& options, NQ_TString value, std::size_t most = kMost) {
  EXPECT_TRUE(FormatText(options, most, value));
  return value;
}

NQ_TDict Custom(const NQ_TAny& pairs) {
  NQ_TDict options = Options("Encoding=CUSTOM");
  options["CustomEncoding"] = pairs;
  return options;
}

NQ_TDict Pair(const NQ_TString& find, const NQ_TString& replace) {
  NQ_TDict pair;
  pair["Find"] = find;
  pair["Replace"] = replace;
  return pair;
}

// The replacements of earlier pairs stay.
TEST(FormatText, BrokenPairsThrow) {
  NQ_TDict noReplace, textForFind = Pair("", "x");
  noReplace["Find"] = "b";
  textForFind["Find"] = 1;
  const std::tuple<const char*, NQ_TAny, const char*, const char*> cases[] = {
      {"a>b,bb>cc", NQ_TAny("b>c"), "An element of CustomEncoding is no dictionary", "ccb"},
      {"a>b", NQ_TAny(), "An element of CustomEncoding is no dictionary", "bbb"},
      {"ab>cc,c>d", NQ_TDict(), "The dictionary has no such key", "dda"},
      {"a>b,c>d", noReplace, "The dictionary has no such key", "bbb"},
      {"", textForFind, "This value in an element of CustomEncoding is no text", "aba"},
  };
  for (const auto& [before, element, message, ofAba] : cases) {
    NQ_TArray pairs = Pairs(before);
    pairs.Add(NQ_TAny(element));
    NQ_TString value = "aba";
    try {
      ADD_FAILURE() << FormatText(Custom(pairs), kMost, value) << message;
    } catch (const NQ_EException& error) {
      EXPECT_EQ(error.NQ_Message() + "; " + value, NQ_TString(message) + "; " + ofAba);
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
    EXPECT_EQ(Formatted(options, "ac"), NQ_TString(replace) + "d");
  }
  pairs.Add(Pair("z", "q"));
  const NQ_TDict copy = options;
  EXPECT_EQ(Formatted(options, "ac") + Formatted(copy, "ac"), "qdqd");
  *pair["Replace"].As<NQ_TString>() = "r";
  EXPECT_EQ(Formatted(options, "ac") + Formatted(copy, "ac"), "rdqd");
  pair["Find"] = 1;
  EXPECT_THROW(Formatted(options, "ac"), NQ_EException);
  for (int i = 0; i < 1'000; ++i) {
    const NQ_TString number = NQ_TString::Format("%d", i);
    EXPECT_EQ(Formatted(Custom(Pairs("a>" + std::to_string(i))), "a"), number);
  }
}

TEST(FormatText, TextsDoNotGrowWithoutEnd) {
  NQ_TString value = "a-a";
  EXPECT_FALSE(FormatText(Custom(Pairs(Repeated("a>aa,", 60))), kMost, value));
  EXPECT_LE(value.Length(), kMost);
  EXPECT_GT(value.Length(), kMost / 3);
  // Short texts are put together in another way than long ones.
  for (const std::size_t length : {5U, 5'000U}) {
    const NQ_TString signs(u16string(length, u'<'));
    for (const auto& [options, each] : {std::pair("Encoding=XML", 4U),
                                        {"Encoding=URL", 3U},
                                        {"Encoding=CUSTOM|CustomEncoding=<>ab", 2U},
                                        {"Encoding=CUSTOM|CustomEncoding=<<>ccc", 1U}}) {
      const std::size_t most = each == 1 ? length / 2 * 3 + length % 2 : each * length;
      EXPECT_EQ(Formatted(Options(options), signs, most).Length(), most) << options;
      value = signs;
      EXPECT_FALSE(FormatText(Options(options), most - 1, value)) << options;
      EXPECT_EQ(value, signs) << options;
    }
    const NQ_TString longer(u16string(length, u'a') + u"bb");  // too long already, and may shrink
    EXPECT_EQ(Formatted(Custom(Pairs("bb>b")), longer, 1).Length(), length + 1);
  }
}

// Takes hours when a long text is compared anew at every place.
TEST(FormatText, ReplacingTakesLinearTime) {
  NQ_TArray pairs;
  pairs.Add(Pair(S(Repeated("a", 1'000'000) + "b"), ""));
  EXPECT_EQ(Formatted(Custom(pairs), S(Repeated("a", 3'000'000) + "bc")).Length(), 2'000'001U);
}

// ---- random texts

class TextsAgainstTheObvious : public testing::Test {
 protected:
  static constexpr int kTexts = 5'000;

  std::size_t Below(std::size_t end) { return random_() % end; }
  u16string Some(u16string_view units, std::size_t most) {
    u16string some;
    for (std::size_t n = units.empty() ? 0 : Below(most + 1); n > 0; --n) some += units[Below(units.size())];
    return some;
  }

  std::mt19937 random_{20250311};
};

TEST_F(TextsAgainstTheObvious, XmlIsFiveReplacements) {
  for (int i = 0; i < kTexts; ++i) {
    const NQ_TString text(Some(u"ab \u00E9\xD83D\xDCC4&&<>'\"", i % 50 == 0 ? 5'000 : 40));
    NQ_TString expected = text.Replace("&", "&amp;").Replace("\"", "&quot;").Replace("<", "&lt;");
    expected = expected.Replace(">", "&gt;").Replace("'", "&apos;");
    ASSERT_EQ(Formatted(Options("Encoding=XML"), text), expected) << text;
  }
}

TEST_F(TextsAgainstTheObvious, CustomIsOneReplacementAfterTheOther) {
  u16string many;
  for (char16_t c = u'!'; c < u'\u0200'; ++c) many += c;
  // Of what texts, what is found in them and what is put in consist; and how many pairs there are.
  const struct {
    u16string texts, finds, replaces;
    std::size_t longestFind, longestReplace, pairs;
  } kinds[] = {
      {u"aaabbc\u00E9\xD83D", u"aaabbc\u00E9\xD83D", u"aaabbc\u00E9\xD83D", 2, 3, 6},
      {u"aaabbc", u"abc", u"abd", 1, 300, 6},
      {u"aaaaaaab", u"", u"ab", 0, 3, 6},  // finds parts of the text
      {many, many + u"\u0400\u0401", u"\u0400\u0401", 1, 2, 150},
  };
  for (int i = 0; i < kTexts; ++i) {
    const auto& kind = kinds[i % 50 == 3 ? 3 : i % 3];
    const NQ_TString text(Some(kind.texts, i % 50 == 0 ? 3'000 : 40));
    NQ_TString expected = text;
    NQ_TArray pairs;
    for (std::size_t n = kind.pairs == 6 ? Below(7) : kind.pairs; n > 0 && expected.Length() < 100'000; --n) {
      NQ_TString find(Some(kind.finds, kind.longestFind));
      if (kind.finds.empty() && !expected.Empty())
        find = expected.Substring(static_cast<int>(Below(expected.Length())), static_cast<int>(17 + Below(20)));
      const NQ_TString replace(Some(kind.replaces, kind.longestReplace));
      expected = expected.Replace(find, replace);
      pairs.Add(Pair(find, replace));
    }
    ASSERT_EQ(Formatted(Custom(pairs), text), expected) << pairs << " of " << text;
  }
}

// The structure of URLs as two regular expressions for the whole text, unit by unit.
NQ_TString UrlByRegex(const u16string& text) {
  static const boost::wregex url(L"(?i)([a-z]*):(.*)"), server(L"(?i)//([a-z]*):([0-9]*)/(.*)");
  const std::wstring wide(text.begin(), text.end());
  const auto back = [](const std::wstring& part) { return NQ_TString(u16string(part.begin(), part.end())); };
  const auto encoded = [&](const std::wstring& part) { return NQ_TURL::HexEncode(back(part)); };
  boost::wsmatch match, parts;
  if (!boost::regex_match(wide, match, url)) return encoded(wide);
  const std::wstring rest = match[2];
  if (!boost::regex_match(rest, parts, server)) return back(match[1]) + ":" + encoded(rest);
  return back(match[1]) + "://" + encoded(parts[1]) + ":" + back(parts[2]) + "/" + encoded(parts[3]);
}

TEST_F(TextsAgainstTheObvious, UrlsAreTakenApartAsByRegularExpressions) {
  // The Kelvin sign, the long s and the dotted I fold to ASCII letters in some locales.
  constexpr u16string_view kUnits = u"azAZ@[`{09/::\n\r\0\u2028 %\u00E9\u212A\u017F\u0130\xD83D\xDCC4\x19"sv;
  int whole = 0;
  for (int i = 0; i < kTexts; ++i) {
    u16string text;
    for (const u16string_view piece : {u"smb", u":", u"//", u"Server", u":", u"445", u"/", u"a b"}) {
      if (Below(16) != 0) text += piece;
      if (Below(16) == 0) text += Some(kUnits, 3);
    }
    if (i % 4 == 0) text = Some(kUnits, i % 50 == 0 ? 3'000 : 12);
    whole += text.starts_with(u"smb://Server:445/") ? 1 : 0;
    ASSERT_EQ(Formatted(Options("Encoding=URL"), NQ_TString(text)), UrlByRegex(text)) << NQ_TString(text);
    ASSERT_EQ(KeptOfUrl(text), KeptOfUrlByRegex(text)) << NQ_TString(text);
  }
  EXPECT_GT(whole, kTexts / 10);
}

// The first use of the expressions in its process when it runs alone.
TEST(FormatText, LettersOfUrlsAreThoseOfAsciiInEveryLocale) {
  const std::locale before = std::locale::global(std::locale("C.UTF-8"));
  for (const u16string_view letter : {u"\u212A", u"\u0130", u"\u017F"}) {
    EXPECT_EQ(KeptOfUrl(u16string(letter) + u":x"), 0U);
    EXPECT_EQ(KeptOfUrl(u"smb://" + u16string(letter) + u":1/x"), 4U);
  }
  std::locale::global(before);
}

}  // namespace
}  // namespace templatenames
