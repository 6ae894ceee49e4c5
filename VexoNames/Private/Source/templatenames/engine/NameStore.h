// The registry's store: the entries of all names, and what resolving them keeps.
#pragma once

#include <vector>

#include "engine/CategoryIndex.h"
#include "engine/Entry.h"
#include "engine/TemplateCache.h"
#include "engine/TokenCache.h"

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
  TTemplateCache& Templates() { return templates_; }
  TTokenCache& Tokens() { return tokens_; }
  /// For a text on its way to the result: see TScratch.
  NQ_TString& Scratch() { return scratch_; }

  /// Keeps an entry alive; pins nest.
  static void Pin(TEntry& entry) { ++entry.pins_; }
  void Unpin(TEntry& entry) noexcept {
    if (--entry.pins_ == 0 && !removed_.empty()) DropUnpinned();
  }

 private:
  void KeepIfPinned(NQ_TAny& held);
  void DropUnpinned() noexcept;

  NQ_TDict names_{128};  // name to entry
  std::uint64_t version_ = 1;
  TCategoryIndex categories_{*this};
  TTemplateCache templates_;
  TTokenCache tokens_;
  NQ_TString scratch_;
  std::vector<NQ_TAny> removed_;  // entries that were pinned when they were removed
};

/// Keeps the entry in hand alive while handlers run.
class TPin {
 public:
  TPin(TNameStore& names, TEntry& entry) : names_(names), entry_(entry) { TNameStore::Pin(entry_); }
  TPin(const TPin&) = delete;
  TPin& operator=(const TPin&) = delete;
  ~TPin() { names_.Unpin(entry_); }

 private:
  TNameStore& names_;
  TEntry& entry_;
};

/// An empty string that keeps its memory from one use to the next. While one is in use, others get memory of their own.
class TScratch {
 public:
  explicit TScratch(TNameStore& names) : names_(names), text_(std::move(names.Scratch())) { text_.Clear(); }
  TScratch(const TScratch&) = delete;
  TScratch& operator=(const TScratch&) = delete;
  ~TScratch() {
    constexpr unsigned int kLong = 4096;  // units: what holds so much memory is dropped
    if (text_.Length() <= kLong) names_.Scratch() = std::move(text_);
  }

  NQ_TString& Text() { return text_; }

 private:
  TNameStore& names_;
  NQ_TString text_;
};

/// One level of resolutions within each other, while it lives.
class TDeeper {
 public:
  explicit TDeeper(int& depth) : depth_(depth) { ++depth_; }
  TDeeper(const TDeeper&) = delete;
  TDeeper& operator=(const TDeeper&) = delete;
  ~TDeeper() { --depth_; }

 private:
  int& depth_;
};

}  // namespace templatenames
