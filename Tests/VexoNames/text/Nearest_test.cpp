// The nearest of a few words.
#include "text/Nearest.h"

#include <random>

#include "Support.h"

namespace templatenames {
namespace {

// The whole table, as it is described.
unsigned PlainEdits(const std::u16string& a, const std::u16string& b) {
  std::vector<std::vector<unsigned>> edits(a.size() + 1, std::vector<unsigned>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      unsigned& cell = edits[i][j] = static_cast<unsigned>(i + j);
      if (i > 0) cell = std::min(cell, edits[i - 1][j] + 1);
      if (j > 0) cell = std::min(cell, edits[i][j - 1] + 1);
      if (i > 0 && j > 0) cell = std::min(cell, edits[i - 1][j - 1] + (a[i - 1] != b[j - 1] ? 1 : 0));
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        cell = std::min(cell, edits[i - 2][j - 2] + 1);
    }
  }
  return edits[a.size()][b.size()];
}

TEST(Nearest, EditsOfRandomTextsAreThoseOfTheWholeTable) {
  std::mt19937 random(7);
  const auto letters = [&] {
    std::u16string text;
    for (std::size_t length = random() % 9; text.size() < length;) text += static_cast<char16_t>(u'a' + random() % 3);
    return text;
  };
  for (int i = 0; i < 50'000; ++i) {
    const std::u16string a = letters();
    const std::u16string b = letters();
    const unsigned most = static_cast<unsigned>(random() % (kMostEdits + 1));
    ASSERT_EQ(EditsBetween(a, b, most), std::min(PlainEdits(a, b), most + 1)) << NQ_TString(a) << ' ' << NQ_TString(b);
  }
}

TEST(Nearest, Words) {
  constexpr std::u16string_view kWords[] = {
      u"format",        u"elem", u"extract", u"regex",         u"mm", u"cm", u"Zone",
      u"\u00C9t\u00E9", u"None", u"Lined",   u"Europe/Berlin", u"in", u"",   u"cone"};
  const std::pair<std::u16string_view, std::u16string_view> cases[] = {
      {u"FORMAT", u"format"},  // case alone
      {u"\u00E9T\u00C9", u"\u00C9t\u00E9"},
      {u"formt", u"format"},
      {u"fromat", u"format"},
      {u"exrtact", u"extract"},
      {u"regexp", u"regex"},
      {u"europe/berln", u"Europe/Berlin"},
      {u"uErope Brlin", u"Europe/Berlin"},
      {u"mn", u"mm"},  // a short word bears one edit
      {u"ele", u"elem"},
      {u"dm", u"mm"},      // the first of several
      {u"Nine", u"None"},  // the one with the same first letter
      {u"pt", u""},
      {u"el", u""},
      {u"x", u""},
      {u"", u""},
      {u"colour", u""},
  };
  for (const auto& [text, word] : cases) EXPECT_EQ(NearestWord(text, kWords), word) << NQ_TString(text);
  EXPECT_EQ(NearestWord(std::u16string(1'000'000, u'm'), kWords), u"");
}

}  // namespace
}  // namespace templatenames
