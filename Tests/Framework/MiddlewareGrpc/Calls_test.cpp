#include <grpcpp/grpcpp.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <set>
#include <stdexcept>

#include "CFS/Server/cfs_tproxy.h"
#include "Middleware.grpc.pb.h"
#include "MiddlewareGrpc/Support.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"

namespace grpc_test {
namespace {

TEST(GrpcCalls, ValuesTravelBothWays) {
  TNetwork network;
  std::atomic<int> asked{0};
  network.services->Add("", "echo", [&](const NQ_TDict& request) {
    ++asked;
    return NQ_TAny(request);
  });
  int sent = 0;
  for (const NQ_TAny& value : Values())
    for (const bool zipped : {false, true}) {
      NQ_TDict request = Request("Echo", value);
      if (zipped) request.Add("PZIPPED", true);
      EXPECT_EQ(Packed(network.Call("echo", request)), Packed(request)) << value;
      ++sent;
    }
  EXPECT_EQ(asked, sent);
}

TEST(GrpcCalls, ClientsReachServicesByNameAndByPort) {
  TNetwork network;
  const std::uint16_t port = network.server->Port();
  const auto saying = [](const char* text) { return [text](const NQ_TDict&) { return NQ_TAny(text); }; };
  network.services->Add("", "Überdruck", saying("named"));
  network.services->Add("", port, saying("at the port"));
  network.services->Add("elsewhere", "away", saying("not ours"));
  NQM_TGrpcTransportOptions options;
  options.servicePort = port;
  NQM_TGrpcTransport known(options);
  options.servicePort = 1;
  options.target = [&](const NQM_TAddress& address) {
    return address.host == "pool" ? "ipv4:127.0.0.1:" + std::to_string(port) : "nonsense:///";
  };
  NQM_TGrpcTransport told(std::move(options));
  const struct {
    NQM_ITransport* transport;
    NQM_TAddress address;
    const char* answer;  // or the cause of the failure
  } rows[] = {
      {&known, {"localhost", "", port}, "at the port"},
      {&known, {"", "Überdruck"}, "named"},
      {&known, {"127.0.0.1", "Überdruck", port}, "named"},
      {&known, {"[127.0.0.1]", "Überdruck", port}, "named"},
      {&known, {"", "überdruck"}, "no service"},
      {&known, {"", "away"}, "no service"},
      {&known, {"elsewhere/localhost", "Überdruck"}, "unreachable"},
      {&known, {"unix:/run/x", "", port}, "unreachable"},
      {&known, {NQ_TString::Format("localhost:%d", port), "", 1}, "unreachable"},
      {&known, {NQ_TString::Format("[127.0.0.1]:%d", port), "", 1}, "unreachable"},
      {&known, {S(std::string_view("localhost\0x", 11)), "Überdruck", port}, "unreachable"},
      {&known, {NQ_TString(std::string(256, 'h')), "", port}, "unreachable"},
      {&told, {"pool", "Überdruck"}, "named"},
      {&told, {"other", "Überdruck"}, "unreachable"},
  };
  for (const auto& row : rows) {
    std::string answer;
    const std::string cause =
        TNetwork::Cause([&] { answer = Printed(row.transport->Call(row.address, Request("Go"), 30s)); });
    EXPECT_EQ(cause + answer, row.answer) << row.address.Text();
  }
  network.services->Remove("", port);
  EXPECT_EQ(TNetwork::Cause([&] { known.Call({"", "", port}, Request("Go"), 30s); }), "no service");
}

TEST(GrpcCalls, FailuresOfTheServiceReachTheCaller) {
  TNetwork network;
  const std::string where = " at it@localhost:" + std::to_string(network.server->Port()) + ": ";
  const struct {
    const char* name;
    NQM_TService service;
    std::string thrown;
  } rows[] = {
      {"a class that is known", [](auto&) -> NQ_TAny { nq::Throw(NQ_EEntryIsNotASubtree("ç")); },
       "NQ_EEntryIsNotASubtree: ç"},
      {"the configuration's", [](auto&) -> NQ_TAny { nq::Throw(CFS_EValueNotSet()); }, "CFS_EValueNotSet: "},
      {"a failed call further on",
       [](auto&) -> NQ_TAny {
         nq::Throw(NQM_ECallFailed({"h", "S"}, Request("Up"), NQM_ECallFailed::kDeadline, "late"));
       },
       "NQM_ECallFailed: Calling \"Up\" at S@h: late"},
      {"a standard exception", [](auto&) -> NQ_TAny { throw std::runtime_error("disk full"); },
       "NQM_ECallFailed: Calling \"Go\"" + where + "disk full"},
      {"something else", [](auto&) -> NQ_TAny { throw 5; },
       "NQM_ECallFailed: Calling \"Go\"" + where + "an unknown exception"},
      {"no reply to send", [](auto&) { return NQ_TAny(NQ_TPointer()); },
       "NQM_ECallFailed: Calling \"Go\"" + where + "the service's reply cannot travel: A pointer cannot be packed"},
  };
  const CFS_TProxy proxy;  // its exceptions are known from then on
  for (const auto& row : rows) {
    network.services->Add("", "it", row.service);
    EXPECT_EQ(Thrown([&] { network.Call("it", Request("Go")); }), row.thrown) << row.name;
  }
  network.services->Add("", "it", [](auto&) { return NQ_TAny(1); });
  EXPECT_EQ(network.CauseOf("it", Request("Go", NQ_TPointer())), "refused");
  EXPECT_EQ(network.CauseOf("it", Request("Go", Nested(200))), "refused");
  EXPECT_EQ(network.CauseOf("it", Request("Go", Nested(199))), "");
}

// What is larger than the limit of either side is refused; what is not arrives.
TEST(GrpcCalls, SizesAreBounded) {
  constexpr unsigned kLimit = 1'000'000;
  NQM_TGrpcServerOptions small;
  small.limits.maxMessageBytes = kLimit;
  NQM_TGrpcTransportOptions smallTransport;
  smallTransport.limits = small.limits;
  TNetwork atServer(small);
  TNetwork atClient({}, smallTransport);
  for (TNetwork* network : {&atServer, &atClient}) {
    network->services->Add("", "length", [](auto& request) { return NQ_TAny(FirstOf(request).ClassName()); });
    network->services->Add("", "text", [](auto& request) {
      return NQ_TString(std::string(std::size_t(FirstOf(request).AsInt32()), 'x'));
    });
    const auto text = [](unsigned length) { return Request("Go", NQ_TString(std::string(length, 'x'))); };
    EXPECT_EQ(network->CauseOf("length", text(kLimit - 1000)), "");
    EXPECT_EQ(network->CauseOf("length", text(kLimit + 5000)), "refused");
    EXPECT_EQ(network->CauseOf("text", Request("Go", int{kLimit - 1000})), "");
    NQ_TDict tooLong = Request("Go", int{kLimit + 5000});
    EXPECT_EQ(network->CauseOf("text", tooLong), "refused");
    if (network == &atServer) continue;
    tooLong.Add("PZIPPED", true);
    EXPECT_EQ(network->CauseOf("text", tooLong), "refused");
  }
}

TEST(GrpcCalls, FiftyMegabytesArrive) {
  TNetwork network;
  NQ_TString text(std::string(50'000'000, 'x'));
  text.Append(NQ_TString("é"));
  network.services->Add("", "big", [&](const NQ_TDict&) { return NQ_TAny(text); });
  NQ_TDict request = Request("Go");
  EXPECT_TRUE(network.Call("big", request) == NQ_TAny(text));
  request.Add("PZIPPED", true);
  EXPECT_TRUE(network.Call("big", request) == NQ_TAny(text));
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
    NQM_TGrpcCredentials server;
    NQM_TGrpcCredentials client;
    const char* cause;
  } rows[] = {
      {"trusted", silent, trusting(own), ""},
      {"not trusted", silent, trusting(stranger), "unreachable"},
      {"client without TLS", silent, {}, "unreachable"},
      {"server without TLS", {}, trusting(own), "unreachable"},
      {"both known", own, trusting(own, own), ""},
      {"client not known", own, trusting(own, stranger), "unreachable"},
      {"no certificates to trust", silent, {"no PEM", "", ""}, "unreachable"},
      {"client's is no certificate", own, {own.rootCertificates, "no PEM", "no PEM"}, "unreachable"},
      {"client without certificate", own, trusting(own), "unreachable"},
  };
  for (const auto& row : rows) {
    NQM_TGrpcServerOptions serverOptions;
    serverOptions.credentials = row.server;
    NQM_TGrpcTransportOptions options;
    options.credentials = row.client;
    TNetwork network(serverOptions, options);
    network.services->Add("", "it", [](auto&) { return NQ_TAny(1); });
    EXPECT_EQ(network.CauseOf("it", Request("Go")), row.cause) << row.name;
  }
}

TEST(GrpcServer, SaysWhenItCannotListen) {
  TNetwork network;
  NQM_TGrpcServerOptions taken;
  taken.port = network.server->Port();
  NQM_TGrpcServerOptions foreign;
  foreign.host = "192.0.2.1";  // for documentation, nobody's
  NQM_TGrpcServerOptions broken;
  broken.credentials = {"", "no certificate", "no key"};
  for (const auto& options : {taken, foreign, broken})
    EXPECT_EQ(Thrown([&] {
                NQM_TGrpcServer(network.services, options);
              }).find("NQ_EException: The middleware server cannot listen on "),
              0U);
  NQM_TGrpcServerOptions lonely;
  lonely.maxThreads = 1;
  EXPECT_NE(Thrown([&] { NQM_TGrpcServer(network.services, lonely); }), "");
  EXPECT_NE(Thrown([&] { NQM_TGrpcServer(nullptr); }), "");
}

// A number with colons can be a host on either side, with and without brackets.
TEST(GrpcServer, ListensAtAnIPv6Number) {
  const int probe = socket(AF_INET6, SOCK_STREAM, 0);
  sockaddr_in6 loopback{};
  loopback.sin6_family = AF_INET6;
  loopback.sin6_addr = in6addr_loopback;
  const bool bound = probe >= 0 && bind(probe, reinterpret_cast<const sockaddr*>(&loopback), sizeof loopback) == 0;
  close(probe);
  if (!bound) GTEST_SKIP() << "this computer has no IPv6 loopback";
  for (const char* listening : {"::1", "[::1]"}) {
    NQM_TGrpcServerOptions options;
    options.host = listening;
    TNetwork network(options);
    network.services->Add("", "it", [](auto&) { return NQ_TAny(1); });
    for (const char* host : {"::1", "[::1]"})
      EXPECT_EQ(network.transport->Call({host, "it", network.server->Port()}, Request("Go"), 30s), NQ_TAny(1));
  }
}

/// The other side, bare: notes who calls, and answers what it is told.
class TBareServer final : public vexonames::wire::Middleware::Service {
 public:
  using TReply = vexonames::wire::Reply;

