// What cuts texts down, beside the plain way; the rules of specifications are tested with tokens.
#include "text/Stages.h"

#include <climits>
#include <random>

#include "Support.h"

namespace templatenames {
namespace {

TEST(Stages, Numbers) {
  using enum TStageNumber::TKind;
  const std::tuple<std::u16string_view, int, TStageNumber::TKind> cases[] = {
      {u"", 0, Missing},
      {u"+-1", 0, Missing},
      {u"\t\n\v\f\r +12abc", 12, Front},
      {u"\u00A012", 0, Missing},
      {u"- 1", 0, Missing},
      {u"\u0661", 0, Missing},
      {u" 2147483647", INT_MAX, Whole},
      {u"2147483648", INT_MAX, OutOfRange},
      {u"99999999999999999999", INT_MAX, OutOfRange},
      {u"-12", -12, Whole},
      {u"-2147483648", INT_MIN, Whole},
      {u"-2147483649x", INT_MIN, OutOfRange},
  };
  for (const auto& [text, value, kind] : cases) {
    const TStageNumber number = ReadStageNumber(text);
    EXPECT_TRUE(number.value == value && number.kind == kind) << NQ_TString(text);
  }
}

// The walk as it is described, with a fresh search for every piece.
TElement PlainElement(std::u16string_view input, std::u16string_view separator, int index) {
  std::size_t start = 0;
  for (int pieces = 0;; ++pieces) {
    const std::size_t found = input.find(separator, start);
    if (index == pieces) return {input.substr(start, found == input.npos ? found : found - start), true, 0};
    if (found == input.npos) return {{}, false, pieces + 1};
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
    const TElement expected = PlainElement(input, separator, index), element = Element(input, separator, index);
    found += expected.text.empty() ? 0 : 1;
    ASSERT_TRUE(element.text == expected.text && element.exists == expected.exists && element.pieces == expected.pieces)
        << NQ_TString(separator) << "," << index << NQ_TString(input);
  }
  EXPECT_GT(found, 1'000);
}

// Each of these takes hours when every place is compared anew with a long separator.
TEST(Stages, ElementTakesLinearTime) {
  const std::u16string input(4'000'000, u'a'), half(2'000'000, u'a');
  EXPECT_EQ(Element(input, half + u"b", INT_MAX).text.size(), 0U);
  EXPECT_EQ(Element(input, half, 2'000'001).text.size(), half.size() - 1);
  EXPECT_EQ(Element(input, u"aa", 3'999'999).text.size(), 1U);
}

}  // namespace
}  // namespace templatenames
