// Exception class NQ_ENoSuchUnitCategory.
#pragma once

#include "NQ_ETEException.h"

#pragma GCC visibility push(default)  // for the class name among the template arguments too

/// An unknown unit category; the message is the category.
class NQ_EXPORT NQ_ENoSuchUnitCategory final
    : public NQ_TExceptionOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
  [[noreturn]] void NQ_Throw() const override;
};

// The library has the one copy of its glue.
extern template class NQ_TClassOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory">;
extern template class NQ_TExceptionOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory">;

#pragma GCC visibility pop
