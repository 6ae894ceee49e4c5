// A client of the file server.
#pragma once

#include "NQM_TClient.h"

/// Asks about files and their attributes. Set the address before the first call.
class NQ_EXPORT FS_TProxy : public NQM_TClient {};
