// Exception class NQ_EUnknownType.
#pragma once

#include "NQ_ETEException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// An unknown name type. The library throws it nowhere: it exists for callers and for unpacking.
class NQ_EXPORT NQ_EUnknownType final : public NQ_TExceptionOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType">;
extern template class NQ_TExceptionOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType">;

#pragma GCC visibility pop
