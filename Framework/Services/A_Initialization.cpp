#include "Services/A_Initialization.h"

#include "NQM_Initialization.h"

bool __NQ_INITIALIZATION_FUNCTION_A_Accounts__() {        // NOLINT(bugprone-reserved-identifier)
  return __NQ_INITIALIZATION_FUNCTION_NQ_Middleware__();  // it has no classes of its own that travel
}
