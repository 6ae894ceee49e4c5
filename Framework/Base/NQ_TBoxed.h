// The boxed scalars: one plain value as an object, so that a variant can hold it.
#pragma once

#include <cstdint>
#include <ostream>

#include "NQ_TClassOf.h"

/// One value of a plain type; the class that derives from it says how it prints and packs.
template <class Self, class T, NQ_TClassNameLiteral Name>
class NQ_EXPORT NQ_TBoxed : public NQ_TValueOf<Self, NQ_TValue, Name> {
 public:
  NQ_TBoxed() = default;
  explicit NQ_TBoxed(T value) : value_(value) {}
  T Value() const { return value_; }
  void SetValue(T value) { value_ = value; }
  bool operator==(const NQ_TBoxed& other) const { return value_ == other.value_; }

 protected:
  T value_{};
};

/// A 32-bit signed integer.
class NQ_EXPORT NQ_TInt32 final : public NQ_TBoxed<NQ_TInt32, std::int32_t, "NQ_TInt32"> {
 public:
  using NQ_TBoxed::NQ_TBoxed;
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override { packing.PackInt32(value_); }
  void NQ_Unpack(NQ_IUnpacking& unpacking) override { value_ = unpacking.UnpackInt32(); }
};

/// A boolean; prints as 1 or 0.
class NQ_EXPORT NQ_TBool final : public NQ_TBoxed<NQ_TBool, bool, "NQ_TBool"> {
 public:
  using NQ_TBoxed::NQ_TBoxed;
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override { packing.PackBool(value_); }
  void NQ_Unpack(NQ_IUnpacking& unpacking) override { value_ = unpacking.UnpackBool(); }
};

/// A double.
class NQ_EXPORT NQ_TDouble final : public NQ_TBoxed<NQ_TDouble, double, "NQ_TDouble"> {
 public:
  using NQ_TBoxed::NQ_TBoxed;
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override { packing.PackDouble(value_); }
  void NQ_Unpack(NQ_IUnpacking& unpacking) override { value_ = unpacking.UnpackDouble(); }
};

/// An untyped pointer; whoever stored it knows what it points to and owns that. It cannot be packed.
class NQ_EXPORT NQ_TPointer final : public NQ_TBoxed<NQ_TPointer, void*, "NQ_TPointer"> {
 public:
  using NQ_TBoxed::NQ_TBoxed;
  void PrintOn(std::ostream& out) const override;
  /// Throws NQ_EException: an address means nothing elsewhere.
  void NQ_Pack(NQ_IPacking& packing) const override;
  /// Throws NQ_EException.
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;
};
