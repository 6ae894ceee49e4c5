// How requests travel.
#pragma once

#include <chrono>

#include "NQM_TAddress.h"
#include "NQ_TAny.h"
#include "NQ_TDict.h"

/// Carries requests to services. A program chooses one (NQM_TClient::SetTransport); NQM_TServices, which calls
/// services of the same process, is there without being chosen.
class NQ_EXPORT NQM_ITransport {
 public:
  NQM_ITransport() = default;
  NQM_ITransport(const NQM_ITransport&) = delete;
  NQM_ITransport& operator=(const NQM_ITransport&) = delete;
  virtual ~NQM_ITransport();

  /// Sends the request to the service at the address, once, and returns its reply. Throws NQM_ECallFailed when there
  /// is no reply within the timeout, and what the service threw when that was an NQ_EException. Called from any
  /// number of threads at once.
  virtual NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) = 0;
};
