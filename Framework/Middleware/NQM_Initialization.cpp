#include "NQM_Initialization.h"

#include "NQM_ECallFailed.h"

bool __NQ_INITIALIZATION_FUNCTION_NQ_Middleware__() {  // NOLINT(bugprone-reserved-identifier)
  NQM_ECallFailed::NQ_ClassObject();
  return __NQ_INITIALIZATION_FUNCTION_NQ_Base__();
}
