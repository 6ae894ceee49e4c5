// Exception class NQ_ETEException.
#pragma once

#include "NQ_EException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// Root of the template engine's exceptions; the message is the offending name, unit or category.
class NQ_EXPORT NQ_ETEException : public NQ_TExceptionOf<NQ_ETEException, NQ_EException, "NQ_ETEException"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_ETEException, NQ_EException, "NQ_ETEException">;
extern template class NQ_TExceptionOf<NQ_ETEException, NQ_EException, "NQ_ETEException">;

#pragma GCC visibility pop
