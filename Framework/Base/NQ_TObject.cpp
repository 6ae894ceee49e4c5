#include "NQ_TObject.h"

#include <cstring>

NQ_TClass& NQ_TObject::NQ_ClassObject() {
  static constexpr const char* kInterfaces[] = {NQ_IInterface::NQ_ClassName()};
  static NQ_TClass& classObject =
      NQ_TClass::GetClassObject(false, "NQ_TObject", sizeof(NQ_TObject), nullptr, nullptr, nullptr, kInterfaces);
  classObject.SetInUse();
  return classObject;
}

const void* NQ_TObject::NQ_DynamicInfo(const char* name) const {
  if (name == nullptr) return &NQ_ClassObject();
  if (std::strcmp(name, "NQ_TObject") == 0) return this;
  if (std::strcmp(name, NQ_IInterface::NQ_ClassName()) == 0) return static_cast<const NQ_IInterface*>(this);
  return nullptr;
}

const NQ_TClass& NQ_TObject::ClassObject() const { return *static_cast<const NQ_TClass*>(NQ_DynamicInfo(nullptr)); }

const char* NQ_TObject::ClassName() const { return ClassObject().Name(); }

bool NQ_TObject::HasSuperclass(const char* name) const { return ClassObject().HasSuperclass(name); }

bool NQ_TObject::HasInterface(const char* interfaceName) const { return ClassObject().Implements(interfaceName); }

const void* NQ_TObject::NQ_Cast(const char* name) const { return name == nullptr ? nullptr : NQ_DynamicInfo(name); }
