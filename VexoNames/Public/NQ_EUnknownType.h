// Exception class NQ_EUnknownType.
#pragma once

#include "NQ_ETEException.h"

/// An unknown name type. The library throws it nowhere: it exists for callers and for unpacking.
class NQ_EXPORT NQ_EUnknownType final : public NQ_TExceptionOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
