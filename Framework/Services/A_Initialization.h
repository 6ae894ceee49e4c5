// Preparing the client of the user-account service before its first use.
#pragma once

#include "NQ_Initialization.h"

NQ_EXPORT bool __NQ_INITIALIZATION_FUNCTION_A_Accounts__();  // NOLINT(bugprone-reserved-identifier)
