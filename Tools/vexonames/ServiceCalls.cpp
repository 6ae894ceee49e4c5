#include "ServiceCalls.h"

#include <algorithm>
#include <utility>

#include "NQM_ECallFailed.h"
#include "Text.h"

namespace {

// Somebody waits in front of the terminal.
constexpr std::chrono::milliseconds kLongestWait{10'000};

NQ_TString NameOf(const NQM_TAddress& address) {
  return address.service.Empty() ? NQ_TString("#" + std::to_string(address.port)) : address.service;
}

}  // namespace

NQ_TAny TServiceCalls::Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) {
  NQM_TAddress place = place_;
  place.service = NameOf(address);
  try {
    return transport_->Call(place, request, std::min(timeout, kLongestWait));
  } catch (const NQ_EException& error) {
    Note(address, request, error);
    throw;
  }
}

std::string TServiceCalls::TakeFailure() {
  const std::lock_guard guard(lock_);
  return std::exchange(failure_, {});
}

bool TServiceCalls::HaveFailed() const {
  const std::lock_guard guard(lock_);
  return failed_;
}

// What a service says itself lacks who said it.
void TServiceCalls::Note(const NQM_TAddress& address, const NQ_TDict& request, const NQ_EException& error) {
  std::string said(error.NQ_Message().Narrow());
  if (dynamic_cast<const NQM_ECallFailed*>(&error) == nullptr) {
    const auto* const method = request.Get<NQ_TString>("M");
    const std::string called(method == nullptr ? "" : method->Narrow());
    said = std::string(NameOf(address).Narrow()) + " answered " + called + ": " + said;
  }
  const std::lock_guard guard(lock_);
  failure_ = Printable(Shortened(said));
  failed_ = true;
}
