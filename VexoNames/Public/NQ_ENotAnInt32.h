// Exception class NQ_ENotAnInt32.
#pragma once

#include "NQ_ETEException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// A name's value is no 32-bit integer, or would leave its range; the message is the name.
class NQ_EXPORT NQ_ENotAnInt32 final : public NQ_TExceptionOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32">;
extern template class NQ_TExceptionOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32">;

#pragma GCC visibility pop
