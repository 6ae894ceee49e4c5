// A client of the container service.
#pragma once

#include "NQM_TClient.h"

/// Asks about containers, which keep the files of jobs. Set the address before the first call.
class NQ_EXPORT CW_TProxy : public NQM_TClient {};
