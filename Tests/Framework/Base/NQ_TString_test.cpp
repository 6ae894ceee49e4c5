#include "NQ_TString.h"

#include <gtest/gtest.h>

#include <string>

#include "NQ_TURL.h"
#include "Support.h"

namespace base_test {
namespace {

using std::u16string;
using std::u16string_view;

TEST(NQ_TString, Construction) {
  const wchar_t wide[] = {L'a', 0x1F4C4, 0xD800, 0x110000, L'b', 0};
  const struct {
    const char* name;
    NQ_TString text;
    u16string_view units;
  } cases[] = {
      {"default", NQ_TString(), u""},
      {"null utf8", NQ_TString(static_cast<const char*>(nullptr)), u""},
      {"null wide", NQ_TString(static_cast<const wchar_t*>(nullptr)), u""},
      {"null utf16", NQ_TString(static_cast<const char16_t*>(nullptr)), u""},
      {"utf8", NQ_TString("J\xC3\xB8rg \xF0\x9F\x93\x84"), u"J\u00F8rg \U0001F4C4"},
      {"utf8 counted", NQ_TString("abcdef", 3), u"abc"},
      {"utf8 cut within a character", NQ_TString("\xC3\xB8", 1), u"\uFFFD"},
      {"utf8 with NUL", NQ_TString("a\0b", 3), u16string_view(u"a\0b", 3)},
      {"wide, bad code points", NQ_TString(wide), u"a\U0001F4C4\uFFFD\uFFFDb"},
      {"wide counted", NQ_TString(wide, 2), u"a\U0001F4C4"},
      {"utf16", NQ_TString(u"a\xD800"), u"a\xD800"},
      {"utf16 counted", NQ_TString(u"abc", 2), u"ab"},
      {"sEmpty", NQ_TString::sEmpty, u""},
      {"format", NQ_TString::Format("%05d|%s|%%", 42, "x"), u"00042|x|%"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(u16string(row.text.StringView()), row.units);
    EXPECT_EQ(row.text.Length(), row.units.size());
    EXPECT_EQ(row.text.Empty(), row.units.empty());
    EXPECT_EQ(u16string(row.text.WideText(), row.units.size() + 1), u16string(row.units) + u'\0');
  }
  NQ_TString assigned;
  EXPECT_EQ(assigned = L"w\u00E9", u"w\u00E9");
  EXPECT_EQ(assigned = "n", "n");
  EXPECT_EQ(wchar_t{assigned.CharAt(0)}, L'n');
  EXPECT_EQ(NQ_TString::Format("%1000s", "x").Length(), 1000U);
  // Nothing but text can be assigned: it would leave the text as it was.
  static_assert(!std::is_assignable_v<NQ_TString&, NQ_TURL> && !std::is_assignable_v<NQ_TURL&, NQ_TString>);
}

TEST(NQ_TString, FindsWhatThePlainSearchFinds) {
  const NQ_TString text("a<<b<<c/>>");
  EXPECT_EQ(text.Find("<<", 10, true), 4);
  EXPECT_EQ(text.Find("/>>", 8, false), -1);
  EXPECT_EQ(text.Find('<', 99, true) + text.Find(NQ_TUniChar('<'), -1, true), 10);
  EXPECT_EQ(text.Find(static_cast<const char*>(nullptr), 1), 1);  // as the empty text

  TRandom random(1);
  for (int round = 0; round < 4000; ++round) {
    const u16string hay = random.Word(u"ab", 7);
    const u16string needle = random.Word(u"ab", 3);
    const int start = static_cast<int>(random.Below(12)) - 2;
    int first = -1;
    int last = -1;
    for (int i = 0; i <= static_cast<int>(hay.size()); ++i) {
      if (hay.compare(static_cast<std::size_t>(i), needle.size(), needle) != 0) continue;
      if (i >= start && first < 0) first = i;
      if (start < 0 || i <= start) last = i;
    }
    SCOPED_TRACE(Printed(NQ_TString(hay) + " " + NQ_TString(needle) + " ") + std::to_string(start));
    ASSERT_EQ(NQ_TString(hay).Find(NQ_TString(needle), start, false), first);
    ASSERT_EQ(NQ_TString(hay).Find(NQ_TString(needle).c_str(), start, true), last);
  }
}

bool PlainMatch(u16string_view text, u16string_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] != u'*')
    return !text.empty() && text[0] == pattern[0] && PlainMatch(text.substr(1), pattern.substr(1));
  for (std::size_t i = 0; i <= text.size(); ++i)
    if (PlainMatch(text.substr(i), pattern.substr(1))) return true;
  return false;
}

TEST(NQ_TString, MatchesWhatThePlainMatcherMatches) {
  TRandom random(2);
  for (int round = 0; round < 20000; ++round) {
    const u16string text = random.Word(u"ab", 8);
    const u16string pattern = random.Word(u"ab**", 6);
    ASSERT_EQ(NQ_TString(text).Match(NQ_TString(pattern)), PlainMatch(text, pattern))
        << NQ_TString(text) << " " << NQ_TString(pattern);
  }
  const NQ_TString many(u16string(1'000'000, u'a'));  // linear, however often the beginning of the rest occurs
  EXPECT_FALSE(many.Match(NQ_TString(u"*" + u16string(500'000, u'a') + u"b")));
}

TEST(NQ_TString, SubstringAndReplace) {
  const NQ_TString text("abcdef");
  const struct {
    int start, length;
    const char* piece;
  } pieces[] = {{3, -1, "def"}, {2, 100, "cdef"}, {0, -1, "abcdef"}, {0, 0, ""},           {6, -1, ""},
                {7, 1, ""},     {-3, 2, "ab"},    {1, 2, "bc"},      {2147483647, -1, ""}, {5, 2147483647, "f"}};
  for (const auto& row : pieces) EXPECT_EQ(text.Substring(row.start, row.length), row.piece) << row.start;

  const struct {
    const char *text, *from, *to, *result;
  } replaced[] = {{"50%%", "%", "%25", "50%25%25"}, {"aaa", "aa", "b", "ba"},  {"abab", "ab", "", ""},
                  {"abc", "", "x", "abc"},          {"", "a", "b", ""},        {"a.b", ".", ".", "a.b"},
                  {"xaxa", "x", "xx", "xxaxxa"},    {"abc", "abcd", "", "abc"}};
  for (const auto& row : replaced) EXPECT_EQ(S(row.text).Replace(row.from, row.to), row.result) << row.text;
  EXPECT_EQ(text.Replace(text, text), text);
  EXPECT_TRUE(text.StartsWith("abc", 0) && text.BeginsWith("abc", 1) && text.StartsWith(""));
  EXPECT_FALSE(text.StartsWith("ABC", 0) || text.BeginsWith("bc", 1) || text.StartsWith("abcdefg"));
}

TEST(NQ_TString, CaseIsMappedFullyAndWithoutRegardToLanguage) {
  const struct {
    const char16_t *text, *upper, *lower;
  } cases[] = {
      {u"", u"", u""},
      {u"stra\u00DFe", u"STRASSE", u"stra\u00DFe"},           // sharp s grows
      {u"Ii\u0130\u0131", u"II\u0130I", u"iii\u0307\u0131"},  // i with and without dot
      {u"\u039F\u0394\u039F\u03A3", u"\u039F\u0394\u039F\u03A3", u"\u03BF\u03B4\u03BF\u03C2"},  // final sigma
      {u"\uFB01\U00010428", u"FI\U00010400", u"\uFB01\U00010428"},                              // ligature, Deseret
      {u"a\xD800z", u"A\xD800Z", u"a\xD800z"},
  };
  for (const auto& row : cases) {
    NQ_TString upper(row.text);
    NQ_TString lower(row.text);
    upper.ToUpper();
    lower.ToLower();
    EXPECT_EQ(upper, row.upper);
    EXPECT_EQ(lower, row.lower);
    EXPECT_EQ(NQ_TString(row.text).Lowered(), lower);
  }
}

TEST(NQ_TString, ComparesAndOrdersByCodeUnits) {
  const char16_t* const sorted[] = {u"", u"A", u"a", u"ab", u"b", u"\u00E9", u"\xD83D\xDCC4", u"\uFB01"};
  for (const char16_t* left : sorted) {
    for (const char16_t* right : sorted) {
      const NQ_TString a(left);
      const NQ_TString b(right);
      SCOPED_TRACE(Printed(a) + " " + Printed(b));
      EXPECT_EQ(a < b, u16string_view(left) < u16string_view(right));
      EXPECT_EQ(a == b, left == right);
      EXPECT_EQ(a == b.c_str(), left == right);
      EXPECT_EQ(a == right, left == right);
      EXPECT_EQ(a.Hash() == b.Hash(), left == right);
    }
  }
  EXPECT_EQ(NQ_TString("\xC3\xA9"), L"\u00E9");
  EXPECT_NE(NQ_TString("a\0b", 3), "a");
  EXPECT_NE(NQ_TString("a"), "A");
  NQ_TString emptied("x");
  emptied.Truncate(0);
  EXPECT_TRUE(emptied == NQ_TString() && emptied == "" && NQ_TString() == emptied);
  EXPECT_EQ(emptied.Hash(), NQ_TString().Hash());
}

// Every way of changing a text: copies taken before stay as they were, the narrow form and the hash follow.
TEST(NQ_TString, ChangesShowInOneCopyOnly) {
  const struct {
    const char* name;
    void (*change)(NQ_TString&);
    const char* result;
  } cases[] = {
      {"append", [](NQ_TString& s) { s.Append(NQ_TString("X")); }, "abc\u00DFX"},
      {"append unit", [](NQ_TString& s) { s.Append(u'X'); }, "abc\u00DFX"},
      {"append itself", [](NQ_TString& s) { s.Append(s); }, "abc\u00DFabc\u00DF"},
      {"append a view of itself", [](NQ_TString& s) { s.Append(s.StringView().substr(1, 2)); }, "abc\u00DFbc"},
      {"append room", [](NQ_TString& s) { *s.AppendUninitialized(1) = u'X'; }, "abc\u00DFX"},
      {"truncate", [](NQ_TString& s) { s.Truncate(2); }, "ab"},
      {"clear", [](NQ_TString& s) { s.Clear(); }, ""},
      {"upper", [](NQ_TString& s) { s.ToUpper(); }, "ABCSS"},
      {"assign itself", [](NQ_TString& s) { s = static_cast<const NQ_TString&>(s); }, "abc\u00DF"},
      {"move to itself", [](NQ_TString& s) { s = static_cast<NQ_TString&&>(s); }, "abc\u00DF"},
      {"assign a piece", [](NQ_TString& s) { s = s.Substring(1, 1); }, "b"},
      {"replace", [](NQ_TString& s) { s = s.Replace(s, s + s); }, "abc\u00DFabc\u00DF"},
  };
  for (const auto& row : cases) {
    for (const bool shared : {true, false}) {
      SCOPED_TRACE(std::string(row.name) + (shared ? ", shared" : ", alone"));
      NQ_TString text("abc\u00DF");
      const NQ_TString copy = shared ? text : NQ_TString("abc\u00DF");
      EXPECT_STREQ(text.c_str(), copy.c_str());
      EXPECT_EQ(text.Hash(), copy.Hash());
      row.change(text);
      EXPECT_STREQ(copy.c_str(), "abc\u00DF");
      EXPECT_STREQ(text.c_str(), row.result);
      EXPECT_EQ(text.Hash(), NQ_TString(row.result).Hash());
    }
  }
  NQ_TString from("x");
  const NQ_TString to = std::move(from);
  from.Append(u'y');  // a text that was moved out of can be used again
  EXPECT_EQ(from + to, "yx");
}

TEST(NQ_TString, ReservedRoomIsUsed) {
  NQ_TString text;
  text.Reserve(1000);
  const char16_t* const room = text.WideText();
  for (int round = 0; round < 2; ++round, text.Clear()) {
    text.Append(NQ_TString("abc"));
    while (text.Length() < 1000) text.Append(u'x');
    EXPECT_EQ(text.WideText(), room);
  }
  EXPECT_THROW(text.Append(u16string_view(room, std::size_t{1} << 31)), std::length_error);
  EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace base_test
