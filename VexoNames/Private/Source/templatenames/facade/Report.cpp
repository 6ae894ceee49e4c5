// TNameReport: what became of the tokens of one call.
#include <algorithm>
#include <iterator>
#include <utility>

#include "TNameReport.h"

namespace {

// In the order of the kinds.
constexpr std::string_view kKindNames[] = {
    "undefined",
    "no-value",
    "format",
    "elem",
    "extract",
    "regex",
    "options",
    "unit",
    "cycle",
    "counter",
    "limit",
    "service",
    "lookup",
    "type",
    "exception",
    "unknown-option",
    "option-kind",
    "option-value",
    "unread-rest",
    "unreadable",
    "unlikely",
    "unknown-zone",
    "unknown-language",
    "no-zone",
    "unquoted",
    "unknown-attribute",
    "repeated-attribute",
    "marker",
    "empty",
    "no-match",
    "not-a-number",
    "no-conversion",
};
static_assert(std::size(kKindNames) == TNameProblem::TNameProblem_KindNoConversion + 1);

bool IsTrail(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }
bool IsLead(char16_t unit) { return (unit & 0xFC00) == 0xD800; }

}  // namespace

std::string_view TNameProblem::NameOf(TNameProblem_Kind kind) {
  const auto place = static_cast<std::size_t>(kind);
  return place < std::size(kKindNames) ? kKindNames[place] : std::string_view();
}

void TNameReport::Clear() { *this = TNameReport(); }

void TNameReport::Add(TNameProblem problem) {
  const bool fails = problem.IsFailure();
  std::vector<TNameProblem>& kept = fails ? failures_ : notes_;
  ++(fails ? failureCount_ : noteCount_);
  if (kept.size() < kMostKept) kept.push_back(std::move(problem));
}

TNamePlace TNamePlaces::At(std::size_t unit) {
  unit = std::min(unit, text_.size());
  if (unit < unit_) {
    unit_ = 0;
    place_ = {};
  }
  while (unit_ < unit) {
    const char16_t c = text_[unit_];
    const bool pair = IsLead(c) && unit_ + 1 < text_.size() && IsTrail(text_[unit_ + 1]);
    const std::size_t units = pair ? 2 : 1;
    if (unit_ + units > unit) break;  // within a character: its place
    const bool ends = c == u'\n' || (c == u'\r' && !text_.substr(unit_ + 1).starts_with(u'\n'));
    place_.line += ends ? 1 : 0;
    place_.column = ends ? 1 : place_.column + 1;
    place_.byte += pair ? 4 : c < 0x80 ? 1 : c < 0x800 ? 2 : 3;  // an unpaired surrogate becomes U+FFFD
    unit_ += units;
  }
  return place_;
}
