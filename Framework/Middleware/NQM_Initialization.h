// Preparing the middleware before its first use.
#pragma once

#include "NQ_Initialization.h"

NQ_EXPORT bool __NQ_INITIALIZATION_FUNCTION_NQ_Middleware__();  // NOLINT(bugprone-reserved-identifier)
