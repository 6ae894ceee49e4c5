// Services of this process, offered to other processes by gRPC.
//
//   NQM_TServices::OfProcess()->Add("", "CFS", AnswerOfConfiguration);
//   NQM_TGrpcServerOptions options;
//   options.host = "0.0.0.0";
//   options.port = 8088;
//   NQM_TGrpcServer server(NQM_TServices::OfProcess(), options);   // listens
//   ...
//   server.Stop(std::chrono::seconds(5));
//
// Calls by name reach the local service of that name, calls by port the one that is registered for the server's port.
// Services may come and go while the server runs.
#pragma once

#include <chrono>
#include <memory>

#include "NQM_TGrpcOptions.h"
#include "NQM_TServices.h"

struct NQM_TGrpcServerOptions {
  /// Name or number of the network interface to listen on; "0.0.0.0" and "[::]" mean all of them.
  std::string host = "localhost";
  /// 0: any free one.
  std::uint16_t port = 0;
  /// Empty: connections without TLS.
  NQM_TGrpcCredentials credentials;
  NQM_TGrpcLimits limits;
  /// Calls at a time, roughly: each takes a thread as long as its service works, and gRPC needs some for itself. What
  /// exceeds it is refused. At least 2.
  int maxThreads = 256;
};

/// A running server. Any thread may call any member.
class NQ_EXPORT NQM_TGrpcServer {
 public:
  /// Listens from now on. Throws NQ_EException when it cannot: the port is taken, the host is none of this computer,
  /// the credentials are no certificates, there are no services or too few threads.
  explicit NQM_TGrpcServer(std::shared_ptr<NQM_TServices> services, const NQM_TGrpcServerOptions& options = {});
  /// Stops at once, as Stop does.
  ~NQM_TGrpcServer();
  NQM_TGrpcServer(const NQM_TGrpcServer&) = delete;
  NQM_TGrpcServer& operator=(const NQM_TGrpcServer&) = delete;

  std::uint16_t Port() const;

  /// Takes no new calls, and lets those under way end until the grace is over; what is then left fails at its caller
  /// as unreachable. Returns when no service is at work any more: a service that has begun cannot be interrupted, and
  /// must not call this.
  /// Further calls of this wait for the first one.
  void Stop(std::chrono::milliseconds grace = std::chrono::milliseconds(0));

 private:
  class TImplementation;

  std::unique_ptr<TImplementation> implementation_;
};
