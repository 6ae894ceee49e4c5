// The clients through which names ask services.
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "NQ_TSocket.h"
#include "TNameProxyProvider.h"

namespace {

// 0, which no service has, for what is no port.
std::uint16_t PortOf(const NQ_TString& server) {
  const std::string digits(server.Substring(1).Narrow());
  const long number = std::strtol(digits.c_str(), nullptr, 10);
  const bool isPort = number > 0 && number <= std::numeric_limits<std::uint16_t>::max();
  return isPort ? static_cast<std::uint16_t>(number) : std::uint16_t{0};
}

}  // namespace

TNameProxyProvider::TNameProxyProvider() = default;
TNameProxyProvider::~TNameProxyProvider() = default;

void TNameProxyProvider::AddClient(const NQ_TString& host, const NQ_TString& server,
                                   const std::shared_ptr<NQM_TClient>& client) {
  const TKey key = MakePair(host, server);
  std::shared_ptr<NQM_TClient> removed;  // destroyed after the lock: a client may be anything
  const std::lock_guard guard(lock_);
  if (client != nullptr) {
    clients_.try_emplace(key, client);
  } else if (const auto found = clients_.find(key); found != clients_.end()) {
    removed = std::move(found->second);
    clients_.erase(found);
  }
}

std::shared_ptr<NQM_TClient> TNameProxyProvider::GetClient(const NQ_TString& host, const NQ_TString& server) {
  TKey key = MakePair(host, server);
  const std::lock_guard guard(lock_);
  const auto found = clients_.find(key);
  if (found != clients_.end()) return found->second;
  return clients_.emplace(std::move(key), Create(host, server)).first->second;
}

std::shared_ptr<NQM_TClient> TNameProxyProvider::Create(const NQ_TString& host, const NQ_TString& server) {
  auto client = std::make_shared<NQM_TClient>();
  if (server.StartsWith("#")) {
    client->SetConnectionAddress(host, PortOf(server));
  } else {
    client->SetConnectionAddress(host, server, 0, TLocationMode_Default);
  }
  return client;
}

TNameProxyProvider::TKey TNameProxyProvider::MakePair(const NQ_TString& host, const NQ_TString& server) {
  return {(host.Empty() ? NQ_TSocket::HostName(false) : host).Lowered(), server};
}
