// Class objects: what the framework knows about a class at run time.
#pragma once

#include <atomic>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "NQ_Export.h"

class NQ_TObject;

/// The run-time description of one class. Class objects are made on first request and live until the process ends;
/// the same name always gives the same object. All operations may be called from any thread.
class NQ_EXPORT NQ_TClass {
 public:
  using TFactory = NQ_TObject* (*)();
  using TCheck = bool (*)(const NQ_TObject&);
  using TInterfaceNames = std::span<const char* const>;

  /// The class object registered under the name, made from the other arguments when there is none yet (they are not
  /// read otherwise). The interfaces are those that the class adds to its parent's.
  static NQ_TClass& GetClassObject(bool isInterface, const char* name, std::size_t instanceSize,
                                   const NQ_TClass* parent, TFactory factory, TCheck check,
                                   TInterfaceNames interfaces = {});
  /// The class object of that name, or null when no operation has asked for that class so far.
  static const NQ_TClass* Find(std::string_view name);

  NQ_TClass(const NQ_TClass&) = delete;
  NQ_TClass& operator=(const NQ_TClass&) = delete;

  const char* Name() const { return name_.c_str(); }
  const NQ_TClass* Parent() const { return parent_; }
  TFactory Factory() const { return factory_; }
  TCheck Check() const { return check_; }
  std::size_t InstanceSize() const { return instanceSize_; }
  bool IsInterface() const { return isInterface_; }
  bool InUse() const { return inUse_.load(std::memory_order_relaxed); }
  /// Notes that somebody asked for the class.
  void SetInUse() {
    if (!InUse()) inUse_.store(true, std::memory_order_relaxed);
  }

  /// Whether the class is, or derives from, the class of that name.
  bool HasSuperclass(const char* name) const;
  /// Whether the class or one of its ancestors implements the interface of that name.
  bool Implements(const char* interfaceName) const;

 private:
  NQ_TClass(bool isInterface, const char* name, std::size_t instanceSize, const NQ_TClass* parent, TFactory factory,
            TCheck check, TInterfaceNames interfaces);

  const std::string name_;
  const NQ_TClass* const parent_;
  const TFactory factory_;
  const TCheck check_;
  const TInterfaceNames interfaces_;
  const std::size_t instanceSize_;
  const bool isInterface_;
  std::atomic<bool> inUse_{false};
};
