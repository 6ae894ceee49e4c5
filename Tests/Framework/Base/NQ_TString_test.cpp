#include "NQ_TString.h"

#include <gtest/gtest.h>

#include <string>

#include "NQ_TURL.h"
#include "Support.h"

namespace base_test {
namespace {

using std::u16string;
using std::u16string_view;

TEST(NQ_TString, IsMadeOfTextInAnyForm) {
  const wchar_t wide[] = {L'a', 0x1F4C4, 0xD800, 0x110000, 0};
  const std::pair<NQ_TString, u16string_view> cases[] = {
      {NQ_TString(static_cast<const char*>(nullptr)), u""},
      {NQ_TString(static_cast<const wchar_t*>(nullptr)), u""},
      {NQ_TString("abc\xC3\xB8", 4), u"abc\uFFFD"},  // cut within a character
      {NQ_TString("a\0b", 3), u16string_view(u"a\0b", 3)},
      {NQ_TString(wide), u"a\U0001F4C4\uFFFD\uFFFD"},
      {NQ_TString(wide, 2), u"a\U0001F4C4"},
      {NQ_TString(u"ab\xD800", 3), u"ab\xD800"},
      {NQ_TString() = L"w\u00E9", u"w\u00E9"},
      {std::string("a\0\xC3\xB8", 4), u16string_view(u"a\0\u00F8", 3)},
      {std::string_view("abc", 2), u"ab"},
      {u16string_view(u"a\0\xD800", 3), u16string_view(u"a\0\xD800", 3)},
      {NQ_TString("x") = std::string("s"), u"s"},
      {NQ_TString("x") = std::string_view(), u""},
      {NQ_TString("x") = u16string_view(u"\u00F8"), u"\u00F8"},
      {NQ_TString("x").Append(std::string("y")) + std::string_view("z") + "!", u"xyz!"},
      {NQ_TString::Format("%05d", 42) + NQ_TString::Format("[%s]%%", "x"), u"00042[x]%"},
  };
  for (const auto& [text, units] : cases)
    EXPECT_EQ(u16string(text.WideText(), text.Length() + 1), u16string(units) + u'\0') << text;
  EXPECT_EQ(NQ_TString::Format("%1000s", "x").Length(), 1000U);
  // Nothing but text can be assigned: it would leave the text as it was.
  static_assert(!std::is_assignable_v<NQ_TString&, NQ_TURL> && !std::is_assignable_v<NQ_TURL&, NQ_TString>);
  static_assert(!std::is_constructible_v<NQ_TString, std::nullptr_t> && !std::is_convertible_v<int, NQ_TString>);
}

bool PlainMatch(u16string_view text, u16string_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == u'*')
    return PlainMatch(text, pattern.substr(1)) || (!text.empty() && PlainMatch(text.substr(1), pattern));
  return !text.empty() && text[0] == pattern[0] && PlainMatch(text.substr(1), pattern.substr(1));
}

u16string PlainReplace(u16string_view text, u16string_view from, u16string_view to) {
  if (text.empty()) return u"";
  const bool here = !from.empty() && text.starts_with(from);
  return u16string(here ? to : text.substr(0, 1)) + PlainReplace(text.substr(here ? from.size() : 1), from, to);
}

TEST(NQ_TString, FindsMatchesAndReplacesAsThePlainWayDoes) {
  TRandom random(1);
  for (int round = 0; round < 10'000; ++round) {
    const u16string text = random.Word(u"ab", 8), pattern = random.Word(u"ab**", 6);
    const NQ_TString string(text), part(random.Word(u"ab", 3)), other(random.Word(u"ab", 2));
    const int start = static_cast<int>(random.Below(14)) - 4, count = static_cast<int>(random.Below(5)) - 1;
    int first = -1, last = -1;
    for (int i = 0; i <= static_cast<int>(text.size()); ++i) {
      if (!u16string_view(text).substr(static_cast<std::size_t>(i)).starts_with(part.StringView())) continue;
      if (i >= start && first < 0) first = i;
      if (start == -1 || i <= start) last = i;
    }
    SCOPED_TRACE(Printed(string + " " + part + " " + NQ_TString(pattern) + " ") + std::to_string(start));
    ASSERT_EQ(string.Find(part, start, false), first);
    ASSERT_EQ(string.Find(part.c_str(), start, true), last);
    ASSERT_EQ(string.StartsWith(part), text.starts_with(part.StringView()));
    ASSERT_EQ(string.Match(NQ_TString(pattern)), PlainMatch(text, pattern));
    ASSERT_EQ(string.Replace(part, other).StringView(), PlainReplace(text, part.StringView(), other.StringView()));
    const std::size_t from = std::min(static_cast<std::size_t>(std::max(start, 0)), text.size());
    ASSERT_EQ(string.Substring(start, count).StringView(), text.substr(from, static_cast<std::size_t>(count)));
  }
  const NQ_TString many(u16string(1'000'000, u'a'));  // linear, however often the beginning of the rest occurs
  EXPECT_FALSE(many.Match(NQ_TString(u"*" + u16string(500'000, u'a') + u"b")));
  EXPECT_EQ(many.Find(static_cast<const char*>(nullptr), 1), 1);  // as the empty text
  EXPECT_EQ(many.Find('a', 99, true) + many.Find(NQ_TUniChar('b'), -1, true), 98);
}

TEST(NQ_TString, CaseIsMappedFullyAndWithoutRegardToLanguage) {
  // Sharp s grows; i with and without dot; final sigma; Deseret, an unpaired half.
  NQ_TString text(u"stra\u00DFe Ii\u0130\u0131 \u039F\u03A3 a\xD800\U00010428");
  EXPECT_EQ(text.Lowered(), u"stra\u00DFe iii\u0307\u0131 \u03BF\u03C2 a\xD800\U00010428");
  text.ToUpper();
  EXPECT_EQ(text, u"STRASSE II\u0130I \u039F\u03A3 A\xD800\U00010400");
}

TEST(NQ_TString, ComparesAndOrdersByCodeUnits) {
  NQ_TString emptied("x");
  emptied.Truncate(0);
  const NQ_TString sorted[] = {emptied, "A", "a", NQ_TString("a\0b", 3), "ab", "\xC3\xA9", u"\xD83D\xDCC4", u"\uFB01"};
  for (const NQ_TString& a : sorted) {
    for (const NQ_TString& b : sorted) {
      const bool same = &a == (&b == sorted + 3 ? sorted + 2 : &b);  // ends where a bare pointer sees it end
      EXPECT_TRUE((a < b) == (&a < &b) && (a == b) == (&a == &b) && (a.Hash() == b.Hash()) == (&a == &b)) << a << b;
      EXPECT_TRUE((a == b.c_str()) == same && (a == b.WideText()) == same) << a << b;
    }
  }
  EXPECT_TRUE(emptied == NQ_TString() && NQ_TString().Hash() == emptied.Hash() && sorted[5] == L"\u00E9");
}

// Every way of changing a text: copies taken before stay as they were, the narrow form and the hash follow.
TEST(NQ_TString, ChangesShowInOneCopyOnly) {
  const struct {
    void (*change)(NQ_TString&);
    const char* result;
  } cases[] = {
      {[](NQ_TString& s) { s.Append(NQ_TString("X")); }, "abc\u00DFX"},
      {[](NQ_TString& s) { s.Append(s); }, "abc\u00DFabc\u00DF"},
      {[](NQ_TString& s) { s.Append(s.StringView().substr(1, 2)); }, "abc\u00DFbc"},
      {[](NQ_TString& s) { *s.AppendUninitialized(1) = u'X'; }, "abc\u00DFX"},
      {[](NQ_TString& s) { s.Truncate(2); }, "ab"},
      {[](NQ_TString& s) { s.Clear(); }, ""},
      {[](NQ_TString& s) { s.ToUpper(); }, "ABCSS"},
      {[](NQ_TString& s) { s = static_cast<NQ_TString&&>(s); }, "abc\u00DF"},
      {[](NQ_TString& s) { s = s.Replace(s, s + s); }, "abc\u00DFabc\u00DF"},
  };
  for (const auto& row : cases) {
    for (const bool shared : {true, false}) {
      SCOPED_TRACE(testing::Message() << "row " << &row - cases << (shared ? ", shared" : ", alone"));
      NQ_TString text("abc\u00DF");
      const NQ_TString copy = shared ? text : NQ_TString("abc\u00DF");
      EXPECT_TRUE(text.c_str() == S(copy.c_str()) && text.Hash() == copy.Hash());
      row.change(text);
      EXPECT_STREQ(copy.c_str(), "abc\u00DF");
      EXPECT_STREQ(text.c_str(), row.result);
      EXPECT_EQ(text.Hash(), NQ_TString(row.result).Hash());
    }
  }
  NQ_TString from("x");
  const NQ_TString to = std::move(from);
  EXPECT_EQ(from.Append(u'y') + to, "yx");  // a text that was moved out of can be used again
  EXPECT_THROW(from.Append(u16string_view(from.WideText(), std::size_t{1} << 31)), std::length_error);
}

}  // namespace
}  // namespace base_test
