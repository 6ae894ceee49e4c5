// Exception class NQ_ENotAnInt32.
#pragma once

#include "NQ_ETEException.h"

/// A name's value is no 32-bit integer, or would leave its range; the message is the name.
class NQ_EXPORT NQ_ENotAnInt32 final : public NQ_TExceptionOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
