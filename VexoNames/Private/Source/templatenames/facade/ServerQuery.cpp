// TName: values from services. A name's entry says whom to ask ("Host", "Server"), what ("Method", "Params"), and keeps
// the reply of a cached query as its "Value", with "CacheFilled" beside it.
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/Queries.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;

void TName::SetServerQuery(const NQ_TString& key, NQ_TString host, NQ_TString server, NQ_TString method,
                           NQ_TDict params) {
  if (engine_->Logs(2)) Log(2, "TName::SetServerQuery: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->EntryOf(key)
      .Add(Keys().host, std::move(host))
      .Add(Keys().server, std::move(server))
      .Add(Keys().method, std::move(method))
      .Add(Keys().params, std::move(params));
}

void TName::SetTNameProxyProvider(std::shared_ptr<TNameProxyProvider> provider) {
  engine_->proxyProvider = std::move(provider);
}

// ---- kept replies

void TName::ClearCache(const NQ_TString& key) {
  if (engine_->Logs(2)) Log(2, "TName::ClearCache: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  TEntry& entry = engine_->EntryOf(key);
  if (!entry.HasKey(Keys().cacheFilled)) return;
  entry.Remove(Keys().cacheFilled);
  entry.Remove(Keys().value);
}

void TName::ClearCaches() {
  if (engine_->Logs(2)) Log(2, "TName::ClearCaches");
  const std::lock_guard guard(engine_->lock);
  for (NQ_TConstIterator i(engine_->store.Names()); !i.IsDone(); i.Next()) ClearCache(i.Key());
}

// ---- asking

bool TName::DoQueryRPC(const NQ_TString& host, const NQ_TString& server, const NQ_TString& method,
                       const NQ_TDict& params, NQ_TAny& result) {
  NQ_TString ignored;
  return templatenames::DoQuery(*engine_, host, server, method, params, result, ignored);
}
