#include "Suggest.h"

#include <algorithm>

#include "Text.h"

namespace {

// Beyond these a suggestion costs more than it helps: it is looked for at every failed token.
constexpr std::size_t kMostCandidates = 5'000;
constexpr std::size_t kLongestText = 64;

// Edit distance in which exchanging two neighbours counts one (optimal string alignment).
std::size_t Distance(std::u16string_view a, std::u16string_view b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) above[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    std::swap(before, above);
    std::swap(above, row);
  }
  return above[b.size()];
}

}  // namespace

const NQ_TString* ClosestTo(const NQ_TString& text, const std::vector<NQ_TString>& candidates) {
  if (text.Length() > kLongestText || candidates.size() > kMostCandidates) return nullptr;
  const NQ_TString wanted = text.Lowered();
  // One error in three characters is still a misspelling; more is another word.
  std::size_t best = std::max<std::size_t>(wanted.Length() / 3, 1) + 1;
  const NQ_TString* closest = nullptr;
  for (const NQ_TString& candidate : candidates) {
    const std::size_t longer = std::max(candidate.Length(), wanted.Length());
    const std::size_t shorter = std::min(candidate.Length(), wanted.Length());
    if (longer - shorter >= best) continue;
    const std::size_t distance = Distance(wanted.StringView(), candidate.Lowered().StringView());
    if (distance >= best || distance == longer) continue;
    best = distance;
    closest = &candidate;
  }
  return closest;
}

std::string Suggestion(const NQ_TString& text, const std::vector<NQ_TString>& candidates) {
  const NQ_TString* const closest = ClosestTo(text, candidates);
  return closest == nullptr ? std::string() : "; did you mean '" + Printable(closest->Narrow()) + "'?";
}
