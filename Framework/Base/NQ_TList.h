// The list.
#pragma once

#include <deque>

#include "NQ_IIteratable.h"
#include "NQ_TShared.h"

/// A position in a list.
struct NQ_TListKey {
  NQ_TAny value;
};

/// An ordered sequence of variants. Copies share their content until one of them is changed. A position is valid while
/// the list is not assigned or destroyed.
class NQ_EXPORT NQ_TList final : public NQ_TValueOf<NQ_TList, NQ_TContainer, "NQ_TList"> {
 public:
  NQ_TList() = default;
  using NQ_TClassOf::operator=;

  /// Appends, and returns the position of the value.
  NQ_TListKey* Add(NQ_TAny&& value);
  unsigned int Count() const {
    return shared_.Read() == nullptr ? 0 : static_cast<unsigned int>(shared_.Read()->size());
  }
  /// The value at the index, or null when it is past the end.
  const NQ_TAny* At(unsigned int index) const { return index < Count() ? &(*shared_.Read())[index].value : nullptr; }
  /// Whether the list has an equal value.
  bool Contains(const NQ_TAny& value) const;

  bool operator==(const NQ_TList& other) const;
  /// (value, value)
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;

  TPlace FirstPlace() const override { return {}; }
  bool AtEnd(const TPlace& place) const override { return place.index >= Count(); }
  void Advance(TPlace& place) const override { ++place.index; }
  NQ_TString KeyAt(const TPlace&) const override { return {}; }
  const NQ_TAny& ValueAt(const TPlace& place) const override { return (*shared_.Read())[place.index].value; }
  void PrepareToWrite() override { shared_.Lend(); }

 private:
  NQ_TShared<std::deque<NQ_TListKey>> shared_;
};
