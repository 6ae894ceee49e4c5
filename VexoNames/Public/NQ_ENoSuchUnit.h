// Exception class NQ_ENoSuchUnit.
#pragma once

#include "NQ_ETEException.h"

/// An unknown measurement unit; the message is the unit.
class NQ_EXPORT NQ_ENoSuchUnit final : public NQ_TExceptionOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
