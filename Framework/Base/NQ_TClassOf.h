// What every class of the object model needs: its class object, its factory, its views by name and its copies. A class
// gets them by deriving from NQ_TClassOf (or NQ_TValueOf) with itself, its parent and its class name.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "NQ_IPackable.h"
#include "NQ_TObject.h"

/// A class name as a template argument.
template <std::size_t N>
struct NQ_EXPORT NQ_TClassNameLiteral {
  char text[N]{};
  consteval NQ_TClassNameLiteral(const char (&literal)[N]) {  // NOLINT(google-explicit-constructor)
    for (std::size_t i = 0; i < N; ++i) text[i] = literal[i];
  }
};

/// Object-model glue of the class `Self`, which derives from `Parent` and is known by `Name`, on the wire too.
template <class Self, class Parent, NQ_TClassNameLiteral Name>
class NQ_EXPORT NQ_TClassOf : public Parent {
 public:
  using Parent::Parent;
  NQ_TClassOf() = default;

  /// The class object; the class becomes known to the class registry when this first runs, not at load time.
  static NQ_TClass& NQ_ClassObject() {
    static NQ_TClass& classObject = NQ_TClass::GetClassObject(false, Name.text, sizeof(Self), &Parent::NQ_ClassObject(),
                                                              &NQ_Create, nullptr, Self::NQ_Interfaces());
    classObject.SetInUse();
    return classObject;
  }
  static const char* NQ_ClassName() { return NQ_ClassObject().Name(); }
  static const NQ_TClass* NQ_ParentClass() { return NQ_ClassObject().Parent(); }
  static NQ_TClass::TFactory NQ_Factory() { return NQ_ClassObject().Factory(); }
  /// A default-constructed instance on the heap, owned by the caller; null when memory ran out.
  [[nodiscard]] static NQ_TObject* NQ_Create() { return new (std::nothrow) Self; }
  static bool NQ_IsInterface() { return NQ_ClassObject().IsInterface(); }
  static bool NQ_HasInterface(const char* name) { return NQ_ClassObject().Implements(name); }
  static bool NQ_HasSuperclass(const char* name) { return NQ_ClassObject().HasSuperclass(name); }

  const void* NQ_MostDerivedObject() const override { return static_cast<const Self*>(this); }
  const void* NQ_DynamicInfo(const char* name) const override {
    NQ_TClass& classObject = NQ_ClassObject();
    if (name == nullptr) return &classObject;
    if (std::strcmp(name, Name.text) == 0) return static_cast<const Self*>(this);
    return Parent::NQ_DynamicInfo(name);
  }
  NQ_IPackable* NQ_Clone(void* = nullptr) const override {
    return new (std::nothrow) Self(static_cast<const Self&>(*this));
  }
  NQ_IPackable* NQ_Move() override { return new (std::nothrow) Self(std::move(static_cast<Self&>(*this))); }
  /// Whether the other object is of just this class and equal by `operator==`.
  bool NQ_IsIdent(const NQ_IPackable& other) const override {
    const auto* const object = dynamic_cast<const Self*>(&other);
    return object != nullptr && &object->ClassObject() == &this->ClassObject() &&
           static_cast<const Self&>(*this) == *object;
  }
  /// Replaces the content from packed input, as `NQ_Unpack` does.
  NQ_TClassOf& operator=(NQ_IUnpacking& unpacking) {
    this->NQ_Unpack(unpacking);
    return *this;
  }
  void NQ_PackClassObject(NQ_IPacking& packing) const override {
    packing.BeginClass(Name.text), packing.EndClass(Name.text);
  }
};

/// Root of the value types: packable, printable objects. Its interfaces are no virtual bases themselves (only their
/// root is one): a value is made and destroyed in half the time.
class NQ_EXPORT NQ_TValue : public virtual NQ_TObject, public NQ_IPackable, public NQ_IPrintable {
 public:
  using NQ_TObject::NQ_ClassName;
  static NQ_TClass::TInterfaceNames NQ_Interfaces();
  const void* NQ_DynamicInfo(const char* name) const override;
};

/// Glue of a value type.
template <class Self, class Parent, NQ_TClassNameLiteral Name>
using NQ_TValueOf = NQ_TClassOf<Self, Parent, Name>;
