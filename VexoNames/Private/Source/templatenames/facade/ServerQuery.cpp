// TName: values from services. A name's entry says whom to ask ("Host", "Server"), what ("Method", "Params"), and keeps
// the reply of a cached query as its "Value", with "CacheFilled" beside it.
#include "NQ_EException.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "TName.h"
#include "TNameProxyProvider.h"
#include "engine/AttributeKeys.h"
#include "engine/NameStore.h"
#include "engine/ResolveValue.h"
#include "engine/SpentTime.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;

namespace {

/// What the value holds, which has to be a T. Entries can be written by handlers, parameters come from outside.
template <class T>
const T& Held(const NQ_TAny& value) {
  if (const auto* held = value.As<T>()) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(NQ_TString("A server query needs an ") + T::NQ_ClassName(), value));
}

}  // namespace

void TName::SetServerQuery(const NQ_TString& key, NQ_TString host, NQ_TString server, NQ_TString method,
                           NQ_TDict params) {
  if (Logs(2)) Log(2, "TName::SetServerQuery: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  FindEntry(key)
      .Add(Keys().host, std::move(host))
      .Add(Keys().server, std::move(server))
      .Add(Keys().method, std::move(method))
      .Add(Keys().params, std::move(params));
}

void TName::SetTNameProxyProvider(std::shared_ptr<TNameProxyProvider> provider) {
  proxyProvider_ = std::move(provider);
}

// ---- kept replies

void TName::ClearCache(const NQ_TString& key) {
  if (Logs(2)) Log(2, "TName::ClearCache: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  TEntry& entry = FindEntry(key);
  if (!entry.HasKey(Keys().cacheFilled)) return;
  entry.Remove(Keys().cacheFilled);
  entry.Remove(Keys().value);
}

void TName::ClearCaches() {
  if (Logs(2)) Log(2, "TName::ClearCaches");
  const std::lock_guard guard(lock_);
  for (NQ_TConstIterator i(names_->Names()); !i.IsDone(); i.Next()) ClearCache(i.Key());
}

// ---- asking

bool TName::ServerQueryHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  const bool stored = entry->HasKey(Keys().value);
  if (!ServerQueryHandlerNoCache(key, entry, names, value)) return false;
  try {
    if (!stored) {  // else it is a reply that was kept before, or a value that somebody has set
      entry->Add(Keys().value, NQ_TAny(value));
      entry->Add(Keys().cacheFilled, true);
    }
    if (names->Logs(2)) Log(2, "TName::ServerQueryHandler: Key = \"", key, "\"; Value = ", value);
    return true;
  } catch (...) {
    names->SetError(TName_ErrorServerQueryException);
    return false;
  }
}

bool TName::ServerQueryHandlerNoCache(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  try {
    return names->Query(key, *entry, value);
  } catch (...) {
    names->SetError(TName_ErrorServerQueryException);
    return false;
  }
}

// What the entry holds is copied before anything is resolved: a handler may change it.
bool TName::Query(const NQ_TString& key, const NQ_TDict& entry, NQ_TAny& value) {
  if (Logs(2)) Log(2, "TName::ServerQueryHandler: Called function");
  if (const NQ_TAny* const stored = entry.ValueOfKey(Keys().value)) {
    value = *stored;
    if (Logs(2)) Log(2, "TName::ServerQueryHandler: Key = \"", key, "\"; Cached value = ", value);
    return true;
  }
  const auto hostTemplate = Held<NQ_TString>(entry.At(Keys().host));
  NQ_TString host;
  if (!Resolve(hostTemplate, host)) {
    if (Logs(2)) Log(2, "TName::ServerQueryHandler: Could not resolve host name ", hostTemplate);
    SetError(TName_ErrorServerQuery);
    return false;
  }
  const auto server = Held<NQ_TString>(entry.At(Keys().server));
  const auto method = Held<NQ_TString>(entry.At(Keys().method));
  if (Logs(2)) {
    Log(2, "TName::ServerQueryHandler: Host   = ", host);
    Log(2, "TName::ServerQueryHandler: Server = ", server);
    Log(2, "TName::ServerQueryHandler: Method = ", method);
  }
  // Before the parameters: names in them may ask too, and again.
  if (budget_.queries <= 0) return LogToken(key, " More queries than the limit allows"), false;
  --budget_.queries;
  NQ_TDict params;
  if (const NQ_TAny* const recorded = entry.ValueOfKey(Keys().params)) {
    params = Held<NQ_TDict>(*recorded);
    method.BeginsWith("Conditional", 0) ? ResolveParameters(params) : ResolveDependencies(key, params);
  }
  if (budget_.queryMilliseconds <= 0) return LogToken(key, " More time for queries than the limit allows"), false;
  const templatenames::TSpentTime spent(budget_.queryMilliseconds);
  return DoQueryRPC(host, server, method, params, value);
}

void TName::ResolveParameters(NQ_TDict& params) {
  for (NQ_TIterator i(params); !i.IsDone(); i.Next()) {
    NQ_TAny resolved;
    templatenames::ResolveValue(i.Value(), this, resolved);
    i.Value() = std::move(resolved);
  }
}

// Puts the names that the service depends on together with their values. One that does not resolve goes as it is.
void TName::ResolveDependencies(const NQ_TString& key, NQ_TDict& params) {
  const NQ_TAny* const dependencies = std::as_const(params).ValueOfKey(Keys().dependencies);
  if (dependencies == nullptr) return;
  const auto names = Held<NQ_TArray>(*dependencies);
  NQ_TDict values(names.Count());
  for (NQ_TConstIterator i(names); !i.IsDone(); i.Next()) {
    const auto& name = Held<NQ_TString>(i.Value());
    NQ_TString value;
    if (!Resolve(NQ_TString("<") + name + "/>", value) && Logs(2)) {
      Log(2, "TName::ServerQueryHandlerNoCache: Dependency for ", key, " could not be resolved: ", name);
    }
    values.Add(name, std::move(value));
  }
  params.Add(Keys().dependencies, std::move(values));
}

bool TName::DoQueryRPC(const NQ_TString& host, const NQ_TString& server, const NQ_TString& method,
                       const NQ_TDict& params, NQ_TAny& result) {
  const auto failed = [&](const char* generated, const auto&... error) {
    if (Logs(1)) Log(1, server, '@', host, ':', method, '(', params, ") generated an ", generated, error...);
    return false;
  };
  try {
    const auto client =
        proxyProvider_ != nullptr ? proxyProvider_->GetClient(host, server) : TNameProxyProvider::Create(host, server);
    NQ_TDict request(params.Size() + 1);
    request.Add(Keys().callMethod, method);
    for (NQ_TConstIterator i(params); !i.IsDone(); i.Next()) request.Add(i.Key(), NQ_TAny(i.Value()));
    client->Call(request, result);
    return true;
  } catch (const NQ_EException& error) {
    return failed("exception:", error);
  } catch (...) {
    return failed("unknown exception:");
  }
}