  TBareServer() {
    grpc::ServerBuilder builder;
    int port = 0;
    builder.AddListeningPort("localhost:0", grpc::InsecureServerCredentials(), &port);
    builder.RegisterService(this);
    builder.SetMaxSendMessageSize(-1);
    server_ = builder.BuildAndStart();
    address.port = static_cast<std::uint16_t>(port);
  }
  grpc::Status Call(grpc::ServerContext* context, const vexonames::wire::Request* request, TReply* out) override {
    const std::lock_guard guard(lock_);
    ++calls_;
    peers_.insert(context->peer());
    if (request->zip_reply()) context->set_compression_algorithm(GRPC_COMPRESS_GZIP);
    *out = reply_;
    return status_;
  }
  /// From now on.
  void Answer(grpc::Status status, TReply reply = {}) {
    const std::lock_guard guard(lock_);
    status_ = std::move(status);
    reply_ = std::move(reply);
  }
  int Calls() {
    const std::lock_guard guard(lock_);
    return calls_;
  }
  std::size_t Peers() {
    const std::lock_guard guard(lock_);
    return peers_.size();
  }

  NQM_TAddress address;

 private:
  std::mutex lock_;
  int calls_ = 0;
  std::set<std::string> peers_;
  grpc::Status status_;
  TReply reply_;
  std::unique_ptr<grpc::Server> server_;
};

// Nothing is sent twice, whatever the server says; all of it goes through one connection.
TEST(GrpcCalls, AreSentOnceThroughOneConnection) {
  TBareServer bare;
  NQM_TGrpcTransport transport;
  int calls = 0;
  const struct {
    grpc::StatusCode code;
    const char* cause;
  } rows[] = {
      {grpc::StatusCode::OK, "refused"},  // the reply is empty
      {grpc::StatusCode::UNAVAILABLE, "unreachable"},
      {grpc::StatusCode::CANCELLED, "unreachable"},
      {grpc::StatusCode::ABORTED, "unreachable"},
      {grpc::StatusCode::UNKNOWN, "unreachable"},
      {grpc::StatusCode::UNAUTHENTICATED, "unreachable"},
      {grpc::StatusCode::DEADLINE_EXCEEDED, "deadline"},
      {grpc::StatusCode::RESOURCE_EXHAUSTED, "refused"},
      {grpc::StatusCode::INVALID_ARGUMENT, "refused"},
      {grpc::StatusCode::INTERNAL, "refused"},
      {grpc::StatusCode::NOT_FOUND, "no service"},
      {grpc::StatusCode::UNIMPLEMENTED, "no service"},
  };
  for (const auto& row : rows) {
    bare.Answer(grpc::Status(row.code, "as told"));
    EXPECT_EQ(TNetwork::Cause([&] { transport.Call(bare.address, Request("Go"), 30s); }), row.cause) << row.code;
    EXPECT_EQ(bare.Calls(), ++calls);
  }
  bare.Answer(grpc::Status::OK);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round)
        EXPECT_EQ(TNetwork::Cause([&] { transport.Call(bare.address, Request("Go"), 30s); }), "refused");
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(bare.Calls(), calls + 200);
  EXPECT_EQ(bare.Peers(), 1U);
}

