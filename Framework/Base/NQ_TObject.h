// The root class of the object model.
#pragma once

#include "NQ_IInterface.h"
#include "NQ_TClass.h"

/// Root of every framework class. An object knows its class at run time and can be viewed as any class it derives from
/// or interface it implements, by name.
class NQ_EXPORT NQ_TObject : public virtual NQ_IInterface {
 public:
  static NQ_TClass& NQ_ClassObject();
  static const char* NQ_ClassName() { return NQ_ClassObject().Name(); }

  /// The address of the complete object.
  virtual const void* NQ_MostDerivedObject() const = 0;
  /// With null: the class object (an `NQ_TClass`), marked in use. With a class or interface name: the object viewed
  /// as that class, or null when it is not of that class.
  virtual const void* NQ_DynamicInfo(const char* name) const;
  virtual const NQ_TClass& ClassObject() const;
  virtual const char* ClassName() const;
  /// Whether the object's class is, or derives from, the class of that name.
  virtual bool HasSuperclass(const char* name) const;
  bool HasInterface(const char* interfaceName) const override;
  /// The same as `NQ_DynamicInfo` of a name; null for null.
  virtual const void* NQ_Cast(const char* name) const;

  /// The object viewed as the class of that name, to be cast to a pointer to just that class; null when it is not one.
  const void* DynamicCast(const char* name) const { return NQ_Cast(name); }
  void* DynamicCast(const char* name) { return const_cast<void*>(NQ_Cast(name)); }
};
