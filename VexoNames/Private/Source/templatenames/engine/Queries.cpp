#include "engine/Queries.h"

#include <chrono>
#include <sstream>

#include "NQM_ECallFailed.h"
#include "NQ_EException.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "engine/AttributeKeys.h"
#include "engine/MakeClient.h"
#include "engine/ResolveValue.h"
#include "engine/Sentences.h"
#include "text/Log.h"

namespace templatenames {
namespace {

/// What the value holds, which has to be a T. Entries can be written by handlers, parameters come from outside.
template <class T>
const T& Held(const NQ_TAny& value) {
  if (const auto* held = value.As<T>()) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(NQ_TString("A server query needs an ") + T::NQ_ClassName(), value));
}

std::int64_t Now() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

NQ_TString TextOf(const NQ_EException& error) {
  const NQ_TString message = error.NQ_Message();
  return message.Empty() ? NQ_TString(error.ClassName()) : message;
}

/// Whom a query asks, and what.
struct TRequest {
  NQ_TString host;
  NQ_TString server;
  NQ_TString method;
  NQ_TDict params;
};

void ResolveParameters(TEngine& engine, NQ_TDict& params) {
  for (NQ_TIterator i(params); !i.IsDone(); i.Next()) {
    NQ_TAny resolved;
    ResolveValue(i.Value(), &engine.names, resolved);
    i.Value() = std::move(resolved);
  }
}

// Puts the names that the service depends on together with their values. One that does not resolve goes as it is.
void ResolveDependencies(TEngine& engine, const NQ_TString& key, NQ_TDict& params) {
  const NQ_TAny* const dependencies = std::as_const(params).ValueOfKey(Keys().dependencies);
  if (dependencies == nullptr) return;
  const auto names = Held<NQ_TArray>(*dependencies);
  NQ_TDict values(names.Count());
  for (NQ_TConstIterator i(names); !i.IsDone(); i.Next()) {
    const auto& name = Held<NQ_TString>(i.Value());
    NQ_TString value;
    if (!engine.names.Resolve(NQ_TString("<") + name + "/>", value) && engine.Logs(2)) {
      Log(2, "TName::ServerQueryHandlerNoCache: Dependency for ", key, " could not be resolved: ", name);
    }
    values.Add(name, std::move(value));
  }
  params.Add(Keys().dependencies, std::move(values));
}

// Resolved within the call in hand, with a count of its own.
bool ResolveHost(TEngine& engine, const NQ_TString& hostTemplate, NQ_TString& host, TQueryProblem& problem) {
  TNameReport report;
  if (engine.names.Resolve(hostTemplate, host, report)) return true;
  if (engine.Logs(2)) Log(2, "TName::ServerQueryHandler: Could not resolve host name ", hostTemplate);
  engine.SetError(TName::TName_ErrorServerQuery);
  problem.said = NQ_TString("the host of its query, ") + Quoted(hostTemplate.StringView()) + ", does not resolve";
  if (!report.Failures().empty()) problem.said = problem.said + ": " + report.Failures().front().Reason();
  return false;
}

bool Fails(TLimit limit, TQueryProblem& problem) {
  problem.limit = limit;
  return limit != TLimit::None;
}

// What the entry holds is copied before anything is resolved: a handler may change it.
bool Send(TEngine& engine, const NQ_TString& key, const NQ_TDict& entry, NQ_TAny& value, TQueryProblem& problem) {
  const auto hostTemplate = Held<NQ_TString>(entry.At(Keys().host));
  TRequest request;
  if (!ResolveHost(engine, hostTemplate, request.host, problem)) return false;
  request.server = Held<NQ_TString>(entry.At(Keys().server));
  request.method = Held<NQ_TString>(entry.At(Keys().method));
  if (engine.Logs(2)) {
    Log(2, "TName::ServerQueryHandler: Host   = ", request.host);
    Log(2, "TName::ServerQueryHandler: Server = ", request.server);
    Log(2, "TName::ServerQueryHandler: Method = ", request.method);
  }
  // Before the parameters: names in them may ask too, and again.
  TBudget& budget = engine.budget;
  if (budget.queries <= 0) return !Fails(TLimit::Queries, problem);
  --budget.queries;
  if (const NQ_TAny* const recorded = entry.ValueOfKey(Keys().params)) {
    request.params = Held<NQ_TDict>(*recorded);
    request.method.BeginsWith("Conditional", 0) ? ResolveParameters(engine, request.params)
                                                : ResolveDependencies(engine, key, request.params);
  }
  if (budget.queryMilliseconds <= 0) return !Fails(TLimit::QueryMilliseconds, problem);
  const std::int64_t begin = Now();
  if (DoQuery(engine, request.host, request.server, request.method, request.params, value, problem.said)) return true;
  budget.queryMilliseconds -= Now() - begin;
  return false;
}

bool QueryOrThrow(TEngine& engine, const NQ_TString& key, const NQ_TDict& entry, NQ_TAny& value,
                  TQueryProblem& problem) {
  if (engine.Logs(2)) Log(2, "TName::ServerQueryHandler: Called function");
  if (const NQ_TAny* const stored = entry.ValueOfKey(Keys().value)) {
    value = *stored;
    if (engine.Logs(2)) Log(2, "TName::ServerQueryHandler: Key = \"", key, "\"; Cached value = ", value);
    return true;
  }
  if (engine.budget.preview) {
    problem.said = "services are not asked in a preview";
    return false;
  }
  return Send(engine, key, entry, value, problem);
}

bool FailByException(TEngine& engine, TQueryProblem& problem) {
  engine.SetError(TName::TName_ErrorServerQueryException);
  try {
    throw;
  } catch (const NQ_EException& error) {
    problem.said = NQ_TString("its definition does not say what to ask: ") + TextOf(error);
  } catch (...) {
    problem.said = "its definition does not say what to ask";
  }
  return false;
}

}  // namespace

