// Exception class NQ_ENoSuchUnitCategory.
#pragma once

#include "NQ_ETEException.h"

/// An unknown unit category; the message is the category.
class NQ_EXPORT NQ_ENoSuchUnitCategory final
    : public NQ_TExceptionOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
