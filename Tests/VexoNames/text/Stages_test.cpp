#include "text/Stages.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

#include "NQ_TString.h"

namespace templatenames {

void PrintTo(TStageError error, std::ostream* out) {
  const char* const names[] = {"None", "ElemSyntax", "ElemIndex", "ExtractIndex", "ExtractSyntax"};
  *out << names[static_cast<int>(error)];
}

namespace {

std::string Utf8(std::u16string_view text) { return NQ_TString(text).c_str(); }

TEST(Stages, Elem) {
  struct {
    std::u16string_view spec, input, piece;
    TStageError error = TStageError::None;
  } const cases[] = {
      {u"/,2", u"a/b/c/d", u"c"},
      {u"/,0", u"abc", u"abc"},
      {u"/,5", u"a/b", u""},
      {u"/,1", u"a/", u""},
      {u"/,0", u"", u""},
      {u"/,2147483647", u"a/b", u""},
      {u"/,99999999999999999999", u"a/b", u""},
      {u",,1", u"x,y,z", u"y"},
      {u",,,1", u"a,,b", u",b"},  // the separator is ",,"
      {u"--,1", u"a--b", u"-b"},  // the walk goes on one unit after the separator begins
      {u"--,1", u"a---b", u""},
      {u"--,2", u"a---b", u"-b"},
      {u"aa,3", u"aaaa", u"a"},
      {u"/,x", u"a/b", u"a"},  // no number counts as 0
      {u"/, +1b", u"a/b", u"b"},
      {u"/,", u"a/b", u"a"},
      {u"\U0001F4C4,1", u"a\U0001F4C4b",
       u"\xDCC4"
       u"b"},
      {u"/2", u"a/b", u"", TStageError::ElemSyntax},
      {u",2", u"a/b", u"", TStageError::ElemSyntax},
      {u"", u"a/b", u"", TStageError::ElemSyntax},
      {u"/,-1", u"a/b", u"", TStageError::ElemIndex},
      {u"/,-99999999999", u"a/b", u"", TStageError::ElemIndex},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(Utf8(row.spec) + " of " + Utf8(row.input));
    std::u16string_view separator = u"unset";
    int index = -7;
    ASSERT_EQ(ParseElem(row.spec, separator, index), row.error);
    if (row.error == TStageError::None) {
      EXPECT_EQ(Utf8(Element(row.input, separator, index)), Utf8(row.piece));
    } else {
      EXPECT_EQ(separator, u"unset");
      EXPECT_EQ(index, -7);
    }
  }
}

TEST(Stages, Extract) {
  struct {
    std::u16string_view spec, input, piece;
    TStageError error = TStageError::None;
  } const cases[] = {
      {u"2,3", u"abcdefg", u"cde"},
      {u"2,-1", u"abcdefg", u"cdefg"},
      {u"2,0", u"abcdefg", u""},
      {u"5,99", u"abcdefg", u"fg"},
      {u"7,1", u"abcdefg", u""},
      {u"2147483647,2147483647", u"abcdefg", u""},
      {u"1,2,3", u"abcdefg", u"bc"},
      {u" 1, 2", u"abcdefg", u"bc"},
      {u"x,2", u"abcdefg", u"ab"},
      {u"2,", u"abcdefg", u""},
      {u"3", u"abcdefg", u"", TStageError::ExtractSyntax},
      {u",3", u"abcdefg", u"", TStageError::ExtractSyntax},
      {u"", u"abcdefg", u"", TStageError::ExtractSyntax},
      {u"-1,2", u"abcdefg", u"", TStageError::ExtractIndex},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(Utf8(row.spec) + " of " + Utf8(row.input));
    int start = -7;
    int length = -7;
    ASSERT_EQ(ParseExtract(row.spec, start, length), row.error);
    if (row.error == TStageError::None) {
      EXPECT_EQ(Utf8(Extract(row.input, start, length)), Utf8(row.piece));
    } else {
      EXPECT_EQ(start, -7);
    }
  }
}

TEST(Stages, Atoi) {
  struct {
    std::u16string_view text;
    int number;
  } const cases[] = {
      {u"", 0},
      {u"-", 0},
      {u"+-1", 0},
      {u"\t\n\v\f\r 12", 12},
      {u"\u00A012", 0},
      {u"007", 7},
      {u"\u0661", 0},
      {u"12abc", 12},
      {u"- 1", 0},
      {u"2147483647", INT_MAX},
      {u"2147483648", INT_MAX},
      {u"9223372036854775808", INT_MAX},
      {u"-2147483648", INT_MIN},
      {u"-2147483649", INT_MIN},
      {u"-99999999999999999999", INT_MIN},
  };
  for (const auto& row : cases) EXPECT_EQ(Atoi(row.text), row.number) << Utf8(row.text);
}

// The walk as it is described, with a fresh search for every piece.
std::u16string PlainElement(std::u16string_view input, std::u16string_view separator, int index) {
  std::size_t start = 0;
  int count = -1;
  std::size_t found = 0;
  std::u16string_view piece;
  do {
    found = input.find(separator, start);
    piece = input.substr(start, found == std::u16string_view::npos ? found : found - start);
    ++count;
    start = found + 1;
  } while (count != index && found != std::u16string_view::npos);
  return std::u16string(count == index ? piece : std::u16string_view());
}

TEST(Stages, ElementsOfRandomTextsAreThoseOfThePlainWalk) {
  constexpr unsigned kSeed = 31;
  std::mt19937 random(kSeed);
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
    const std::u16string expected = PlainElement(input, separator, index);
    found += expected.empty() ? 0 : 1;
    ASSERT_EQ(Utf8(Element(input, separator, index)), Utf8(expected))
        << Utf8(separator) << "," << index << " of " << Utf8(input) << ", seed " << kSeed;
  }
  EXPECT_GT(found, 1'000);
}

// Each of these takes hours when every place is compared anew with a long separator.
TEST(Stages, ElementTakesLinearTime) {
  const std::u16string input(4'000'000, u'a');
  const std::u16string half(2'000'000, u'a');
  EXPECT_EQ(Element(input, half + u"b", INT_MAX).size(), 0U);
  EXPECT_EQ(Element(input, half, 2'000'001).size(), half.size() - 1);
  EXPECT_EQ(Element(input, u"aa", 3'999'999).size(), 1U);
}

}  // namespace
}  // namespace templatenames
