// What the tool does. Each command prints its data, says on standard error what is to be said, and returns how the
// program is to end; input that it cannot go on with is a TInputError.
#pragma once

#include <memory>

#include "EngineLog.h"
#include "NQM_TServices.h"
#include "Options.h"
#include "ServiceCalls.h"
#include "TName.h"
#include "Task.h"

/// Once for each input of the task.
int RunResolve(TName& names, TTask& task, TEngineLog& log, TServiceCalls& calls, const TOptions& options);
int RunNames(const TName& names, const TOptions& options);
/// Offers the services to other processes, until a signal ends it.
int RunServe(const std::shared_ptr<NQM_TServices>& services, const TOptions& options);
int RunTranslate(TName& names, const TOptions& options);
