#include "engine/TemplateCache.h"

#include <algorithm>

namespace templatenames {
namespace {

// A registry belongs to one job or task: a few hundred templates of ordinary length fit.
constexpr std::size_t kMaxGenerationWeight = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kMaxTemplateWeight = kMaxGenerationWeight / 4;
constexpr std::size_t kMaxTemplateLength = std::size_t{64} * 1024;  // units; longer texts are not worth hashing

}  // namespace

TTemplateCache::TPointer TTemplateCache::Find(const NQ_TString& text) {
  if (text.Length() > kMaxTemplateLength) return nullptr;
  const TWanted wanted{text, HashOf(text)};
  TTemplate* const recent = recent_[wanted.hash % kRecent];
  if (recent != nullptr && recent->hash == wanted.hash && recent->source == text) return TPointer(recent);
  return Search(wanted);
}

TTemplateCache::TPointer TTemplateCache::Search(const TWanted& wanted) {
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
  TPointer kept(new TTemplate(wanted.text, wanted.hash));
  if (kept->Weight() <= kMaxTemplateWeight) Keep(kept);
  return kept;
}

// Of a long text only samples are hashed: it is compared as a whole anyway before it counts as found, and few long
// texts are kept.
std::uint64_t TTemplateCache::HashOf(const NQ_TString& text) {
  constexpr std::size_t kSample = 64;
  constexpr std::size_t kSamples = 16;
  const std::u16string_view units = text.StringView();
  if (units.size() <= kSample * kSamples) return text.Hash();
  char16_t sampled[kSample * kSamples];
  for (std::size_t i = 0; i < kSamples; ++i)
    units.copy(sampled + i * kSample, kSample, (units.size() - kSample) * i / (kSamples - 1));
  return NQ_TString::HashOf({sampled, std::size(sampled)}) + units.size();
}

bool TTemplateCache::SeenBefore(std::uint64_t hash) {
  TSeen& row = seen_[hash % seen_.size()];
  if (std::find(row.begin(), row.end(), hash) != row.end()) return true;
  std::copy_backward(row.begin(), row.end() - 1, row.end());
  row.front() = hash;
  return false;
}

void TTemplateCache::Keep(const TPointer& kept) {
  if (youngWeight_ + kept->Weight() > kMaxGenerationWeight) {
    recent_.fill(nullptr);
    old_ = std::exchange(young_, {});
    youngWeight_ = 0;
  }
  young_.insert(kept);
  youngWeight_ += kept->Weight();
}

}  // namespace templatenames
