#include "text/NameLikeness.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "text/Nearest.h"

namespace templatenames {
namespace {

constexpr std::u16string_view kSeparators = u"_-.: \t\r\n\u00A0";

std::u16string Sorted(std::u16string_view text) {
  std::u16string sorted(text);
  std::ranges::sort(sorted);
  return sorted;
}

// Every pair of neighbours, in the order of their units.
std::vector<std::uint32_t> Pairs(std::u16string_view text) {
  std::vector<std::uint32_t> pairs;
  for (std::size_t i = 1; i < text.size(); ++i) pairs.push_back(std::uint32_t{text[i - 1]} << 16 | text[i]);
  std::ranges::sort(pairs);
  return pairs;
}

std::u16string DigitsOf(std::u16string_view text) {
  std::u16string digits(text);
  std::erase_if(digits, [](char16_t unit) { return unit < u'0' || unit > u'9'; });
  return digits;
}

}  // namespace

std::u16string LettersOf(std::u16string_view name) {
  std::u16string letters;
  for (const char16_t unit : name)
    if (kSeparators.find(unit) == kSeparators.npos) letters += FoldedUnit(unit);
  return letters;
}

TNameLikeness::TNameLikeness(std::u16string_view key)
    : folded_(key), letters_(LettersOf(key)), sorted_(Sorted(letters_)), digits_(DigitsOf(key)) {
  std::ranges::transform(folded_, folded_.begin(), FoldedUnit);
}

TNameDistance TNameLikeness::DistanceTo(std::u16string_view name) const {
  const std::u16string other = LettersOf(name);
  TNameDistance distance;
  distance.letters = LetterDistance(other);
  if (distance.letters == TNameDistance::kFar) return distance;
  distance.otherDigits = DigitsOf(name) != digits_;
  std::u16string folded(name);
  std::ranges::transform(folded, folded.begin(), FoldedUnit);
  distance.separators = EditsBetween(folded_, folded, kMostEdits);
  distance.otherFirst = letters_.front() != other.front();
  distance.added = static_cast<int>(letters_.size()) - static_cast<int>(other.size());
  return distance;
}

unsigned TNameLikeness::LetterDistance(std::u16string_view other) const {
  const unsigned most = BearableEdits(std::max(letters_.size(), other.size()));
  const unsigned edits = EditsBetween(letters_, other, most);
  if (edits <= 1) return edits * TNameDistance::kEdit;
  if (HasWordsExchanged(other)) return TNameDistance::kEdit * 3 / 2;
  if (edits <= 2 && edits <= most) return edits * TNameDistance::kEdit;
  if (IsPartOf(other)) return TNameDistance::kEdit * 2 + static_cast<unsigned>(other.size() - letters_.size());
  return edits <= most ? edits * TNameDistance::kEdit : TNameDistance::kFar;
}

// Two words exchanged are four places at most where other neighbours meet.
bool TNameLikeness::HasWordsExchanged(std::u16string_view other) const {
  if (letters_.size() != other.size() || Sorted(other) != sorted_) return false;
  const std::vector<std::uint32_t> ours = Pairs(letters_);
  const std::vector<std::uint32_t> theirs = Pairs(other);
  std::vector<std::uint32_t> lost;
  std::ranges::set_difference(ours, theirs, std::back_inserter(lost));
  return lost.size() <= std::min<std::size_t>(4, ours.size() / 3);
}

bool TNameLikeness::IsPartOf(std::u16string_view other) const {
  constexpr std::size_t kShortest = 5;  // few letters are part of many names
  if (letters_.size() < kShortest || letters_.size() >= other.size() || other.size() > 2 * letters_.size() + 2)
    return false;
  const std::size_t before = static_cast<std::size_t>(std::ranges::mismatch(letters_, other).in1 - letters_.begin());
  return other.ends_with(std::u16string_view(letters_).substr(before));
}

}  // namespace templatenames
