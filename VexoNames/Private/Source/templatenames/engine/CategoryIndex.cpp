#include "engine/CategoryIndex.h"

#include <algorithm>

#include "engine/AttributeKeys.h"
#include "engine/NameStore.h"

namespace templatenames {

bool TCategoryIndex::Has(const NQ_TString& category) { return Know(category).exists; }

std::vector<NQ_TString> TCategoryIndex::KeysOf(const NQ_TString& category) {
  std::vector<NQ_TString> keys;
  if (!Has(category)) return keys;
  for (NQ_TConstIterator i(names_.Names()); !i.IsDone(); i.Next())
    if (CategoryOf(*i.Value().As<TEntry>()) == category) keys.push_back(i.Key());
  return keys;
}

void TCategoryIndex::LookAt(const NQ_TDict& entry) {
  if (known_.empty()) return;
  const NQ_TString& category = CategoryOf(entry);
  std::erase_if(known_, [&](const TKnown& known) { return !known.exists && known.category == category; });
}

const NQ_TString& TCategoryIndex::CategoryOf(const NQ_TDict& entry) {
  ++visits_;
  const auto* const found = entry.Get<NQ_TString>(Keys().category);
  return found == nullptr ? NQ_TString::sEmpty : *found;
}

bool TCategoryIndex::Holds(const TKnown& known) {
  if (known.exists) {
    const TEntry* const entry = names_.Find(known.key);
    return entry != nullptr && CategoryOf(*entry) == known.category;
  }
  const auto hasIt = [&](const NQ_TDict* entry) { return CategoryOf(*entry) == known.category; };
  return known.version == names_.Version() && std::ranges::none_of(handedOut_, hasIt);
}

const TCategoryIndex::TKnown& TCategoryIndex::Know(const NQ_TString& category) {
  const auto found = std::ranges::find(known_, category, &TKnown::category);
  if (found != known_.end() && Holds(*found)) return *found;
  if (found != known_.end()) known_.erase(found);
  if (known_.size() == kMostKnown) known_.erase(known_.begin());
  TKnown known{category, false, {}, names_.Version()};
  for (NQ_TConstIterator i(names_.Names()); !known.exists && !i.IsDone(); i.Next()) {
    known.exists = CategoryOf(*i.Value().As<TEntry>()) == category;
    if (known.exists) known.key = i.Key();
  }
  return known_.emplace_back(std::move(known));
}

}  // namespace templatenames
