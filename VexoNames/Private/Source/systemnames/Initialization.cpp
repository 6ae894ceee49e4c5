#include "Initialization.h"

#include <algorithm>

#include "NQM_Initialization.h"
#include "Services/A_Initialization.h"
#include "Ticket/AT_Initialization.h"
#include "VexoNameUtils.h"

namespace systemnames {

bool InitializeAll(std::span<const NQ_TInitialization> functions, std::atomic<bool>& done) {
  if (!done) done = std::ranges::all_of(functions, [](NQ_TInitialization function) { return function(); });
  return done;
}

}  // namespace systemnames

bool __NQ_INITIALIZATION_FUNCTION_VexoNames__() {  // NOLINT(bugprone-reserved-identifier)
  static constexpr NQ_TInitialization kFunctions[] = {
      __NQ_INITIALIZATION_FUNCTION_NQ_Base__, __NQ_INITIALIZATION_FUNCTION_NQ_Middleware__,
      __NQ_INITIALIZATION_FUNCTION_AT_Ticket__, __NQ_INITIALIZATION_FUNCTION_A_Accounts__};
  static std::atomic<bool> done{false};
  return systemnames::InitializeAll(kFunctions, done);
}
