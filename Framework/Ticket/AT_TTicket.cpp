#include "Ticket/AT_TTicket.h"

#include <cstring>

NQ_TClass& AT_TTicket::NQ_ClassObject() {
  static NQ_TClass& classObject = NQ_TClass::GetClassObject(false, "AT_TTicket", sizeof(AT_TTicket),
                                                            &NQ_TObject::NQ_ClassObject(), nullptr, nullptr);
  classObject.SetInUse();
  return classObject;
}

const void* AT_TTicket::NQ_DynamicInfo(const char* name) const {
  if (name == nullptr) return &NQ_ClassObject();
  if (std::strcmp(name, "AT_TTicket") == 0) return this;
  return NQ_TObject::NQ_DynamicInfo(name);
}
