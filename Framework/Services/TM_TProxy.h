// A client of the task manager.
#pragma once

#include "NQM_TClient.h"

/// Asks about tasks. Set the address before the first call.
class NQ_EXPORT TM_TProxy : public NQM_TClient {};