// A reply in gRPC's own compression, which could unfold to anything and is not taken; and ones that are no values.
TEST(GrpcCalls, RepliesThatLieAreRefused) {
  TBareServer bare;
  NQM_TGrpcTransport transport;
  const auto cause = [&](bool zipped) {
    NQ_TDict request = Request("Go");
    request.Add("PZIPPED", zipped);
    return TNetwork::Cause([&] { transport.Call(bare.address, request, 30s); });
  };
  TBareServer::TReply reply;
  reply.set_value(std::string(30'000'000, '\0'));
  bare.Answer(grpc::Status::OK, reply);
  EXPECT_EQ(cause(true), "no service");  // gRPC reports a service that it cannot use
  reply.set_value("\xFF");
  bare.Answer(grpc::Status::OK, reply);
  EXPECT_EQ(cause(false), "refused");
  reply.mutable_zipped_value()->set_size(4'000'000'000U);
  bare.Answer(grpc::Status::OK, reply);
  EXPECT_EQ(cause(false), "refused");
}

// Many hosts: more than there are channels, each in turn.
TEST(GrpcCalls, ManyTargetsTakeTurns) {
  NQM_TGrpcServerOptions everywhere;
  everywhere.host = "0.0.0.0";
  TNetwork network(everywhere);
  network.services->Add("", "it", [](auto&) { return NQ_TAny(1); });
  for (int round = 0; round < 2; ++round)
    for (int host = 1; host <= 100; ++host)
      EXPECT_EQ(network.transport->Call({NQ_TString::Format("127.0.0.%d", host), "it", network.server->Port()},
                                        Request("Go"), 30s),
                NQ_TAny(1));
}

}  // namespace
}  // namespace grpc_test
