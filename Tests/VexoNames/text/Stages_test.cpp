// What cuts texts down, beside the plain way; the rules of specifications are tested with tokens.
#include "text/Stages.h"

#include <climits>
#include <random>

#include "Support.h"

namespace templatenames {
namespace {

TEST(Stages, Atoi) {
  const std::pair<std::u16string_view, int> cases[] = {
      {u"", 0},
      {u"+-1", 0},
      {u"\t\n\v\f\r +12abc", 12},
      {u"\u00A012", 0},
      {u"- 1", 0},
      {u"\u0661", 0},
      {u"2147483648", INT_MAX},
      {u"99999999999999999999", INT_MAX},
      {u"-12", -12},
      {u"-2147483648", INT_MIN},
      {u"-2147483649", INT_MIN},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(Atoi(text), number) << NQ_TString(text);
}

// The walk as it is described, with a fresh search for every piece.
std::u16string_view PlainElement(std::u16string_view input, std::u16string_view separator, int index) {
  for (std::size_t start = 0;; --index) {
    const std::size_t found = input.find(separator, start);
    if (index == 0) return input.substr(start, found == input.npos ? found : found - start);
    if (found == input.npos) return {};
    start = found + 1;
  }
}

TEST(Stages, ElementsOfRandomTextsAreThoseOfThePlainWalk) {
  std::mt19937 random(31);
  const auto letters = [&](std::size_t count) {
    std::u16string text;
    while (text.size() < count) text += random() % 8 == 0 ? u'b' : u'a';
    return text;
  };
  int found = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::u16string input = letters(random() % 200);
    std::u16string separator = letters(1 + random() % 30);
    if (!input.empty() && i % 2 == 0) separator = input.substr(random() % input.size(), 1 + random() % 30);
    const int index = static_cast<int>(random() % 4);
    const std::u16string_view expected = PlainElement(input, separator, index);
    found += expected.empty() ? 0 : 1;
    ASSERT_EQ(Element(input, separator, index), expected) << NQ_TString(separator) << "," << index << NQ_TString(input);
  }
  EXPECT_GT(found, 1'000);
}

// Each of these takes hours when every place is compared anew with a long separator.
TEST(Stages, ElementTakesLinearTime) {
  const std::u16string input(4'000'000, u'a'), half(2'000'000, u'a');
  EXPECT_EQ(Element(input, half + u"b", INT_MAX).size(), 0U);
  EXPECT_EQ(Element(input, half, 2'000'001).size(), half.size() - 1);
  EXPECT_EQ(Element(input, u"aa", 3'999'999).size(), 1U);
}

}  // namespace
}  // namespace templatenames
