// The clients through which names ask services.
#include <algorithm>

#include "NQ_EException.h"
#include "NQ_TSocket.h"
#include "TNameProxyProvider.h"
#include "engine/MakeClient.h"

TNameProxyProvider::TNameProxyProvider() = default;
TNameProxyProvider::TNameProxyProvider(TFactory factory) : factory_(std::move(factory)) {}
TNameProxyProvider::~TNameProxyProvider() = default;

void TNameProxyProvider::AddClient(const NQ_TString& host, const NQ_TString& server,
                                   const std::shared_ptr<NQM_TClient>& client) {
  if (client != nullptr) templatenames::CheckAddress(host, server);
  const TKey key = MakePair(host, server);
  std::map<TKey, std::shared_ptr<NQM_TClient>>::node_type added;  // these go after the lock: a client may be anything
  std::map<TKey, TMade>::node_type made;
  const std::lock_guard guard(lock_);
  if (client == nullptr) {
    added = added_.extract(key);
    made = made_.extract(key);
  } else if (!made_.contains(key)) {
    added_.try_emplace(key, client);
  }
}

std::shared_ptr<NQM_TClient> TNameProxyProvider::GetClient(const NQ_TString& host, const NQ_TString& server) {
  templatenames::CheckAddress(host, server);
  TKey key = MakePair(host, server);
  TMade removed;  // goes after the lock
  const std::lock_guard guard(lock_);
  if (const auto added = added_.find(key); added != added_.end()) return added->second;
  auto made = made_.find(key);
  if (made == made_.end()) {
    TMade next{Make(host, server)};
    if (made_.size() == kMostClients) removed = TakeLeastUsed();
    made = made_.emplace(std::move(key), std::move(next)).first;
  }
  made->second.lastUse = ++uses_;
  return made->second.client;
}

std::shared_ptr<NQM_TClient> TNameProxyProvider::Make(const NQ_TString& host, const NQ_TString& server) const {
  auto client = factory_ == nullptr ? Create(host, server) : factory_(host, server);
  if (client == nullptr) nq::Throw(NQ_EException("There is no client for the server", server));
  return client;
}

TNameProxyProvider::TMade TNameProxyProvider::TakeLeastUsed() {
  const auto least =
      std::ranges::min_element(made_, {}, [](const auto& keyAndMade) { return keyAndMade.second.lastUse; });
  return std::move(made_.extract(least).mapped());
}

std::shared_ptr<NQM_TClient> TNameProxyProvider::Create(const NQ_TString& host, const NQ_TString& server) {
  return templatenames::MakeClient(host, server);
}

TNameProxyProvider::TKey TNameProxyProvider::MakePair(const NQ_TString& host, const NQ_TString& server) {
  return {(host.Empty() ? NQ_TSocket::HostName(false) : host).Lowered(), server};
}
