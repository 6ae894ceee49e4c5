#include "NQM_TClient.h"

#include <exception>
#include <mutex>
#include <utility>

#include "NQM_TServices.h"

namespace {

struct TChosen {
  std::mutex lock;
  std::shared_ptr<NQM_ITransport> transport = NQM_TServices::OfProcess();
};

// Never destroyed: clients of static storage may still call while the process ends.
TChosen& Chosen() {
  static auto& chosen = *new TChosen;
  return chosen;
}

}  // namespace

std::shared_ptr<NQM_ITransport> NQM_TClient::SetTransport(std::shared_ptr<NQM_ITransport> transport) {
  if (transport == nullptr) transport = NQM_TServices::OfProcess();
  TChosen& chosen = Chosen();
  const std::lock_guard guard(chosen.lock);
  return std::exchange(chosen.transport, std::move(transport));
}

std::shared_ptr<NQM_ITransport> NQM_TClient::Transport() {
  TChosen& chosen = Chosen();
  const std::lock_guard guard(chosen.lock);
  return chosen.transport;
}

NQM_TClient::~NQM_TClient() = default;

void NQM_TClient::SetConnectionAddress(const NQ_TString& host, std::uint16_t port) { address_ = {host, {}, port}; }

void NQM_TClient::SetConnectionAddress(const NQ_TString& host, const NQ_TString& service, std::uint16_t port,
                                       TLocationMode mode) {
  address_ = {host, service, port, mode};
}

void NQM_TClient::SetTimeout(std::chrono::milliseconds timeout) {
  if (timeout.count() <= 0) nq::Throw(NQ_EException("The timeout of a middleware client must be positive"));
  timeout_ = timeout;
}

void NQM_TClient::Call(const NQ_TDict& request, NQ_TAny& reply) {
  const auto failed = [&](const char* cause, const char* reason) {
    nq::Throw(NQM_ECallFailed(address_, request, cause, reason));
  };
  if (!address_.IsSet()) failed(NQM_ECallFailed::kNoAddress, "the client has neither a port nor a service name");
  try {
    reply = (own_ != nullptr ? own_ : Transport())->Call(address_, request, timeout_);
  } catch (const NQ_EException&) {
    throw;
  } catch (const std::exception& error) {
    failed(NQM_ECallFailed::kServiceFailed, error.what());
  } catch (...) {
    failed(NQM_ECallFailed::kServiceFailed, "an unknown exception");
  }
}

NQ_TAny NQM_TClient::Call(const NQ_TDict& request) {
  NQ_TAny reply;
  Call(request, reply);
  return reply;
}

NQ_TAny NQM_TClient::Call(const NQ_TString& method, const NQ_TAny& first, const NQ_TAny& second) {
  NQ_TDict request;
  request.Add("M", method).Add("P1", first).Add("P2", second);
  return Call(request);
}

NQ_TAny NQM_TClient::Call(const NQ_TString& method, const NQ_TAny& first, const NQ_TAny& second, const NQ_TAny& third) {
  NQ_TDict request;
  request.Add("M", method).Add("P1", first).Add("P2", second).Add("P3", third);
  return Call(request);
}
