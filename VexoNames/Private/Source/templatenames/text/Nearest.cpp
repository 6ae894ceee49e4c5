#include "text/Nearest.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <string>

namespace templatenames {
namespace {

constexpr std::size_t kLongestWord = 100;  // what is longer is no misspelt word

// Three rows of the table of distances, as far as they matter: cell d of row i compares the first i units of one text
// with the first i + d - most of the other.
class TBand {
 public:
  TBand(std::u16string_view a, std::u16string_view b, unsigned most) : a_(a), b_(b), most_(most) {}

  unsigned Distance() {
    for (std::size_t i = 0; i <= a_.size(); ++i) {
      twoAbove_ = above_;
      above_ = row_;
      if (FillRow(i) > most_) return most_ + 1;
    }
    return std::min(row_[b_.size() + most_ - a_.size()], most_ + 1);
  }

 private:
  static constexpr unsigned kFar = kMostEdits + 1;

  // Returns the row's smallest distance.
  unsigned FillRow(std::size_t i) {
    row_.fill(kFar);
    unsigned least = kFar;
    for (std::size_t d = 0; d <= 2 * most_; ++d) {
      if (i + d < most_ || i + d - most_ > b_.size()) continue;
      row_[d] = Cell(i, i + d - most_, d);
      least = std::min(least, row_[d]);
    }
    return least;
  }

  unsigned Cell(std::size_t i, std::size_t j, std::size_t d) const {
    if (i == 0) return static_cast<unsigned>(j);
    unsigned edits = above_[d + 1] + 1;
    if (j == 0) return edits;
    if (d > 0) edits = std::min(edits, row_[d - 1] + 1);
    edits = std::min(edits, above_[d] + (a_[i - 1] == b_[j - 1] ? 0U : 1U));
    if (i > 1 && j > 1 && a_[i - 1] == b_[j - 2] && a_[i - 2] == b_[j - 1]) edits = std::min(edits, twoAbove_[d] + 1);
    return edits;
  }

  using TRow = std::array<unsigned, 2 * kMostEdits + 2>;  // the last cell is never filled: it bounds the band

  static TRow FarRow() {
    TRow row;
    row.fill(kFar);
    return row;
  }

  std::u16string_view a_;
  std::u16string_view b_;
  unsigned most_;
  TRow twoAbove_ = FarRow();
  TRow above_ = FarRow();
  TRow row_ = FarRow();
};

std::u16string Folded(std::u16string_view text) {
  std::u16string folded(text);
  std::ranges::transform(folded, folded.begin(), FoldedUnit);
  return folded;
}

}  // namespace

char16_t FoldedUnit(char16_t unit) {
  if (unit < 0x80) return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
  return static_cast<char16_t>(u_foldCase(unit, U_FOLD_CASE_DEFAULT));
}

// One error in three letters is still a misspelling; more is another word.
unsigned BearableEdits(std::size_t length) {
  if (length < 2) return 0;
  return static_cast<unsigned>(std::clamp<std::size_t>(length / 3, 1, kMostEdits));
}

unsigned EditsBetween(std::u16string_view a, std::u16string_view b, unsigned most) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > most) return most + 1;
  return TBand(a, b, most).Distance();
}

std::u16string_view NearestWord(std::u16string_view text, std::span<const std::u16string_view> candidates) {
  if (text.size() > kLongestWord) return {};
  const std::u16string wanted = Folded(text);
  const unsigned most = BearableEdits(text.size());
  std::u16string_view nearest;
  unsigned fewest = 2 * most + 2;  // twice the edits, one more for another first letter
  for (const std::u16string_view candidate : candidates) {
    if (candidate.empty() || candidate.size() > text.size() + most) continue;
    const std::u16string folded = Folded(candidate);
    const unsigned edits = EditsBetween(wanted, folded, most);
    const unsigned distance = 2 * edits + (folded.starts_with(wanted.substr(0, 1)) ? 0 : 1);
    if (distance >= fewest) continue;
    fewest = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace templatenames
