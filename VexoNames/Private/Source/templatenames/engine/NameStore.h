// The registry's store: the entries of all names, and what resolving them keeps.
#pragma once

#include <vector>

#include "engine/CategoryIndex.h"
#include "engine/Entry.h"
#include "engine/KeptTemplates.h"
#include "engine/KeptTokens.h"

namespace templatenames {

/// Used under the registry lock. An entry that is pinned while it is removed stays alive until it is unpinned, so that
/// a handler may undefine or redefine any name, the one in hand included.
class TNameStore {
 public:
  /// The entry of a name, or null.
  TEntry* Find(const NQ_TString& key) { return Find(key.StringView(), key.Hash()); }
  TEntry* Find(std::u16string_view key, std::uint64_t hash);

  /// Adds an empty entry for a name that has none.
  TEntry& Add(const NQ_TString& key);
  void Remove(const NQ_TString& key);
  void RemoveAll();

  /// Changes whenever a name comes or goes: while it stays, entries found earlier are still right, and so is the
  /// absence of one.
  std::uint64_t Version() const { return version_; }
  /// For walking over the names in the order of their definition.
  const NQ_TDict& Names() const { return names_; }

  TCategoryIndex& Categories() { return categories_; }
  TKeptTemplates& Templates() { return templates_; }
  TKeptTokens& Tokens() { return tokens_; }
  /// An empty string, for a text on its way to the result; it keeps its memory for the next one.
  NQ_TString& EmptyText() {
    constexpr unsigned int kLong = 4096;  // units: what holds so much memory is dropped
    if (text_.Length() > kLong) text_ = NQ_TString();
    text_.Clear();
    return text_;
  }

  /// Keeps an entry alive; pins nest.
  static void Pin(TEntry& entry) { ++entry.pins_; }
  void Unpin(TEntry& entry) noexcept;

 private:
  void KeepIfPinned(NQ_TAny& held);

  NQ_TDict names_{128};  // name to entry
  std::uint64_t version_ = 1;
  TCategoryIndex categories_{*this};
  TKeptTemplates templates_;
  TKeptTokens tokens_;
  NQ_TString text_;
  std::vector<NQ_TAny> removed_;  // entries that were pinned when they were removed
};

}  // namespace templatenames
