#include "NQM_TServices.h"

#include <mutex>
#include <tuple>

#include "NQM_ECallFailed.h"
#include "NQ_TSocket.h"

namespace {

const NQ_TString& LocalHost() {
  static const NQ_TString& name = *new NQ_TString(NQ_TSocket::HostName(false).Lowered());
  return name;
}

NQ_TString HostKey(const NQ_TString& host) {
  NQ_TString key = host.Lowered();
  return key.Empty() || key == "localhost" ? LocalHost() : key;
}

}  // namespace

NQM_TServices::TKey::TKey(const NQM_TAddress& address)
    : host(HostKey(address.host)), name(address.service), port(name.Empty() ? address.port : std::uint16_t{0}) {}

bool NQM_TServices::TKey::operator<(const TKey& other) const {
  return std::tie(host, name, port) < std::tie(other.host, other.name, other.port);
}

// Never destroyed: clients of static storage may still call while the process ends.
const std::shared_ptr<NQM_TServices>& NQM_TServices::OfProcess() {
  static const auto& services = *new std::shared_ptr<NQM_TServices>(std::make_shared<NQM_TServices>());
  return services;
}

NQM_TServices::NQM_TServices() = default;
NQM_TServices::~NQM_TServices() = default;

void NQM_TServices::Add(const NQ_TString& host, const NQ_TString& name, NQM_TService service) {
  Put(TKey({host, name}), std::move(service));
}

void NQM_TServices::Add(const NQ_TString& host, std::uint16_t port, NQM_TService service) {
  Put(TKey({host, {}, port}), std::move(service));
}

void NQM_TServices::Remove(const NQ_TString& host, const NQ_TString& name) { Put(TKey({host, name}), nullptr); }

void NQM_TServices::Remove(const NQ_TString& host, std::uint16_t port) { Put(TKey({host, {}, port}), nullptr); }

// The service that goes is destroyed after the lock: it may hold anything.
void NQM_TServices::Put(TKey key, NQM_TService service) {
  std::shared_ptr<const NQM_TService> held;
  if (service != nullptr) held = std::make_shared<const NQM_TService>(std::move(service));
  const std::unique_lock guard(lock_);
  if (held == nullptr) {
    const auto found = services_.find(key);
    if (found == services_.end()) return;
    held = std::move(found->second);
    services_.erase(found);
  } else {
    services_[std::move(key)].swap(held);
  }
}

std::shared_ptr<const NQM_TService> NQM_TServices::Find(const NQM_TAddress& address) const {
  const TKey key(address);
  const std::shared_lock guard(lock_);
  const auto found = services_.find(key);
  return found == services_.end() ? nullptr : found->second;
}

NQ_TAny NQM_TServices::Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds) {
  const auto service = Find(address);
  if (service == nullptr)
    nq::Throw(NQM_ECallFailed(address, request, NQM_ECallFailed::kNoService, "this process offers no such service"));
  return (*service)(request);
}