bool Query(TEngine& engine, const NQ_TString& key, NQ_TDict& entry, NQ_TAny& value, TQueryProblem& problem) {
  try {
    return QueryOrThrow(engine, key, entry, value, problem);
  } catch (...) {
    return FailByException(engine, problem);
  }
}

bool QueryKeeping(TEngine& engine, const NQ_TString& key, NQ_TDict& entry, NQ_TAny& value, TQueryProblem& problem) {
  const bool stored = entry.HasKey(Keys().value);
  if (!Query(engine, key, entry, value, problem)) return false;
  try {
    if (!stored) {  // else it is a reply that was kept before, or a value that somebody has set
      entry.Add(Keys().value, NQ_TAny(value));
      entry.Add(Keys().cacheFilled, true);
    }
    if (engine.Logs(2)) Log(2, "TName::ServerQueryHandler: Key = \"", key, "\"; Value = ", value);
    return true;
  } catch (...) {
    return FailByException(engine, problem);
  }
}

bool DoQuery(TEngine& engine, const NQ_TString& host, const NQ_TString& server, const NQ_TString& method,
             const NQ_TDict& params, NQ_TAny& result, NQ_TString& said) {
  const auto failed = [&](const char* generated, const auto&... error) {
    if (engine.Logs(1)) Log(1, server, '@', host, ':', method, '(', params, ") generated an ", generated, error...);
    return false;
  };
  const auto answered = [&](const NQ_TString& text) {
    return (host.Empty() ? server : server + "@" + host) + " answered " + method + ": " + text;
  };
  try {
    const auto client =
        engine.proxyProvider != nullptr ? engine.proxyProvider->GetClient(host, server) : MakeClient(host, server);
    NQ_TDict request(params.Size() + 1);
    request.Add(Keys().callMethod, method);
    for (NQ_TConstIterator i(params); !i.IsDone(); i.Next()) request.Add(i.Key(), NQ_TAny(i.Value()));
    client->Call(request, result);
    return true;
  } catch (const NQ_EException& error) {
    const bool saysWho = dynamic_cast<const NQM_ECallFailed*>(&error) != nullptr;
    said = saysWho ? TextOf(error) : answered(TextOf(error));
    return failed("exception:", error);
  } catch (...) {
    said = answered("an unknown exception");
    return failed("unknown exception:");
  }
}

// ---- requests of others

// A thread that holds the registry's lock while a template is resolved is the one that resolves it.
TRequestInHand::TRequestInHand(TEngine& engine)
    : engine_(engine),
      counts_([&engine] {
        const std::lock_guard guard(engine.lock);
        return engine.budget.depth > 0;
      }()),
      begin_(counts_ ? Now() : 0) {
  if (!counts_) return;
  if (engine.budget.preview) nq::Throw(NQ_EException("Services are not asked in a preview"));
  if (const TLimit limit = engine.budget.QueriesExceeded(); limit != TLimit::None) {
    const std::string text = LogTextOf(limit) + 1;
    if (engine.Logs(2)) Log(2, "VexoNameUtils: ", text);
    nq::Throw(NQ_EException(NQ_TString(text.c_str())));
  }
  --engine.budget.queries;
}

TRequestInHand::~TRequestInHand() {
  if (counts_ && !answered_) engine_.budget.queryMilliseconds -= Now() - begin_;
}

void NoteServiceFailure(TEngine& engine) {
  const std::lock_guard guard(engine.lock);
  try {
    throw;
  } catch (const NQ_EException& error) {
    engine.serviceFailure = TextOf(error);
  } catch (...) {
    engine.serviceFailure = "an unknown exception";
  }
}

}  // namespace templatenames
