#include <gmock/gmock.h>
#include <grpcpp/grpcpp.h>

#include <atomic>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

#include "CFS/Server/cfs_tproxy.h"
#include "Middleware.grpc.pb.h"
#include "Middleware/Support.h"
#include "MiddlewareGrpc/Support.h"
#include "NQ_TBoxed.h"

namespace grpc_test {
namespace {

TEST(GrpcCalls, ValuesTravelBothWays) {
  TNetwork network;
  network.services->Add("", "echo", [](const NQ_TDict& request) { return NQ_TAny(request); });
  for (const NQ_TAny& value : Values())
    for (const bool zipped : {false, true}) {
      NQ_TDict request = Request("Echo", value);
      if (zipped) request.Add("PZIPPED", true);
      EXPECT_EQ(Packed(network.Call("echo", request)), Packed(request)) << value;
    }
}

const rows_test::RowFile file("Addresses.txt", {}, [](const rows_test::Row& row) {
  TNetwork network;
  const std::uint16_t port = network.server->Port();
  const auto saying = [](const char* text) { return [text](const NQ_TDict&) { return NQ_TAny(text); }; };
  network.services->Add("", "Überdruck", saying("named"));
  network.services->Add("", port, saying("at the port"));
  network.services->Add("elsewhere", "away", saying("not ours"));
  const auto parts = rows_test::Pieces(row.text, " => ");
  const std::string given = std::regex_replace(parts.at(1), std::regex("PORT"), std::to_string(port));
  const std::string address = std::regex_replace(given, std::regex("NUL"), std::string(1, '\0'));
  NQM_TGrpcTransportOptions options;
  options.servicePort = parts[0] == "told" ? 1 : port;
  if (parts[0] == "told")
    options.target = [&](const NQM_TAddress& asked) {
      return asked.host == "pool" ? "ipv4:127.0.0.1:" + std::to_string(port) : "nonsense:///";
    };
  EXPECT_THAT(TNetwork::Outcome(NQM_TGrpcTransport(options), middleware_test::Address(address)),
              testing::StartsWith(parts.at(2)));
});

TEST(GrpcCalls, FailuresOfTheServiceReachTheCaller) {
  TNetwork network;
  const CFS_TProxy proxy;  // its exceptions are known from now on
  const std::string failed = "NQM_ECallFailed: Calling \"Go\" at it@localhost:PORT: ";
  const std::string data = " [{Method = Go, Address = it@localhost:PORT, Cause = service failed}]";
  const NQM_ECallFailed further({"h", "S"}, Request("Up"), NQM_ECallFailed::kDeadline, "late");
  const std::pair<std::string, NQM_TService> rows[] = {
      {"CFS_EValueNotSet: ç", [](auto&) -> NQ_TAny { nq::Throw(CFS_EValueNotSet("ç")); }},
      {"NQM_ECallFailed: Calling \"Up\" at S@h: late [{Method = Up, Address = S@h, Cause = deadline}]",
       [&](auto&) -> NQ_TAny { nq::Throw(NQM_ECallFailed(further)); }},
      {failed + "disk full" + data, [](auto&) -> NQ_TAny { throw std::runtime_error("disk full"); }},
      {failed + "an unknown exception" + data, [](auto&) -> NQ_TAny { throw 5; }},
      {failed + "the service's reply cannot travel: A pointer cannot be packed" + data,
       [](auto&) { return NQ_TAny(NQ_TPointer()); }},
  };
  const std::regex port("localhost:" + std::to_string(network.server->Port()));
  for (const auto& [thrown, service] : rows) {
    network.services->Add("", "it", service);
    try {
      ADD_FAILURE() << network.Call("it", Request());
    } catch (const NQ_EException& error) {
      EXPECT_THAT(std::regex_replace(Printed(error), port, "localhost:PORT"), testing::StartsWith(thrown));
    }
  }
}

// What is larger than the limit of either side is refused, and what cannot travel; what is not larger arrives.
TEST(GrpcCalls, SizesAreBounded) {
  constexpr int kLimit = 1'000'000;
  NQM_TGrpcServerOptions small;
  small.limits.maxMessageBytes = kLimit;
  NQM_TGrpcTransportOptions smallTransport;
  smallTransport.limits = small.limits;
  TNetwork atServer(small), atClient({}, smallTransport);
  for (TNetwork* network : {&atServer, &atClient}) {
    const auto text = [](int length) { return NQ_TString(std::string(std::size_t(length), 'x')); };
    network->services->Add("", "text", [&](auto& request) { return text(FirstOf(request).AsInt32()); });
    EXPECT_EQ(network->CauseOf("it", Request("Go", text(kLimit - 1000))), "");
    EXPECT_EQ(network->CauseOf("it", Request("Go", text(kLimit + 5000))), "refused");
    EXPECT_EQ(network->CauseOf("text", Request("Go", kLimit - 1000)), "");
    for (const bool zipped : {false, true}) {
      NQ_TDict tooLong = Request("Go", kLimit + 5000);
      tooLong.Add("PZIPPED", zipped);
      EXPECT_EQ(network->CauseOf("text", tooLong), zipped && network == &atServer ? "" : "refused");
    }
    EXPECT_EQ(network->CauseOf("it", Request("Go", NQ_TPointer())), "refused");
  }
}

TEST(GrpcCalls, FiftyMegabytesArrive) {
  TNetwork network;
  const NQ_TAny text(NQ_TString(std::string(50'000'000, 'x') + "é"));
  network.services->Add("", "big", [&](const NQ_TDict&) { return text; });
  for (const bool zipped : {false, true}) EXPECT_TRUE(network.Call("big", Request().Add("PZIPPED", zipped)) == text);
}

TEST(GrpcCalls, TlsTrustsWhomItIsToldTo) {
  const NQM_TGrpcCredentials own = NewCertificate();
  const NQM_TGrpcCredentials stranger = NewCertificate();
  const auto trusting = [](const NQM_TGrpcCredentials& trusted, const NQM_TGrpcCredentials& mine = {}) {
    return NQM_TGrpcCredentials{trusted.rootCertificates, mine.certificateChain, mine.privateKey};
  };
  const NQM_TGrpcCredentials silent = {"", own.certificateChain, own.privateKey};
  const struct {
    const char* name;
    NQM_TGrpcCredentials server, client;
    const char* cause;
  } rows[] = {
      {"trusted", silent, trusting(own), ""},
      {"not trusted", silent, trusting(stranger), "unreachable"},
      {"client without TLS", silent, {}, "unreachable"},
      {"server without TLS", {}, trusting(own), "unreachable"},
      {"both known", own, trusting(own, own), ""},
      {"client not known", own, trusting(own, stranger), "unreachable"},
      {"client without certificate", own, trusting(own), "unreachable"},
      {"no certificates to trust", silent, {"no PEM", "", ""}, "unreachable"},
      {"client's is no certificate", own, {own.rootCertificates, "no PEM", "no PEM"}, "unreachable"},
  };
  NQM_TGrpcServerOptions serverOptions;
  NQM_TGrpcTransportOptions transportOptions;
  for (const auto& row : rows) {
    serverOptions.credentials = row.server;
    transportOptions.credentials = row.client;
    EXPECT_EQ(TNetwork(serverOptions, transportOptions).CauseOf("it"), row.cause) << row.name;
  }
  // As the documentation has it.
  const auto& [authority, certificate, key] = own;
  serverOptions.credentials = transportOptions.credentials = {};
  serverOptions.credentials.certificateChain = certificate;
  serverOptions.credentials.privateKey = key;
  transportOptions.credentials.rootCertificates = authority;  // empty: whom the system trusts
  EXPECT_EQ(TNetwork(serverOptions, transportOptions).CauseOf("it"), "");
}

TEST(GrpcServer, SaysWhenItCannotListen) {
  TNetwork network;
  NQM_TGrpcServerOptions taken, foreign, broken, lonely;
  taken.port = network.server->Port();
  foreign.host = "192.0.2.1";  // for documentation, nobody's
  broken.credentials = {"", "no certificate", "no key"};
  lonely.maxThreads = 1;
  const auto thrown = [&](const auto& services, const NQM_TGrpcServerOptions& options) {
    return Thrown([&] { NQM_TGrpcServer(services, options); });
  };
  for (const auto& options : {taken, foreign, broken})
    EXPECT_EQ(thrown(network.services, options).find("NQ_EException: The middleware server cannot listen on "), 0U);
  EXPECT_NE(thrown(network.services, lonely), "");
  EXPECT_NE(thrown(nullptr, {}), "");
}

// A number with colons can be a host on either side, with and without brackets.
TEST(GrpcServer, ListensAtAnIPv6Number) {
  std::stringstream addresses;
  addresses << std::ifstream("/proc/net/if_inet6").rdbuf();
  if (addresses.str().find(" lo\n") == std::string::npos) GTEST_SKIP() << "this computer has no IPv6 loopback";
  for (const char* listening : {"::1", "[::1]"}) {
    NQM_TGrpcServerOptions options;
    options.host = listening;
    TNetwork network(options);
    for (const char* host : {"::1", "[::1]"})
      EXPECT_EQ(network.transport->Call({host, "it", network.server->Port()}, Request(), 30s), NQ_TAny(1));
  }
}

/// The other side, bare: notes who calls, and answers what it is told.
struct TBareServer final : vexonames::wire::Middleware::Service {
  TBareServer() {
    grpc::ServerBuilder builder;
    builder.AddListeningPort("localhost:0", grpc::InsecureServerCredentials(), &port);
    builder.RegisterService(this);
    builder.SetMaxSendMessageSize(-1);
    server = builder.BuildAndStart();
  }
  grpc::Status Call(grpc::ServerContext* context, const vexonames::wire::Request* request,
                    vexonames::wire::Reply* out) override {
    const std::lock_guard guard(lock);
    ++calls;
    peers.insert(context->peer());
    if (request->zip_reply()) context->set_compression_algorithm(GRPC_COMPRESS_GZIP);
    *out = reply;
    return status;
  }
  /// The cause of the failure of a call that is answered so.
  std::string CauseOf(grpc::Status answered, const vexonames::wire::Reply& answer = {}, bool zipped = false) {
    {
      const std::lock_guard guard(lock);
      status = std::move(answered);
      reply = answer;
    }
    const NQM_TAddress address{"", "", static_cast<std::uint16_t>(port)};
    return TNetwork::Cause([&] { transport.Call(address, Request().Add("PZIPPED", zipped), 30s); });
  }

