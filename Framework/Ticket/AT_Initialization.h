// Preparing the ticket before its first use.
#pragma once

#include "NQ_Initialization.h"

NQ_EXPORT bool __NQ_INITIALIZATION_FUNCTION_AT_Ticket__();  // NOLINT(bugprone-reserved-identifier)
