// What became of a definition record.
#pragma once

#include "TName.h"

namespace templatenames {

struct TDefinitionOutcome {
  TName::TName_Error code = TName::TName_ErrorNone;  // what the error codes of a TName can say of a failure
  NQ_TString reason;                                 // of a failure: one sentence for people; else empty

  bool Defined() const { return reason.Empty(); }
};

}  // namespace templatenames