  NQM_TGrpcTransport transport;
  std::atomic<int> calls{0};
  std::mutex lock;
  std::set<std::string> peers;
  grpc::Status status;
  vexonames::wire::Reply reply;
  int port = 0;
  std::unique_ptr<grpc::Server> server;
};

// Nothing is sent twice, whatever the server says; all of it goes through one connection.
TEST(GrpcCalls, AreSentOnceThroughOneConnection) {
  using enum grpc::StatusCode;
  TBareServer bare;
  int calls = 0;
  const std::pair<const char*, std::vector<grpc::StatusCode>> rows[] = {
      {"unreachable", {UNAVAILABLE, CANCELLED, ABORTED, UNKNOWN, UNAUTHENTICATED}},
      {"deadline", {DEADLINE_EXCEEDED}},
      {"refused", {RESOURCE_EXHAUSTED, INVALID_ARGUMENT, INTERNAL, OK}},  // OK: the reply is empty
      {"no service", {NOT_FOUND, UNIMPLEMENTED}},
  };
  for (const auto& [cause, codes] : rows)
    for (const grpc::StatusCode code : codes) {
      EXPECT_EQ(bare.CauseOf(grpc::Status(code, "as told")), cause) << code;
      EXPECT_EQ(bare.calls, ++calls);
    }
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t)
      threads.emplace_back([&] {
        for (int round = 0; round < 50; ++round) EXPECT_EQ(bare.CauseOf(grpc::Status::OK), "refused");
      });
  }
  EXPECT_EQ(bare.calls, calls + 200);
  EXPECT_EQ(bare.peers.size(), 1U);
}

