#include "NQ_IIteratable.h"

#include <cstring>

NQ_TClass::TInterfaceNames NQ_TContainer::NQ_Interfaces() {
  static constexpr const char* kNames[] = {NQ_IPackable::NQ_ClassName(), NQ_IPrintable::NQ_ClassName(),
                                           NQ_IIteratable::NQ_ClassName()};
  return kNames;
}

const void* NQ_TContainer::NQ_DynamicInfo(const char* name) const {
  if (name != nullptr && std::strcmp(name, NQ_IIteratable::NQ_ClassName()) == 0)
    return static_cast<const NQ_IIteratable*>(this);
  return NQ_TValue::NQ_DynamicInfo(name);
}
