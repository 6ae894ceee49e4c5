#include <cstring>

#include "NQ_TClassOf.h"

NQ_TClass::TInterfaceNames NQ_TValue::NQ_Interfaces() {
  static constexpr const char* kNames[] = {"NQ_IPackable", "NQ_IPrintable"};
  return kNames;
}

const void* NQ_TValue::NQ_DynamicInfo(const char* name) const {
  if (name != nullptr && std::strcmp(name, "NQ_IPackable") == 0) return static_cast<const NQ_IPackable*>(this);
  if (name != nullptr && std::strcmp(name, "NQ_IPrintable") == 0) return static_cast<const NQ_IPrintable*>(this);
  return NQ_TObject::NQ_DynamicInfo(name);
}
