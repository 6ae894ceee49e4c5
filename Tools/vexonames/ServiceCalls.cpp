#include "ServiceCalls.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <utility>

#include "NQM_ECallFailed.h"
#include "NQ_TArray.h"
#include "Text.h"

namespace {

// Somebody waits in front of the terminal.
constexpr std::chrono::milliseconds kLongestWait{10'000};

NQ_TString NameOf(const NQM_TAddress& address) {
  return address.service.Empty() ? NQ_TString("#" + std::to_string(address.port)) : address.service;
}

// What the request is about, after a blank: its first argument, of whatever kind; nothing without one.
std::string Subject(const NQ_TDict& request) {
  const NQ_TAny* first = request.ValueOfKey("P1");
  const auto* const arguments = request.Get<NQ_TArray>("Parameters");
  if (first == nullptr && arguments != nullptr && arguments->Count() > 0) first = arguments->At(0);
  std::ostringstream text;
  if (first != nullptr) text << ' ' << *first;
  return text.str();
}

void SayRequest(const NQ_TString& service, const NQ_TDict& request) {
  const std::string method(request.At("M").ValueOr<NQ_TString>({}).Narrow());
  std::cerr << "asks " << Printable(service.Narrow()) << ": " << Printable(Shortened(method + Subject(request)))
            << '\n';
}

}  // namespace

NQ_TAny TServiceCalls::Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) {
  NQM_TAddress place = place_;
  const NQ_TString name = NameOf(address);
  // The port of the place itself means the service that has that port and no name.
  const bool isPlace = address.service.Empty() && address.port == place.port;
  if (!isPlace) place.service = name;
  if (says_) SayRequest(name, request);
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

std::string TServiceCalls::Forgive() {
  const std::lock_guard guard(lock_);
  failed_ = false;
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
