// The exceptions.
//
// Framework exceptions are objects: they are caught by class, printed, copied into variants, packed and unpacked. A
// throw site goes through nq::Throw, which records where it is:
//
//   nq::Throw(NQ_EException("No such thing", name));
//
//   catch (const NQ_EException& error) { std::cerr << error << '\n'; }
//
// They are standard exceptions too, for code that knows nothing of the framework: `what()` is the message. A handler
// for std::exception therefore stands after one for NQ_EException.
#pragma once

#include <exception>

#include "NQ_TAny.h"
#include "NQ_TList.h"
#include "NQ_TString.h"

/// An object that can throw itself.
class NQ_EXPORT NQ_IThrowable : public virtual NQ_IInterface {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_IThrowable"; }

  /// Throws a copy of the object, as its own class.
  [[noreturn]] virtual void NQ_Throw() const = 0;
};

/// The object-model side of the root exception.
class NQ_EXPORT NQ_TThrowable : public virtual NQ_TObject,
                                public virtual NQ_IThrowable,
                                public virtual NQ_IPackable,
                                public virtual NQ_IPrintable {
 public:
  using NQ_TObject::NQ_ClassName;
  static NQ_TClass::TInterfaceNames NQ_Interfaces();
  const void* NQ_DynamicInfo(const char* name) const override;
};

/// Root of the framework's exceptions: message, data, throw site and the sites it passed.
class NQ_EXPORT NQ_EException : public NQ_TClassOf<NQ_EException, NQ_TThrowable, "NQ_EException">,
                                public std::exception {
 public:
  NQ_EException() = default;
  explicit NQ_EException(const NQ_TString& message) : message_(message) {}
  NQ_EException(const NQ_TString& message, const NQ_TAny& data) : message_(message), data_(data) {}

  virtual std::uint32_t NQ_ExceptionLine() const { return line_; }
  virtual const NQ_TString& NQ_ExceptionFile() const { return file_; }
  /// One text "file:line" for every site that threw this exception, the first one first.
  virtual const NQ_TList& NQ_StackTrace() const { return trace_; }
  virtual const NQ_TString& NQ_Message() const { return message_; }
  virtual NQ_TString& NQ_Message() { return message_; }
  virtual const NQ_TAny& NQ_Data() const { return data_; }
  virtual NQ_TAny& NQ_Data() { return data_; }
  /// The message as UTF-8, valid while it is unchanged; the class name when there is no memory left for it.
  const char* what() const noexcept override;

  /// Records the throw site; every throw calls it just before `NQ_Throw`.
  void __PREPARE_FOR_THROW__(std::uint32_t line, const char* file);  // NOLINT(bugprone-reserved-identifier)

  [[noreturn]] void NQ_Throw() const override;
  /// Class, message, data where there is some, and throw site, on one line.
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;
  /// The same message, data and throw site.
  bool operator==(const NQ_EException& other) const;

 private:
  NQ_TString message_;
  NQ_TAny data_;
  NQ_TString file_;
  std::uint32_t line_ = 0;
  NQ_TList trace_;
};

/// Glue of an exception class that adds no data: it throws itself as its own class and packs its parent's part in a
/// section named after the parent.
template <class Self, class Parent, NQ_TClassNameLiteral Name>
class NQ_EXPORT NQ_TExceptionOf : public NQ_TClassOf<Self, Parent, Name> {
 public:
  using NQ_TClassOf<Self, Parent, Name>::NQ_TClassOf;
  NQ_TExceptionOf() = default;

  [[noreturn]] void NQ_Throw() const override { throw Self(static_cast<const Self&>(*this)); }
  void NQ_Pack(NQ_IPacking& packing) const override {
    packing.BeginClass(Parent::NQ_ClassName());
    Parent::NQ_Pack(packing);
    packing.EndClass(Parent::NQ_ClassName());
  }
  void NQ_Unpack(NQ_IUnpacking& unpacking) override {
    unpacking.BeginClass(Parent::NQ_ClassName());
    Parent::NQ_Unpack(unpacking);
    unpacking.EndClass(Parent::NQ_ClassName());
  }
};

/// A variant does not hold what it was asked for.
class NQ_EXPORT NQ_EIllegalCastFromAny final
    : public NQ_TExceptionOf<NQ_EIllegalCastFromAny, NQ_EException, "NQ_EIllegalCastFromAny"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};

/// A key on a path through a tree is missing.
class NQ_EXPORT NQ_ENoMatchingTreeKey final
    : public NQ_TExceptionOf<NQ_ENoMatchingTreeKey, NQ_EException, "NQ_ENoMatchingTreeKey"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};

/// An entry on the way through a tree is not a tree.
class NQ_EXPORT NQ_EEntryIsNotASubtree final
    : public NQ_TExceptionOf<NQ_EEntryIsNotASubtree, NQ_EException, "NQ_EEntryIsNotASubtree"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};

/// Memory ran out.
class NQ_EXPORT NQ_EOutOfMemory final : public NQ_TExceptionOf<NQ_EOutOfMemory, NQ_EException, "NQ_EOutOfMemory"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};

namespace nq {

/// Throws the exception as its own class, from where this is called.
template <class Exception>
[[noreturn]] void Throw(Exception exception, const char* file = __builtin_FILE(), unsigned line = __builtin_LINE()) {
  exception.__PREPARE_FOR_THROW__(line, file);
  exception.NQ_Throw();
}

}  // namespace nq
