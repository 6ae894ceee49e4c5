// Walking over containers.
#pragma once

#include <cstddef>

#include "NQ_TAny.h"
#include "NQ_TString.h"

/// A container whose elements can be visited one after the other. It must not be changed while it is being walked.
class NQ_EXPORT NQ_IIteratable : public virtual NQ_IInterface {
 public:
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
  static NQ_TClass::TInterfaceNames NQ_Interfaces();
  const void* NQ_DynamicInfo(const char* name) const override;
};
