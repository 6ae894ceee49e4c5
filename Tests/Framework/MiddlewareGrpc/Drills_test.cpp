// Faults of the network and of the other side, on real connections of this computer.
#include <gtest/gtest.h>

#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <mutex>
#include <set>

#include "CFS/Server/cfs_tproxy.h"
#include "MiddlewareGrpc/Support.h"
#include "NQ_TBoxed.h"
#include "TName.h"
#include "TNameProxyProvider.h"

namespace grpc_test {
namespace {

/// A service that says when it has begun, and replies 1 when it is released.
struct TSlow {
  TSlow(TNetwork& network, const char* name) {
    network.services->Add("", name, [begun = begun, released = released](auto&) {
      begun->Happen();
      released->Await();
      return NQ_TAny(1);
    });
  }

  // Shared: a call may begin after its caller has given up.
  const std::shared_ptr<TEvent> begun = std::make_shared<TEvent>(), released = std::make_shared<TEvent>();
};

template <class Action>
auto Meanwhile(Action action) {
  return std::async(std::launch::async, std::move(action));
}

TEST(GrpcDrills, ServerStopsDuringACall) {
  TNetwork network;
  const TSlow slow(network, "slow");
  auto cause = Meanwhile([&] { return network.CauseOf("slow"); });
  slow.begun->Await();
  auto stopped = Meanwhile([&] { network.server->Stop(); });
  EXPECT_EQ(cause.get(), "unreachable");  // the service is still at work
  slow.released->Happen();
  stopped.get();
}

TEST(GrpcDrills, AGracefulStopLetsCallsEnd) {
  TNetwork network;
  const TSlow slow(network, "slow");
  auto cause = Meanwhile([&] { return network.CauseOf("slow"); });
  slow.begun->Await();
  auto stopped = Meanwhile([&] { network.server->Stop(std::chrono::milliseconds::max()); });
  while (network.CauseOf("it").empty()) {  // until new calls are taken no more
  }
  EXPECT_EQ(cause.wait_for(100ms), std::future_status::timeout);
  slow.released->Happen();
  EXPECT_EQ(cause.get(), "");
  stopped.get();
  network.server->Stop();  // once more does no harm
}

TEST(GrpcDrills, ReplyAfterTheDeadline) {
  TNetwork network;
  const TSlow slow(network, "slow");
  EXPECT_EQ(network.CauseOf("slow", Request(), 50ms), "deadline");
  EXPECT_EQ(network.CauseOf("it"), "");  // the late one holds up nobody
  slow.released->Happen();
  EXPECT_EQ(network.CauseOf("it", Request(), std::chrono::milliseconds::max()), "");
}

// More calls at a time than the server has threads for are refused; one after the other they are answered.
TEST(GrpcDrills, TooManyCallsAtATime) {
  NQM_TGrpcServerOptions options;
  options.maxThreads = 4;
  std::atomic<int> waiting{0};
  std::atomic<bool> refused{false};
  TEvent released;
  TNetwork network(options);
  network.services->Add("", "wait", [&](const NQ_TDict&) {
    ++waiting;
    released.Await();
    return NQ_TAny(1);
  });
  std::vector<std::future<std::string>> calls;
  for (int call = 0; call < 8; ++call)
    calls.push_back(Meanwhile([&] {
      const std::string cause = network.CauseOf("wait");
      if (!cause.empty() && !refused.exchange(true)) released.Happen();  // the first refusal ends the siege
      return cause;
    }));
  int answered = 0;
  for (auto& call : calls) {
    const std::string cause = call.get();
    EXPECT_TRUE(cause.empty() || cause == "refused") << cause;
    answered += cause.empty() ? 1 : 0;
  }
  EXPECT_EQ(answered, waiting);
  std::string cause = "refused";
  while (cause == "refused") cause = network.CauseOf("it");  // until a thread is back from its reply
  EXPECT_EQ(cause, "");
}

// Requests at work have twice the bytes of one together; each gives its share back.
TEST(GrpcDrills, TooManyBytesAtATime) {
  NQM_TGrpcServerOptions options;
  options.limits.maxMessageBytes = 1'000'000;
  TNetwork network(options);
  const TSlow first(network, "first"), second(network, "second");
  const auto large = [&](const char* service) {
    return network.CauseOf(service, Request("Go", NQ_TString(std::string(900'000, 'x'))));
  };
  auto firstCause = Meanwhile([&] { return large("first"); });
  first.begun->Await();
  EXPECT_EQ(large("it"), "");
  auto secondCause = Meanwhile([&] { return large("second"); });
  second.begun->Await();
  EXPECT_EQ(large("it"), "refused");
  EXPECT_EQ(network.CauseOf("it"), "");
  first.released->Happen();
  second.released->Happen();
  EXPECT_EQ(firstCause.get() + secondCause.get(), "");
  EXPECT_EQ(large("it"), "");
}

using boost::asio::ip::tcp;

/// Writes the bytes, and reads until the other side closes.
void Converse(tcp::iostream& connection, const std::string& bytes) {
  connection << bytes << std::flush;
  boost::system::error_code ignored;
  connection.socket().shutdown(tcp::socket::shutdown_send, ignored);
  connection.ignore(std::numeric_limits<std::streamsize>::max());
}

// From either side.
TEST(GrpcDrills, MalformedBytes) {
  const std::string preface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";
  base_test::TRandom random(3);
  std::string noise(100'000, '\0');
  for (char& byte : noise) byte = static_cast<char>(random.Below(256));
  TNetwork network;
  for (const std::string& bytes :
       {std::string(), std::string("GET / HTTP/1.1\r\n\r\n"), preface, noise, preface + noise,
        preface + std::string("\0\0\0\4\0\0\0\0\0", 9) + noise, preface + "\xFF\xFF\xFF\1\5" + noise}) {
    tcp::iostream client("127.0.0.1", std::to_string(network.server->Port()));
    ASSERT_TRUE(client);
    Converse(client, bytes);
    EXPECT_EQ(network.CauseOf("it"), "");

    boost::asio::io_context context;
    tcp::acceptor listening(context, {boost::asio::ip::address_v4::loopback(), 0});
    const NQM_TAddress where{"127.0.0.1", "it", listening.local_endpoint().port()};
    std::thread server([&] {
      boost::system::error_code ended;
      for (;;) {
        tcp::iostream connection;
        listening.accept(connection.socket(), ended);
        if (ended) return;
        Converse(connection, bytes);
      }
    });
    EXPECT_EQ(TNetwork::Cause([&] { network.transport->Call(where, Request(), 30s); }), "unreachable");
    shutdown(listening.native_handle(), SHUT_RDWR);
    server.join();
  }
}

// 10,000 queries from 8 threads through one provider, and as many reads of a proxy that keeps what it fetched, while
// the server restarts: each attempt has the right answer or fails as unreachable, and none reaches the service twice.
TEST(GrpcDrills, QueriesWhileTheServerRestarts) {
  constexpr int kThreads = 8;
  constexpr int kQueriesOfThread = 1250;
  TNetwork network;
  NQM_TGrpcServerOptions options;
  options.port = network.server->Port();
  std::mutex lock;
  std::set<int> seen;
  std::atomic<int> fetched{0}, numbers{0}, answered{0};
  network.services->Add("", options.port, [&](const NQ_TDict& request) {
    const int number = FirstOf(request).AsInt32();
    const std::lock_guard guard(lock);
    EXPECT_TRUE(seen.insert(number).second) << number;
    return NQ_TAny(NQ_TString::Format("%d", number + 1));
  });
  network.services->Add("", "CFS",
                        [&](const NQ_TDict&) { return NQ_TAny(NQ_TTree().Add("fetch", NQ_TAny(++fetched))); });
  const auto before = NQM_TClient::SetTransport(std::move(network.transport));
  CFS_TProxy proxy;
  proxy.SetConnectionAddress("", "CFS", options.port, TLocationMode_Default);
  proxy.AddCacheRoot("Resources");
  const auto provider = std::make_shared<TNameProxyProvider>();

  // Whether there was an answer. It is the right one, and kept until it is cleared; or nothing is kept.
  const auto asks = [&](TName& names) {
    const int number = ++numbers;
    names.SetServerQuery("n", "localhost", NQ_TString::Format("#%d", options.port), "Count",
                         NQ_TDict().Add("P1", number));
    NQ_TString text;
    const bool ok = names.Resolve("<n/>", text);
    EXPECT_EQ(text, ok ? NQ_TString::Format("%d", number + 1) : NQ_TString("<n/>"));
    EXPECT_EQ(names.HasValue("n"), ok);
    if (!ok) return false;
    EXPECT_TRUE(names.Resolve("<n/>", text));  // the service would note that it is asked again
    names.ClearCache("n");
    return true;
  };
  const auto reads = [&] {
    const std::string cause = TNetwork::Cause([&] {
      const NQ_TAny& value = proxy.GetCached("Resources/fetch", false);
      EXPECT_EQ(value, NQ_TAny(fetched.load()));
    });
    EXPECT_TRUE(cause.empty() || cause == "unreachable") << cause;
    return cause.empty();
  };
  std::vector<TName> registries(kThreads);
  std::vector<std::thread> threads;
  for (TName& names : registries) {
    names.SetTNameProxyProvider(provider);
    names.Define("n", TName::TName_TypeString, TName::TName_LookupServerQuery);
    threads.emplace_back([&] {
      for (int round = 0; round < kQueriesOfThread; ++round) {
        while (!asks(names)) {
        }
        while (!reads()) {
        }
        ++answered;
        answered.notify_all();
      }
    });
  }
  for (int goal = 1000; goal < kThreads * kQueriesOfThread; goal += 1000) {
    for (int count = answered; count < goal; count = answered) answered.wait(count);
    network.server.reset();
    network.server = std::make_unique<NQM_TGrpcServer>(network.services, options);
  }
  for (auto& thread : threads) thread.join();
  for (TName& names : registries) EXPECT_TRUE(asks(names));  // from this thread: no lock is left
  NQM_TClient::SetTransport(before);
}

}  // namespace
}  // namespace grpc_test
