// Exception class NQ_ETEException.
#pragma once

#include "NQ_EException.h"

/// Root of the template engine's exceptions; the message is the offending name, unit or category.
class NQ_EXPORT NQ_ETEException : public NQ_TExceptionOf<NQ_ETEException, NQ_EException, "NQ_ETEException"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
