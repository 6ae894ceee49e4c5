#include "NQ_TClass.h"

#include <cstring>
#include <map>
#include <memory>
#include <mutex>

namespace {

struct TClassRegistry {
  std::mutex lock;
  std::map<std::string, std::unique_ptr<NQ_TClass>, std::less<>> classes;
};

// Never destroyed: objects of static storage may still ask for their class while the process ends.
TClassRegistry& Registry() {
  static auto* const registry = new TClassRegistry;
  return *registry;
}

}  // namespace

NQ_TClass::NQ_TClass(bool isInterface, const char* name, std::size_t instanceSize, const NQ_TClass* parent,
                     TFactory factory, TCheck check, TInterfaceNames interfaces)
    : name_(name),
      parent_(parent),
      factory_(factory),
      check_(check),
      interfaces_(interfaces),
      instanceSize_(instanceSize),
      isInterface_(isInterface) {}

NQ_TClass& NQ_TClass::GetClassObject(bool isInterface, const char* name, std::size_t instanceSize,
                                     const NQ_TClass* parent, TFactory factory, TCheck check,
                                     TInterfaceNames interfaces) {
  TClassRegistry& registry = Registry();
  const std::lock_guard guard(registry.lock);
  auto& slot = registry.classes[name];
  if (!slot) slot.reset(new NQ_TClass(isInterface, name, instanceSize, parent, factory, check, interfaces));
  return *slot;
}

const NQ_TClass* NQ_TClass::Find(std::string_view name) {
  TClassRegistry& registry = Registry();
  const std::lock_guard guard(registry.lock);
  const auto found = registry.classes.find(name);
  return found == registry.classes.end() ? nullptr : found->second.get();
}

bool NQ_TClass::HasSuperclass(const char* name) const {
  for (const NQ_TClass* c = this; c != nullptr; c = c->parent_)
    if (c->name_ == name) return true;
  return false;
}

bool NQ_TClass::Implements(const char* interfaceName) const {
  for (const NQ_TClass* c = this; c != nullptr; c = c->parent_)
    for (const char* implemented : c->interfaces_)
      if (std::strcmp(implemented, interfaceName) == 0) return true;
  return false;
}
