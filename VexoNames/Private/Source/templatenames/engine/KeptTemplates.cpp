#include "engine/KeptTemplates.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <cstring>

namespace templatenames {
namespace {

// A registry belongs to one job or task: a few hundred templates of ordinary length fit.
constexpr std::size_t kMaxGenerationWeight = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kMaxTemplateWeight = kMaxGenerationWeight / 4;
constexpr std::size_t kMaxTemplateLength = std::size_t{64} * 1024;  // units; longer texts are not worth hashing

/// Text as a key: hashed and compared as memory, not unit by unit.
struct TUnits {
  std::u16string_view units;

  bool operator==(const TUnits& other) const {
    return units.size() == other.units.size() &&
           (units.empty() || std::memcmp(units.data(), other.units.data(), units.size() * sizeof(char16_t)) == 0);
  }
  template <class H>
  friend H AbslHashValue(H hash, const TUnits& key) {
    return H::combine(std::move(hash), NQ_TString::HashOf(key.units));
  }
};

}  // namespace

// A copy of the text: the caller's may share much more memory than it shows.
TKeptTemplate::TKeptTemplate(const NQ_TString& text, std::uint64_t textHash)
    : source(text.StringView()), hash(textHash) {
  const std::u16string_view units = source.StringView();
  const auto position = [](std::size_t at) { return static_cast<std::uint32_t>(at); };  // kMaxTemplateLength at most
  absl::flat_hash_map<TUnits, std::uint32_t> known;
  TScanner scanner(units, ChooseMarkers(units));
  for (TScannedToken place; scanner.Next(place);) {
    const std::u16string_view inside = units.substr(place.textBegin, place.textEnd - place.textBegin);
    const auto [token, added] = known.try_emplace(TUnits{inside}, position(tokens.size()));
    if (added) tokens.emplace_back(inside);
    pieces.push_back({position(place.literal), position(place.begin), position(place.end), token->second});
  }
  pieces.shrink_to_fit();
  tokens.shrink_to_fit();
  done = scanner.Done();
  syntaxError = scanner.SyntaxError();
}

// Regular expressions are compiled later, when a token first needs its own.
std::size_t TKeptTemplate::Weight() const {
  const auto regexes =
      std::count_if(tokens.begin(), tokens.end(), [](const TToken& token) { return !token.parts.regex.empty(); });
  return sizeof *this + source.Length() * sizeof(char16_t) + pieces.size() * sizeof(TPiece) +
         tokens.size() * sizeof(TToken) + static_cast<std::size_t>(regexes) * TToken::kMaxRegexBytes;
}

TKeptTemplates::TPointer TKeptTemplates::Find(const NQ_TString& text) {
  if (text.Length() > kMaxTemplateLength) return nullptr;
  const TWanted wanted{text, HashOf(text)};
  TKeptTemplate* const recent = recent_[wanted.hash % kRecent];
  if (recent != nullptr && recent->hash == wanted.hash && recent->source == text) return TPointer(recent);
  return Search(wanted);
}

TKeptTemplates::TPointer TKeptTemplates::Search(const TWanted& wanted) {
  if (const auto found = young_.find(wanted); found != young_.end()) {
    recent_[wanted.hash % kRecent] = found->get();
    return *found;
  }
  if (const auto found = old_.find(wanted); found != old_.end()) {
    TPointer kept = *found;
    old_.erase(found);
    Keep(kept);
    return kept;
  }
  if (!SeenBefore(wanted.hash)) return nullptr;
  TPointer kept(new TKeptTemplate(wanted.text, wanted.hash));
  if (kept->Weight() <= kMaxTemplateWeight) Keep(kept);
  return kept;
}

// Of a long text only samples are hashed: it is compared as a whole anyway before it counts as found, and few long
// texts are kept.
std::uint64_t TKeptTemplates::HashOf(const NQ_TString& text) {
  constexpr std::size_t kSample = 64;
  constexpr std::size_t kSamples = 16;
  const std::u16string_view units = text.StringView();
  if (units.size() <= kSample * kSamples) return text.Hash();
  char16_t sampled[kSample * kSamples];
  for (std::size_t i = 0; i < kSamples; ++i)
    units.copy(sampled + i * kSample, kSample, (units.size() - kSample) * i / (kSamples - 1));
  return NQ_TString::HashOf({sampled, std::size(sampled)}) + units.size();
}

bool TKeptTemplates::SeenBefore(std::uint64_t hash) {
  TSeen& row = seen_[hash % seen_.size()];
  if (std::find(row.begin(), row.end(), hash) != row.end()) return true;
  std::copy_backward(row.begin(), row.end() - 1, row.end());
  row.front() = hash;
  return false;
}

void TKeptTemplates::Keep(const TPointer& kept) {
  if (youngWeight_ + kept->Weight() > kMaxGenerationWeight) {
    recent_.fill(nullptr);
    old_ = std::exchange(young_, {});
    youngWeight_ = 0;
  }
  young_.insert(kept);
  youngWeight_ += kept->Weight();
}

}  // namespace templatenames
