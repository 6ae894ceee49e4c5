// Exception class NQ_ENoSuchKey.
#pragma once

#include "NQ_ETEException.h"

/// A name is not defined in the registry; the message is the name.
class NQ_EXPORT NQ_ENoSuchKey final : public NQ_TExceptionOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
