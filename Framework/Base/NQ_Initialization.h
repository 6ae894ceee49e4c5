// Preparing a library before its first use.
#pragma once

#include "NQ_Export.h"

/// Makes the classes known that arrive in packed data or are asked for by name. False when that failed. May be called
/// as often as one likes, from any thread; each library has such a function, under a name that the workflow system
/// expects.
using NQ_TInitialization = bool (*)();

NQ_EXPORT bool __NQ_INITIALIZATION_FUNCTION_NQ_Base__();  // NOLINT(bugprone-reserved-identifier)
