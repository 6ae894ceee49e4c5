// Asking services within what a call of the TName may ask for.
#pragma once

#include <mutex>

#include "NQ_EException.h"
#include "TName.h"
#include "VexoNameUtils.h"
#include "engine/SpentTime.h"
#include "text/Log.h"

// A thread that holds the registry's lock while a template is resolved is the one that resolves it.
template <class Request>
auto VexoNameUtils::Ask(TName& names, Request request) {
  const bool resolves = [&] {
    const std::lock_guard guard(names.lock_);
    return names.budget_.depth > 0;
  }();
  if (!resolves) return request();
  auto& budget = names.budget_;
  if (budget.queries <= 0 || budget.queryMilliseconds <= 0) {
    const char* const limit = budget.queries <= 0 ? "More queries than the limit allows"  //
                                                  : "More time for queries than the limit allows";
    if (names.Logs(2)) templatenames::Log(2, "VexoNameUtils: ", limit);
    nq::Throw(NQ_EException(limit));
  }
  --budget.queries;
  const templatenames::TSpentTime spent(budget.queryMilliseconds);
  return request();
}
