// The services of a context file, given as data.
//
//   "services": {
//     "warehouse": [
//       {"Method": "GetStock", "Params": {"P1": "A4"}, "Reply": "1200 sheets"},
//       {"Method": "GetStock", "Failure": "no such paper"}
//     ]
//   }
#pragma once

#include "JsonNode.h"
#include "NQM_TServices.h"

/// Offers every service of the object under its key: a name, or "#" and a port, as records write it; the latter at that
/// port too. The first row that has the request's method, and of whose parameters the request has all, replies or
/// fails; a request without a row fails. Throws TInputError.
void ReadServices(const TJsonNode& object, NQM_TServices& services);

/// Offers the object as the configuration tree, under the name "CFS": paths begin with "/". A path that leads nowhere
/// fails. Throws TInputError.
void ReadConfiguration(const TJsonNode& object, NQM_TServices& services);
