// Exception class NQ_EIncompatibleType.
#pragma once

#include "NQ_ETEException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// A value of the wrong kind was set for a name; the message is the name.
class NQ_EXPORT NQ_EIncompatibleType final
    : public NQ_TExceptionOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType">;
extern template class NQ_TExceptionOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType">;

#pragma GCC visibility pop
