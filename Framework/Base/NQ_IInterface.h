// The root of every framework object and the small interfaces that objects combine.
#pragma once

#include <iosfwd>

#include "NQ_Export.h"

class NQ_TString;

/// Root interface. Everything that can be held by reference in a variant derives from it, virtually, so that an
/// object that implements several interfaces is still one object.
class NQ_EXPORT NQ_IInterface {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_IInterface"; }

  NQ_IInterface() = default;
  NQ_IInterface(const NQ_IInterface&) = default;
  NQ_IInterface& operator=(const NQ_IInterface&) = default;
  virtual ~NQ_IInterface() = default;

  /// Whether the object implements the interface of that name.
  virtual bool HasInterface(const char* interfaceName) const;
};

/// An object that can print itself.
class NQ_EXPORT NQ_IPrintable : public virtual NQ_IInterface {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_IPrintable"; }

  /// Writes the object as UTF-8, without quotes around it and without a line end.
  virtual void PrintOn(std::ostream& out) const = 0;
};

/// Prints through `PrintOn`.
NQ_EXPORT std::ostream& operator<<(std::ostream& out, const NQ_IPrintable& printable);

/// An object that can be a dictionary key. Two hashables are the same key when their key texts are equal.
class NQ_EXPORT NQ_IHashable : public virtual NQ_IInterface {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_IHashable"; }

  /// The text under which a dictionary files the object; valid while the object is unchanged.
  virtual const NQ_TString& KeyText() const = 0;
};
