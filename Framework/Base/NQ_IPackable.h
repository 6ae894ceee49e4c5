// Packing: how an object travels or is copied into a variant.
#pragma once

#include <cstdint>

#include "NQ_IInterface.h"

class NQ_TAny;

/// Takes the packed form of objects. What is written between `BeginClass` and `EndClass` of a name belongs to that
/// class; sections nest.
class NQ_EXPORT NQ_IPacking {
 public:
  virtual ~NQ_IPacking();
  virtual void BeginClass(const char* name) = 0;
  virtual void EndClass(const char* name) = 0;
  virtual void PackBool(bool value) = 0;
  virtual void PackInt32(std::int32_t value) = 0;
  virtual void PackDouble(double value) = 0;
  virtual void PackString(const NQ_TString& value) = 0;
  /// The class identity and the content of what the variant holds.
  virtual void PackAny(const NQ_TAny& value) = 0;
};

/// Gives back what an `NQ_IPacking` took, in the same order. Input that does not fit throws `NQ_EException`.
class NQ_EXPORT NQ_IUnpacking {
 public:
  virtual ~NQ_IUnpacking();
  virtual void BeginClass(const char* name) = 0;
  virtual void EndClass(const char* name) = 0;
  virtual bool UnpackBool() = 0;
  virtual std::int32_t UnpackInt32() = 0;
  virtual double UnpackDouble() = 0;
  virtual NQ_TString UnpackString() = 0;
  virtual NQ_TAny UnpackAny() = 0;

  /// A number of elements that follow. Throws `NQ_EException` when it is negative.
  std::uint32_t UnpackCount();
};

/// An object that can be packed, unpacked and copied.
class NQ_EXPORT NQ_IPackable : public virtual NQ_IInterface {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_IPackable"; }

  /// Writes the content (not the class identity).
  virtual void NQ_Pack(NQ_IPacking& packing) const = 0;
  /// Replaces the content. Throws `NQ_EException` when the input does not fit; the content is then unspecified.
  virtual void NQ_Unpack(NQ_IUnpacking& unpacking) = 0;
  /// A copy on the heap, owned by the caller; null when memory ran out. The placement address is not used.
  [[nodiscard]] virtual NQ_IPackable* NQ_Clone(void* placement = nullptr) const = 0;
  /// As `NQ_Clone`, moving the content out of this object.
  [[nodiscard]] virtual NQ_IPackable* NQ_Move() = 0;
  /// Whether the other object is of the same class and has equal content.
  virtual bool NQ_IsIdent(const NQ_IPackable& other) const = 0;
  /// Writes the class identity.
  virtual void NQ_PackClassObject(NQ_IPacking& packing) const = 0;
  /// Writes the class identity as it stands before an object inside a variant.
  virtual void NQ_PackTypeID(NQ_IPacking& packing) const;

  /// Replaces the content from packed input, as `NQ_Unpack` does.
  NQ_IPackable& operator=(NQ_IUnpacking& unpacking);

  NQ_IPackable() = default;
  NQ_IPackable(const NQ_IPackable&) = default;

 protected:
  /// For the classes that derive from it: through references to it nothing would be copied.
  NQ_IPackable& operator=(const NQ_IPackable&) = default;
};
