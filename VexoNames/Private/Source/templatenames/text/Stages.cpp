#include "text/Stages.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "text/Find.h"

namespace templatenames {
namespace {

// Up to this length a separator is compared anew at every place: a bounded number of steps per unit of input.
constexpr std::size_t kShortSeparator = 16;

// The occurrences of a needle, overlapping ones included, from left to right.
class TOccurrences {
 public:
  TOccurrences(std::u16string_view text, std::u16string_view needle) : text_(text), needle_(needle) {
    if (needle.size() > kShortSeparator && needle.size() <= text.size()) FillBorders();
  }

  /// The next one, or kNone.
  std::size_t Next() {
    if (needle_.size() > text_.size()) return kNone;
    if (!borders_.empty()) return NextByBorders();
    const std::size_t found = FindText(text_, needle_, at_);
    at_ = found == kNone ? text_.size() : found + 1;
    return found;
  }

 private:
  // Knuth, Morris and Pratt: borders_[i] is the length of the longest proper prefix of the needle that also
  // ends its first i units.
  void FillBorders() {
    borders_.resize(needle_.size() + 1);
    std::uint32_t border = 0;
    for (std::size_t i = 1; i < needle_.size(); ++i) {
      while (border > 0 && needle_[i] != needle_[border]) border = borders_[border];
      if (needle_[i] == needle_[border]) ++border;
      borders_[i + 1] = border;
    }
  }

  std::size_t NextByBorders() {
    while (at_ < text_.size()) {
      while (matched_ > 0 && text_[at_] != needle_[matched_]) matched_ = borders_[matched_];
      if (text_[at_++] == needle_[matched_]) ++matched_;
      if (matched_ == needle_.size()) {
        matched_ = borders_[matched_];
        return at_ - needle_.size();
      }
    }
    return kNone;
  }

  std::u16string_view text_;
  std::u16string_view needle_;
  std::size_t at_ = 0;
  std::size_t matched_ = 0;
  std::vector<std::uint32_t> borders_;  // empty: the needle is short
};

bool IsSpace(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

}  // namespace

TStageNumber ReadStageNumber(std::u16string_view text) {
  using TKind = TStageNumber::TKind;
  auto at = std::find_if_not(text.begin(), text.end(), IsSpace);
  const bool negative = at != text.end() && *at == u'-';
  if (at != text.end() && (*at == u'-' || *at == u'+')) ++at;
  if (at == text.end() || !IsDigit(*at)) return {0, TKind::Missing};
  constexpr std::int64_t kPast = std::int64_t{1} << 32;
  std::int64_t number = 0;
  for (; at != text.end() && IsDigit(*at); ++at) number = std::min(number * 10 + (*at - u'0'), kPast);
  if (negative) number = -number;
  using TLimits = std::numeric_limits<int>;
  const auto value = static_cast<int>(std::clamp<std::int64_t>(number, TLimits::min(), TLimits::max()));
  if (value != number) return {value, TKind::OutOfRange};
  return {value, at == text.end() ? TKind::Whole : TKind::Front};
}

TElemSpec ParseElem(std::u16string_view spec) {
  const std::size_t comma = spec.rfind(u',');
  if (comma == kNone || comma == 0) return {TStageError::ElemSyntax, {}, {}};
  const TStageNumber index = ReadStageNumber(spec.substr(comma + 1));
  return {index.value < 0 ? TStageError::ElemIndex : TStageError::None, index, spec.substr(0, comma)};
}

TElement Element(std::u16string_view input, std::u16string_view separator, int index) {
  TOccurrences occurrences(input, separator);
  std::size_t start = 0;
  for (int count = 0;; ++count) {
    const std::size_t found = occurrences.Next();
    if (count == index) return {input.substr(start, found == kNone ? kNone : found - start), true, 0};
    if (found == kNone) return {{}, false, count + 1};
    start = found + 1;
  }
}

TExtractSpec ParseExtract(std::u16string_view spec) {
  const std::size_t comma = FindUnit(spec, u',', 0);
  if (comma == kNone || comma == 0) return {TStageError::ExtractSyntax, {}, {}};
  const TStageNumber start = ReadStageNumber(spec.substr(0, comma));
  return {start.value < 0 ? TStageError::ExtractIndex : TStageError::None, start,
          ReadStageNumber(spec.substr(comma + 1))};
}

TExtract Extract(std::u16string_view input, int start, int length) {
  const auto from = static_cast<std::size_t>(start);
  if (from >= input.size()) return {{}, true};
  return {input.substr(from, length < 0 ? kNone : static_cast<std::size_t>(length)), false};
}

}  // namespace templatenames
