#include "KeptTemplates.h"

namespace templatenames {
namespace {

// A registry belongs to one job or task: a few hundred templates of ordinary length fit.
constexpr std::size_t kMaxGenerationWeight = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kMaxTemplateWeight = kMaxGenerationWeight / 4;
constexpr std::size_t kMaxTemplateLength = std::size_t{64} * 1024;  // units; longer texts are not worth hashing

}  // namespace

// A copy of the text: the caller's may share much more memory than it shows.
TKeptTemplate::TKeptTemplate(const NQ_TString& text) : source(text.StringView()) {
  const std::u16string_view units = source.StringView();
  TScanner scanner(units, ChooseMarkers(units));
  for (TScannedToken place; scanner.Next(place);)
    pieces.push_back({place, TToken(units.substr(place.textBegin, place.textEnd - place.textBegin))});
  pieces.shrink_to_fit();
  done = scanner.Done();
  syntaxError = scanner.SyntaxError();
}

std::size_t TKeptTemplate::Weight() const {
  return sizeof *this + source.Length() * sizeof(char16_t) + pieces.size() * sizeof(TPiece);
}

TKeptTemplates::TPointer TKeptTemplates::Find(const NQ_TString& text) {
  if (text.Length() > kMaxTemplateLength) return nullptr;
  if (const auto found = young_.find(text); found != young_.end()) return *found;
  if (const auto found = old_.find(text); found != old_.end()) {
    TPointer kept = *found;
    old_.erase(found);
    Keep(kept);
    return kept;
  }
  if (!SeenBefore(text)) return nullptr;
  TPointer kept(new TKeptTemplate(text));
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

bool TKeptTemplates::SeenBefore(const NQ_TString& text) {
  const std::uint64_t hash = HashOf(text);
  return std::exchange(seen_[hash % seen_.size()], hash) == hash;
}

void TKeptTemplates::Keep(const TPointer& kept) {
  if (youngWeight_ + kept->Weight() > kMaxGenerationWeight) {
    old_ = std::exchange(young_, {});
    youngWeight_ = 0;
  }
  young_.insert(kept);
  youngWeight_ += kept->Weight();
}

}  // namespace templatenames
