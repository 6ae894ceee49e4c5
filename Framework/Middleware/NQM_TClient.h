// The client side of the middleware: requests to services.
//
//   NQM_TClient client;
//   client.SetConnectionAddress("srv1", 8088);
//   NQ_TDict request;
//   request.Add("M", "GetBuildNumber");
//   NQ_TAny reply = client.Call(request);
//
// A request is sent once: nothing is retried here. How it travels is the transport's business: the process's
// (SetTransport), or one that this client alone is given (SendThrough), such as services that a test makes up:
//
//   const auto services = std::make_shared<NQM_TServices>();
//   services->Add("", "Jobs", [](const NQ_TDict& request) { return Answer(request); });
//   J_TProxy jobs;
//   jobs.Client().SetConnectionAddress("", "Jobs", 0, TLocationMode_Default);
//   jobs.Client().SendThrough(services);           // what other clients of the process do is nothing to it
//
// What fails throws an
// NQ_EException: what the service itself threw, or NQM_ECallFailed, which says what was called, where, and why there
// is no reply.
#pragma once

#include <chrono>
#include <memory>
#include <utility>

#include "NQM_ECallFailed.h"
#include "NQM_ITransport.h"

/// A client of one service; service proxies derive from it. Any number of threads may call at once; the setters are
/// for before that.
class NQ_EXPORT NQM_TClient {
 public:
  /// How long a call waits for its reply when nothing else is set: longer than any healthy service takes, shorter than
  /// an operator waits before stopping the server.
  static constexpr std::chrono::milliseconds kDefaultTimeout{30'000};

  /// Chooses how the clients of this process that have no transport of their own send from their next call on; null
  /// means NQM_TServices::OfProcess(), as at the start. Meant for the start of the program and for tests. Returns the
  /// transport before. Any thread.
  static std::shared_ptr<NQM_ITransport> SetTransport(std::shared_ptr<NQM_ITransport> transport);
  /// The process's transport of now, never null. Any thread.
  [[nodiscard]] static std::shared_ptr<NQM_ITransport> Transport();

  NQM_TClient() = default;
  NQM_TClient(const NQM_TClient&) = delete;
  NQM_TClient& operator=(const NQM_TClient&) = delete;
  virtual ~NQM_TClient();

  /// The service at a port of the host. An empty host is the local computer.
  void SetConnectionAddress(const NQ_TString& host, std::uint16_t port);
  /// The service of that name on the host; with port 0 the transport finds it.
  void SetConnectionAddress(const NQ_TString& host, const NQ_TString& service, std::uint16_t port, TLocationMode mode);
  const NQM_TAddress& ConnectionAddress() const { return address_; }

  /// Gives this client a transport of its own; null: the process's again.
  void SendThrough(std::shared_ptr<NQM_ITransport> transport) { own_ = std::move(transport); }

  /// How long a call may take; zero or less throws NQ_EException and changes nothing.
  void SetTimeout(std::chrono::milliseconds timeout);
  std::chrono::milliseconds Timeout() const { return timeout_; }

  /// Sends the request and stores the reply; every other form comes down to this one. Throws NQ_EException and nothing
  /// else; the reply is then unchanged.
  virtual void Call(const NQ_TDict& request, NQ_TAny& reply);
  NQ_TAny Call(const NQ_TDict& request);
  /// Sends {"M": method, "P1": first, "P2": second}.
  NQ_TAny Call(const NQ_TString& method, const NQ_TAny& first, const NQ_TAny& second);
  /// Sends {"M": method, "P1": first, "P2": second, "P3": third}.
  NQ_TAny Call(const NQ_TString& method, const NQ_TAny& first, const NQ_TAny& second, const NQ_TAny& third);

 private:
  NQM_TAddress address_;
  std::shared_ptr<NQM_ITransport> own_;  // null: the process's
  std::chrono::milliseconds timeout_ = kDefaultTimeout;
};
