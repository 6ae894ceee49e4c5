// Exception class NQ_ENoSuchUnit.
#pragma once

#include "NQ_ETEException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// An unknown measurement unit; the message is the unit.
class NQ_EXPORT NQ_ENoSuchUnit final : public NQ_TExceptionOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit">;
extern template class NQ_TExceptionOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit">;

#pragma GCC visibility pop
