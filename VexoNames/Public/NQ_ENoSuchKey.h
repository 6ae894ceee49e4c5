// Exception class NQ_ENoSuchKey.
#pragma once

#include "NQ_ETEException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// A name is not defined in the registry; the message is the name.
class NQ_EXPORT NQ_ENoSuchKey final : public NQ_TExceptionOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey">;
extern template class NQ_TExceptionOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey">;

#pragma GCC visibility pop
