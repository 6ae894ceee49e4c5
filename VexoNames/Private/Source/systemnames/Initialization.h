// Preparing libraries, in order, once.
#pragma once

#include <atomic>
#include <span>

#include "NQ_Initialization.h"

namespace systemnames {

/// Runs the functions up to the first that fails, unless `done` says that all succeeded earlier; notes whether they
/// did.
bool InitializeAll(std::span<const NQ_TInitialization> functions, std::atomic<bool>& done);

}  // namespace systemnames
