// The list.
#pragma once

#include <deque>
#include <initializer_list>

#include "NQ_IIteratable.h"
#include "NQ_TShared.h"

/// A position in a list.
struct NQ_TListKey {
  NQ_TAny value;
};

/// An ordered sequence of variants: NQ_TList{1, "two", 3.0}. Copies share their content until one of them is changed. A
/// position is valid while the list is not assigned or destroyed.
class NQ_EXPORT NQ_TList final : public NQ_TValueOf<NQ_TList, NQ_TContainer, "NQ_TList"> {
 public:
  NQ_TList() = default;
  /// These values. Of lists within the list say NQ_TAny(inner): one list alone in braces is a copy of it.
  NQ_TList(std::initializer_list<NQ_TItemOf<NQ_TList>> values);
  using NQ_TClassOf::operator=;

  /// Appends, and returns the position of the value.
  NQ_TListKey* Add(NQ_TAny&& value);
  NQ_TListKey* Add(const NQ_TAny& value) { return Add(NQ_TAny(value)); }
  unsigned int Count() const {
    return shared_.Read() == nullptr ? 0 : static_cast<unsigned int>(shared_.Read()->size());
  }
  /// The value at the index, or null when it is past the end.
  [[nodiscard]] const NQ_TAny* At(unsigned int index) const {
    return index < Count() ? &(*shared_.Read())[index].value : nullptr;
  }
  /// Whether the list has an equal value.
  [[nodiscard]] bool Contains(const NQ_TAny& value) const;

  auto begin() const { return Count() == 0 ? TConstWalk() : TConstWalk({shared_.Read()->begin()}); }
  auto end() const { return Count() == 0 ? TConstWalk() : TConstWalk({shared_.Read()->end()}); }
  auto begin() { return Count() == 0 ? TWalk() : TWalk({shared_.Lend().begin()}); }
  auto end() { return Count() == 0 ? TWalk() : TWalk({shared_.Lend().end()}); }

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
  using TValues = std::deque<NQ_TListKey>;
  template <class Place>
  struct TCursor {
    auto& Element() const { return place->value; }
    void Step() { ++place; }
    bool operator==(const TCursor&) const = default;
    Place place{};
  };
  using TWalk = NQ_TForward<NQ_TAny, TCursor<TValues::iterator>>;
  using TConstWalk = NQ_TForward<const NQ_TAny, TCursor<TValues::const_iterator>>;

  NQ_TShared<TValues> shared_;
};
