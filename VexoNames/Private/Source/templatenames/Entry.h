// The entry of one name: the dictionary of its attributes, which handlers see, with a way to the attributes of value
// production that needs no lookup while no attribute comes or goes.
#pragma once

#include "NQ_TDict.h"

namespace templatenames {

/// The attributes that producing a value reads; each null when the entry has none of that name.
struct TEntrySlots {
  NQ_TAny* type = nullptr;
  NQ_TAny* value = nullptr;
  NQ_TAny* format = nullptr;
  NQ_TAny* typeHandler = nullptr;
  NQ_TAny* lookupHandler = nullptr;
  NQ_TAny* lookupHandler2 = nullptr;
  NQ_TAny* elem = nullptr;
  NQ_TAny* extract = nullptr;
  NQ_TAny* regex = nullptr;
  NQ_TAny* formattingOptions = nullptr;
};

/// Used under the registry lock. To everybody else it is an NQ_TDict, by class name too.
class TEntry final : public NQ_TDict {
 public:
  TEntry() = default;
  TEntry(const TEntry& other) : NQ_TDict(other) {}
  TEntry(TEntry&& other) noexcept : NQ_TDict(std::move(other)) {}
  TEntry& operator=(const TEntry&) = delete;
  ~TEntry() override;

  /// Valid until an attribute is added or removed; ask again after every handler call.
  const TEntrySlots& Slots() {
    if (slotsVersion_ != KeysVersion()) FindSlots();
    return slots_;
  }

  /// Whether resolving the name's value, a text, leaves it as it is. Remembered for the last short one.
  bool ValueIsPlain(const NQ_TString& value);

  NQ_IPackable* NQ_Clone(void* = nullptr) const override;
  NQ_IPackable* NQ_Move() override;

 private:
  friend class TNameStore;

  void FindSlots();

  int pins_ = 0;  // the registry's: while it is above 0, the entry outlives its removal
  TEntrySlots slots_;
  std::uint64_t slotsVersion_ = 0;
  NQ_TString plainValue_;  // a share of the last value that had nothing to resolve: it keeps the address unique
};

}  // namespace templatenames
