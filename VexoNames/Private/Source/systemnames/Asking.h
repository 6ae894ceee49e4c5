// Asking services within what a call of the TName may ask for.
#pragma once

#include "TName.h"
#include "VexoNameUtils.h"
#include "engine/Queries.h"

template <class Request>
auto VexoNameUtils::Ask(TName& names, Request request) {
  return templatenames::Ask(names.Engine(), request);
}
