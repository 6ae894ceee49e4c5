#include "engine/NameStore.h"

#include <algorithm>
#include <iterator>

namespace templatenames {
namespace {

// The registry holds nothing but entries, and gives none away as a variant.
TEntry* EntryIn(const NQ_TAny& held) { return const_cast<TEntry*>(held.As<TEntry>()); }

}  // namespace

TEntry* TNameStore::Find(std::u16string_view key, std::uint64_t hash) {
  const NQ_TAny* const held = names_.ValueOfText(key, hash);
  return held == nullptr ? nullptr : EntryIn(*held);
}

TEntry& TNameStore::Add(const NQ_TString& key) {
  ++version_;
  names_.Add(key, NQ_TAny(TEntry()));
  return *Find(key);
}

void TNameStore::Remove(const NQ_TString& key) {
  NQ_TAny* const held = names_.ValueOfKey(key);
  if (held == nullptr) return;
  ++version_;
  KeepIfPinned(*held);
  names_.Remove(key);
}

void TNameStore::RemoveAll() {
  ++version_;
  for (NQ_TIterator i(names_); !i.IsDone(); i.Next()) KeepIfPinned(i.Value());
  names_.Clear();
}

void TNameStore::KeepIfPinned(NQ_TAny& held) {
  if (EntryIn(held)->pins_ > 0) removed_.push_back(std::move(held));
}

void TNameStore::DropUnpinned() noexcept {
  const auto unpinned =
      std::partition(removed_.begin(), removed_.end(), [](const NQ_TAny& held) { return EntryIn(held)->pins_ > 0; });
  // Destroyed last: what a caller stored in an entry may call back.
  const std::vector<NQ_TAny> gone(std::make_move_iterator(unpinned), std::make_move_iterator(removed_.end()));
  removed_.erase(unpinned, removed_.end());
}

}  // namespace templatenames
