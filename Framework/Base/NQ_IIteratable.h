// Walking over containers.
//
//   for (const auto& [key, value] : dict) ...      // NQ_TDict, NQ_TTree
//   for (NQ_TAny& value : list) value = 5;         // NQ_TList, NQ_TArray
//   for (NQ_TConstIterator i(container); !i.IsDone(); i.Next()) ...   // any of them, by the interface
//
// Walking a container that is not const is for writing: its copies share nothing with it from then on. Where one only
// reads, `std::as_const(container)` keeps copies cheap.
#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

#include "NQ_TAny.h"
#include "NQ_TString.h"

/// A container whose elements can be visited one after the other. It must not be changed while it is being walked.
class NQ_EXPORT NQ_IIteratable : public virtual NQ_IInterface {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_IIteratable"; }

  /// A place in a container; what the fields mean is the container's own business.
  struct TPlace {
    const void* node = nullptr;
    std::size_t index = 0;
  };

  virtual TPlace FirstPlace() const = 0;
  virtual bool AtEnd(const TPlace& place) const = 0;
  virtual void Advance(TPlace& place) const = 0;
  /// The key at a place; the empty string in a container without keys.
  virtual NQ_TString KeyAt(const TPlace& place) const = 0;
  virtual const NQ_TAny& ValueAt(const TPlace& place) const = 0;
  /// Makes the content this container's own, to be written through `ValueAt`; called before `FirstPlace`.
  virtual void PrepareToWrite() = 0;
};

/// What `begin` and `end` of a container of `Value`s give. A cursor is a place in that container: `Element` gives what
/// is there, `Step` goes to the next place.
template <class Value, class Cursor>
class NQ_TForward {
 public:
  using value_type = std::remove_const_t<Value>;
  using reference = Value&;
  using pointer = Value*;
  using difference_type = std::ptrdiff_t;
  using iterator_category = std::forward_iterator_tag;

  NQ_TForward() = default;
  explicit NQ_TForward(Cursor cursor) : cursor_(cursor) {}
  reference operator*() const { return cursor_.Element(); }
  pointer operator->() const { return &cursor_.Element(); }
  NQ_TForward& operator++() {
    cursor_.Step();
    return *this;
  }
  NQ_TForward operator++(int) {
    const NQ_TForward before = *this;
    cursor_.Step();
    return before;
  }
  bool operator==(const NQ_TForward&) const = default;

 private:
  Cursor cursor_;
};

/// One element of a list in braces: all that a variant takes, but no `Container`, for Container{other} is a copy.
template <class Container>
struct NQ_TItemOf {
  template <class Value>
  requires(!std::same_as<std::remove_cvref_t<Value>, Container> && std::convertible_to<Value, NQ_TAny>)
      // Copies and moves are left alone by the constraint.
      NQ_TItemOf(Value&& item)  // NOLINT(google-explicit-constructor,bugprone-forwarding-reference-overload)
      : value(std::forward<Value>(item)) {}

  NQ_TAny value;
};

/// Reads a container from its first element on.
class NQ_TConstIterator {
 public:
  explicit NQ_TConstIterator(const NQ_IIteratable& container) : container_(container), place_(container.FirstPlace()) {}
  bool IsDone() const { return container_.AtEnd(place_); }
  void Next() { container_.Advance(place_); }
  NQ_TString Key() const { return container_.KeyAt(place_); }
  const NQ_TAny& Value() const { return container_.ValueAt(place_); }

 private:
  const NQ_IIteratable& container_;
  NQ_IIteratable::TPlace place_;
};

/// Walks a container whose values may be written.
class NQ_TIterator {
 public:
  explicit NQ_TIterator(NQ_IIteratable& container) : container_(container), place_(Start(container)) {}
  bool IsDone() const { return container_.AtEnd(place_); }
  void Next() { container_.Advance(place_); }
  NQ_TString Key() const { return container_.KeyAt(place_); }
  NQ_TAny& Value() const { return const_cast<NQ_TAny&>(container_.ValueAt(place_)); }

 private:
  static NQ_IIteratable::TPlace Start(NQ_IIteratable& container) {
    container.PrepareToWrite();
    return container.FirstPlace();
  }

  NQ_IIteratable& container_;
  NQ_IIteratable::TPlace place_;
};

/// Root of the containers: values that can be walked.
class NQ_EXPORT NQ_TContainer : public NQ_TValue, public NQ_IIteratable {
 public:
  using NQ_TValue::NQ_ClassName;
  static NQ_TClass::TInterfaceNames NQ_Interfaces();
  const void* NQ_DynamicInfo(const char* name) const override;
};
