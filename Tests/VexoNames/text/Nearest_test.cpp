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

const rows_test::RowFile file("text/Nearest.txt", {"words:"}, [](const rows_test::Row& row) {
  std::vector<NQ_TString> texts;
  for (const std::string& word : rows_test::Pieces(row.Setting("words:"), "|")) texts.emplace_back(word);
  std::vector<std::u16string_view> words;
  for (const NQ_TString& text : texts) words.push_back(text.StringView());
  const auto parts = rows_test::Pieces(row.text, " =>");
  const NQ_TString nearest(NearestWord(NQ_TString(parts.at(0)).StringView(), words));
  EXPECT_EQ(nearest.Empty() ? "" : ' ' + names_test::Text(nearest), parts.at(1));
  EXPECT_EQ(NearestWord(std::u16string(100'000, u'm'), words), u"");
});

}  // namespace
}  // namespace templatenames
