// Exception class NQ_EIncompatibleType.
#pragma once

#include "NQ_ETEException.h"

/// A value of the wrong kind was set for a name; the message is the name.
class NQ_EXPORT NQ_EIncompatibleType final
    : public NQ_TExceptionOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
