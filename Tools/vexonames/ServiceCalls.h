// Calls of services, as the tool makes them.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "NQM_ITransport.h"
#include "NQ_EException.h"

/// Sends every request of the process to the service of that name, or "#" and port, whatever host it asks for; to the
/// service of the place itself when that is the port. Notes what fails.
class TServiceCalls final : public NQM_ITransport {
 public:
  /// Calls go through the transport, to the place given there with the service's name in it.
  TServiceCalls(std::shared_ptr<NQM_ITransport> transport, NQM_TAddress place)
      : transport_(std::move(transport)), place_(std::move(place)) {}

  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override;

  /// What failed last since this was called last, in one line; empty when nothing did.
  std::string TakeFailure();
  /// Whether anything has failed.
  bool HaveFailed() const;
  /// What failed so far does not count; returns what `TakeFailure` does.
  std::string Forgive();
  /// Whether requests are said on standard error as they are made, a line each; returns the setting before.
  bool Say(bool requests) { return says_.exchange(requests); }

 private:
  void Note(const NQM_TAddress& address, const NQ_TDict& request, const NQ_EException& error);

  const std::shared_ptr<NQM_ITransport> transport_;
  const NQM_TAddress place_;
  mutable std::mutex lock_;
  std::string failure_;
  bool failed_ = false;
  std::atomic<bool> says_{false};
};
