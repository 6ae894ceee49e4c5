// What the tests of the network middleware share.
#pragma once

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <string>
#include <thread>

#include "Base/Support.h"
#include "NQM_ECallFailed.h"
#include "NQM_TClient.h"
#include "NQM_TGrpcServer.h"
#include "NQM_TGrpcTransport.h"
#include "NQ_TTree.h"

namespace grpc_test {

using base_test::Printed;
using base_test::S;
using base_test::Thrown;
using namespace std::chrono_literals;

/// One value of each kind that travels, the awkward ones included.
std::vector<NQ_TAny> Values();
/// Arrays in each other.
NQ_TAny Nested(int depth);
/// The packed form: equal bytes mean equal values, in equal order, whether or not a number equals itself.
std::string Packed(const NQ_TAny& value);

/// A certificate for "localhost", of now, that signs itself; certificateChain and rootCertificates are the same.
NQM_TGrpcCredentials NewCertificate();

/// {"M": method, "P1": first}
inline NQ_TDict Request(const char* method = "Go", NQ_TAny first = {}) {
  return NQ_TDict().Add("M", method).Add("P1", std::move(first));
}

inline NQ_TAny FirstOf(const NQ_TDict& request) { return request.At("P1"); }

/// Services, a server that offers them on this computer, and a transport that reaches it. The service "it" replies 1.
class TNetwork {
 public:
  explicit TNetwork(const NQM_TGrpcServerOptions& options = {}, NQM_TGrpcTransportOptions transportOptions = {})
      : server(std::make_unique<NQM_TGrpcServer>(services, options)),
        transport(std::make_unique<NQM_TGrpcTransport>(std::move(transportOptions))) {
    services->Add("", "it", [](auto&) { return NQ_TAny(1); });
  }

  /// Calls the service of that name.
  NQ_TAny Call(const char* name, const NQ_TDict& request, std::chrono::milliseconds timeout = 30s) {
    return transport->Call({"", name, server->Port()}, request, timeout);
  }
  /// The cause of the failure of such a call; "" when it has a reply.
  std::string CauseOf(const char* name, const NQ_TDict& request = Request(), std::chrono::milliseconds timeout = 30s) {
    return Cause([&] { Call(name, request, timeout); });
  }
  template <class Action>
  static std::string Cause(Action action) {
    try {
      action();
      return "";
    } catch (const NQM_ECallFailed& failure) {
      return Printed(failure.Cause());
    }
  }

  /// What a call gives, or its failure's cause and the end of its message.
  static std::string Outcome(NQM_ITransport&& transport, const NQM_TAddress& address) {
    try {
      return Printed(transport.Call(address, Request(), 30s));
    } catch (const NQM_ECallFailed& failure) {
      const std::string message = Printed(failure.NQ_Message());
      return Printed(failure.Cause()) + message.substr(message.rfind(": "));
    }
  }

  std::shared_ptr<NQM_TServices> services = std::make_shared<NQM_TServices>();
  std::unique_ptr<NQM_TGrpcServer> server;
  std::unique_ptr<NQM_TGrpcTransport> transport;
};

/// Something that happens once, and that others wait for.
class TEvent {
 public:
  void Happen() { promise_.set_value(); }
  void Await() const { future_.wait(); }

 private:
  std::promise<void> promise_;
  std::shared_future<void> future_{promise_.get_future()};
};

}  // namespace grpc_test
