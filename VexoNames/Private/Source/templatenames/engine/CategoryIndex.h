// Which names have a category, without walking over all of them each time.
//
//   if (!names.Categories().Has("jp")) ...                       // walks once; then again only after a change
//   for (const NQ_TString& key : names.Categories().KeysOf("jp")) names.UnDefine(key);
//
// A template may hold any number of tokens that ask for a category of which there is no name. The truth is in the
// entries, where handlers may write. What is kept is therefore only what can be checked, or is told: of a category that
// there is, one name that has it; of one that there is not, that no name had it, until a name comes or goes, or the
// entry of one that may have changed is looked at (`LookAt`). Entries that handlers hold are looked at each time.
//
// Who writes a category in another way than a handler calls `LookAt`. Used under the registry lock.
#pragma once

#include <cstdint>
#include <vector>

#include "NQ_TString.h"

class NQ_TDict;

namespace templatenames {

class TNameStore;

class TCategoryIndex {
 public:
  explicit TCategoryIndex(TNameStore& names) : names_(names) {}
  TCategoryIndex(const TCategoryIndex&) = delete;
  TCategoryIndex& operator=(const TCategoryIndex&) = delete;

  bool Has(const NQ_TString& category);
  /// The names of the category, in the order of their definition.
  std::vector<NQ_TString> KeysOf(const NQ_TString& category);

  /// The entry's category may have changed.
  void LookAt(const NQ_TDict& entry);

  /// Around calls of handlers that are given the entry: these may write to it until they return, and ask meanwhile.
  class THandedOut {
   public:
    THandedOut(TCategoryIndex& index, const NQ_TDict& entry) : index_(index) { index.handedOut_.push_back(&entry); }
    THandedOut(const THandedOut&) = delete;
    THandedOut& operator=(const THandedOut&) = delete;
    ~THandedOut() {
      index_.LookAt(*index_.handedOut_.back());
      index_.handedOut_.pop_back();
    }

   private:
    TCategoryIndex& index_;
  };

  /// How many entries were looked at so far.
  std::uint64_t Visits() const { return visits_; }

 private:
  struct TKnown {
    NQ_TString category;
    bool exists = false;
    NQ_TString key;             // of a name that had it
    std::uint64_t version = 0;  // of the names, where none had it
  };
  static constexpr std::size_t kMostKnown = 16;  // who asks, asks for a few

  const NQ_TString& CategoryOf(const NQ_TDict& entry);
  /// Whether what is known still holds.
  bool Holds(const TKnown& known);
  /// What is known of the category, found anew where it no longer holds.
  const TKnown& Know(const NQ_TString& category);

  TNameStore& names_;
  std::vector<TKnown> known_;
  std::vector<const NQ_TDict*> handedOut_;  // the innermost call last
  std::uint64_t visits_ = 0;
};

}  // namespace templatenames
