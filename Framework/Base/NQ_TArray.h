// The indexed sequence.
#pragma once

#include <initializer_list>
#include <vector>

#include "NQ_IIteratable.h"
#include "NQ_TShared.h"

/// An indexed sequence of variants: NQ_TArray{1, "two", 3.0}. Copies share their content until one of them is changed.
/// An element's address is valid until the next change of the array.
class NQ_EXPORT NQ_TArray final : public NQ_TValueOf<NQ_TArray, NQ_TContainer, "NQ_TArray"> {
 public:
  NQ_TArray() = default;
  /// These elements. Of arrays within the array say NQ_TAny(inner): one array alone in braces is a copy of it.
  NQ_TArray(std::initializer_list<NQ_TItemOf<NQ_TArray>> elements);
  using NQ_TClassOf::operator=;

  void Add(NQ_TAny value) { shared_.Write().push_back(std::move(value)); }
  unsigned int Count() const {
    return shared_.Read() == nullptr ? 0 : static_cast<unsigned int>(shared_.Read()->size());
  }
  /// The element, or null when the index is past the end.
  [[nodiscard]] const NQ_TAny* At(unsigned int index) const {
    return index < Count() ? &(*shared_.Read())[index] : nullptr;
  }
  /// The element; null elements are added up to it when the index is past the end.
  NQ_TAny* At(unsigned int index);

  const NQ_TAny* begin() const { return Count() == 0 ? nullptr : shared_.Read()->data(); }
  const NQ_TAny* end() const { return begin() + Count(); }
  NQ_TAny* begin() { return Count() == 0 ? nullptr : shared_.Lend().data(); }
  NQ_TAny* end() { return begin() + Count(); }

  bool operator==(const NQ_TArray& other) const;
  /// [value, value]
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;

  TPlace FirstPlace() const override { return {}; }
  bool AtEnd(const TPlace& place) const override { return place.index >= Count(); }
  void Advance(TPlace& place) const override { ++place.index; }
  NQ_TString KeyAt(const TPlace&) const override { return {}; }
  const NQ_TAny& ValueAt(const TPlace& place) const override { return (*shared_.Read())[place.index]; }
  void PrepareToWrite() override { shared_.Lend(); }

 private:
  NQ_TShared<std::vector<NQ_TAny>> shared_;
};
