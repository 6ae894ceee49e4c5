// Calls of services over the network, by gRPC.
//
//   NQM_TClient::SetTransport(std::make_shared<NQM_TGrpcTransport>());
//
//   NQM_TClient client;                                          // as before
//   client.SetConnectionAddress("srv1", 8088);
//   NQ_TAny reply = client.Call(request);
//
// The other side is an NQM_TGrpcServer. One call is one unary call: it is sent once, never again, neither by this
// library nor by gRPC (whose retries are switched off). A request with "PZIPPED" set to true gets its reply compressed.
// Connections are made when they are first needed, shared by all clients of the process and kept; one that breaks is
// made anew by a later call. A proxy of the environment (http_proxy) is not used.
#pragma once

#include <functional>
#include <memory>

#include "NQM_ITransport.h"
#include "NQM_TGrpcOptions.h"

struct NQM_TGrpcTransportOptions {
  /// Empty: connections without TLS. What is no certificate, or no key to it, is found out when a connection is made:
  /// calls fail as unreachable.
  NQM_TGrpcCredentials credentials;
  NQM_TGrpcLimits limits;
  /// Where services that are called by name, without a port, listen on their host.
  std::uint16_t servicePort = 8088;
  /// For hosts with naming of their own: gives the gRPC target (such as "dns:///pool:8088" or "unix:/run/cfs") to
  /// connect to for an address. Called from any thread. Empty: host and port of the address.
  std::function<std::string(const NQM_TAddress& address)> target;
};

/// Any thread may call.
class NQ_EXPORT NQM_TGrpcTransport final : public NQM_ITransport {
 public:
  explicit NQM_TGrpcTransport(NQM_TGrpcTransportOptions options = {});
  ~NQM_TGrpcTransport() override;

  /// Throws NQM_ECallFailed when there is no reply, with one of its causes:
  ///   "unreachable"     nothing listens there, the connection broke, TLS failed, or the server stopped meanwhile
  ///   "deadline"        no reply within the timeout; the service may still do its work
  ///   "no service"      the server there offers no such service
  ///   "refused"         request or reply exceed a limit or cannot travel, or the server is overloaded
  ///   "service failed"  the service threw something else than an NQ_EException; the message has its text
  /// An NQ_EException that the service threw is thrown with its message, data and throw site, as its own class where
  /// that class is in use in this process, else as NQ_EException.
  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override;

 private:
  class TImplementation;

  std::unique_ptr<TImplementation> implementation_;
};