// A reply in gRPC's own compression, which could unfold to anything and is not taken; and ones that are no values.
TEST(GrpcCalls, RepliesThatLieAreRefused) {
  TBareServer bare;
  vexonames::wire::Reply reply;
  reply.set_value(std::string(30'000'000, '\0'));
  EXPECT_EQ(bare.CauseOf(grpc::Status::OK, reply, true), "no service");  // so gRPC reports it
  reply.set_value("\xFF");
  EXPECT_EQ(bare.CauseOf(grpc::Status::OK, reply), "refused");
  reply.mutable_zipped_value()->set_size(4'000'000'000U);
  EXPECT_EQ(bare.CauseOf(grpc::Status::OK, reply), "refused");
}

// Many hosts: more than there are channels, each in turn.
TEST(GrpcCalls, ManyTargetsTakeTurns) {
  NQM_TGrpcServerOptions everywhere;
  everywhere.host = "0.0.0.0";
  TNetwork network(everywhere);
  const NQM_TAddress it{"", "it", network.server->Port()};
  for (int call = 0; call < 200; ++call)
    EXPECT_EQ(network.transport->Call({NQ_TString::Format("127.0.0.%d", 1 + call % 100), it.service, it.port},
                                      Request(), 30s),
              NQ_TAny(1));
}

}  // namespace
}  // namespace grpc_test
