// Context files: what a task knows, as JSON.
//
//   { "names": { "customer": {"Type": "Name", "Value": "Acme"}, "version": {"Type": "Number", "Value": 7} },
//     "services": { "warehouse": [ {"Method": "GetStock", "Reply": "1200 sheets"} ] },
//     "config": { "Resources": { ... } },
//     "load": [ {"serverTree": "Shop", "nameSet": "TemplateNames"} ],
//     "task": { ... } }                                                  see Task.h
#pragma once

#include <string>
#include <vector>

#include "EngineLog.h"
#include "NQM_TServices.h"
#include "ServiceCalls.h"
#include "TName.h"
#include "Task.h"

/// Definitions to load from the configuration.
struct TLoad {
  NQ_TString serverTree{};
  NQ_TString nameSet{};
  NQ_TString scope{"*"};
  NQ_TString name{"*"};
};

struct TContext {
  TName& names;
  NQM_TServices& services;
  TTask& task;
  std::string folder{};  // of the file
  std::vector<TLoad> loads{};
};

/// Fills the registry and the services with what the file says. Throws TInputError with the file and the place in it
/// when the file cannot be read, is no JSON, or says something that is not understood.
void ReadContext(const std::string& file, TContext& context);

/// Loads definitions from the configuration, wherever the calls go; what the engine says of them goes to standard
/// error. Throws TServiceError when the configuration cannot be read, TInputError when a definition is not as it should
/// be.
void LoadDefinitions(const TContext& context, TServiceCalls& calls, TEngineLog& log);
