// Faults of the network and of the other side, on real connections of this computer.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>

#include "CFS/Server/cfs_tproxy.h"
#include "MiddlewareGrpc/Support.h"
#include "NQ_TBoxed.h"
#include "TName.h"
#include "TNameProxyProvider.h"

namespace grpc_test {
namespace {

NQ_TAny One(const NQ_TDict&) { return 1; }

/// A service that says when it has begun, and answers when it is told to. It must outlive the server: a call may begin
/// after its caller has given up.
class TSlow {
 public:
  NQ_TAny operator()(const NQ_TDict&) {
    begun_.Happen();
    released_.Await();
    return 1;
  }
  void AwaitBegin() const { begun_.Await(); }
  void Release() { released_.Happen(); }

 private:
  TEvent begun_;
  TEvent released_;
};

NQM_TService Calling(TSlow& slow) {
  return [&slow](const NQ_TDict& request) { return slow(request); };
}

TEST(GrpcDrills, ServerNotThere) {
  TNetwork network;
  network.services->Add("", "it", One);
  const NQM_TAddress address{"", "it", network.server->Port()};
  network.server.reset();
  EXPECT_EQ(TNetwork::Cause([&] { network.transport->Call(address, Request("Go"), 30s); }), "unreachable");
  EXPECT_EQ(TNetwork::Cause([&] {
              network.transport->Call({"no-such-host.invalid", "it", 1}, Request("Go"), 30s);
            }),
            "unreachable");
}

TEST(GrpcDrills, ServerStopsDuringACall) {
  TSlow slow;
  TNetwork network;
  network.services->Add("", "slow", Calling(slow));
  auto cause = std::async(std::launch::async, [&] { return network.CauseOf("slow", Request("Go")); });
  slow.AwaitBegin();
  auto stopped = std::async(std::launch::async, [&] { network.server->Stop(); });
  EXPECT_EQ(cause.get(), "unreachable");  // the service is still at work
  slow.Release();
  stopped.get();
}

TEST(GrpcDrills, AGracefulStopLetsCallsEnd) {
  TSlow slow;
  TNetwork network;
  network.services->Add("", "slow", Calling(slow));
  network.services->Add("", "it", One);
  auto cause = std::async(std::launch::async, [&] { return network.CauseOf("slow", Request("Go")); });
  slow.AwaitBegin();
  auto stopped = std::async(std::launch::async, [&] { network.server->Stop(1h); });
  while (network.CauseOf("it", Request("Go")).empty()) {  // until new calls are taken no more
  }
  slow.Release();
  EXPECT_EQ(cause.get(), "");
  stopped.get();
  network.server->Stop();  // once more does no harm
}

TEST(GrpcDrills, ReplyAfterTheDeadline) {
  TSlow slow;
  TNetwork network;
  network.services->Add("", "slow", Calling(slow));
  network.services->Add("", "it", One);
  EXPECT_EQ(network.CauseOf("slow", Request("Go"), 50ms), "deadline");
  EXPECT_EQ(network.CauseOf("it", Request("Go")), "");  // the late one holds up nobody
  slow.Release();
  EXPECT_EQ(network.CauseOf("it", Request("Go"), std::chrono::milliseconds::max()), "");
}

// More calls at a time than the server has threads for are refused; one after the other they are answered.
TEST(GrpcDrills, TooManyCallsAtATime) {
  NQM_TGrpcServerOptions options;
  options.maxThreads = 4;
  std::atomic<int> waiting{0};
  TEvent released;
  TNetwork network(options);
  network.services->Add("", "wait", [&](const NQ_TDict&) {
    ++waiting;
    released.Await();
    return NQ_TAny(1);
  });
  std::vector<std::future<std::string>> calls;
  std::atomic<bool> refused{false};
  for (int call = 0; call < 8; ++call)
    calls.push_back(std::async(std::launch::async, [&] {
      const std::string cause = network.CauseOf("wait", Request("Go"));
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
  EXPECT_TRUE(refused);
  network.services->Add("", "it", One);
  std::string cause = "refused";
  while (cause == "refused") cause = network.CauseOf("it", Request("Go"));  // until a thread is back from its reply
  EXPECT_EQ(cause, "");
}

// Requests at work have twice the bytes of one together; each gives its share back.
TEST(GrpcDrills, TooManyBytesAtATime) {
  NQM_TGrpcServerOptions options;
  options.limits.maxMessageBytes = 1'000'000;
  TNetwork network(options);
  TSlow slow[2];
  for (const int i : {0, 1}) network.services->Add("", i == 0 ? "first" : "second", Calling(slow[i]));
  network.services->Add("", "it", One);
  const auto large = [&](const char* service) {
    return network.CauseOf(service, Request("Go", NQ_TString(std::string(900'000, 'x'))));
  };
  auto first = std::async(std::launch::async, [&] { return large("first"); });
  slow[0].AwaitBegin();
  EXPECT_EQ(large("it"), "");
  auto second = std::async(std::launch::async, [&] { return large("second"); });
  slow[1].AwaitBegin();
  EXPECT_EQ(large("it"), "refused");
  EXPECT_EQ(network.CauseOf("it", Request("Go")), "");
  for (TSlow& each : slow) each.Release();
  EXPECT_EQ(first.get() + second.get(), "");
  EXPECT_EQ(large("it"), "");
}

// The reply is a value, but none that the caller can use.
TEST(GrpcDrills, ReplyOfTheWrongKind) {
  TNetwork network;
  const struct {
    const char* name;
    NQ_TAny reply;
    const char* thrown;
  } rows[] = {
      {"a number", 5, "CFS_EIllegalPath: "},
      {"a dictionary, no tree", NQ_TDict(), "CFS_EIllegalPath: "},
      {"an exception as a value", NQ_EException("x"), "CFS_EIllegalPath: "},
      {"null", NQ_TAny(), "CFS_EIllegalPath: "},
      {"illegal", NQ_TAny::Illegal(), "CFS_EValueNotSet: "},
      {"an empty tree", NQ_TTree(), "CFS_EIllegalPath: "},
  };
  const auto before = NQM_TClient::SetTransport(std::move(network.transport));
  for (const auto& row : rows) {
    network.services->Add("", "CFS", [&](const NQ_TDict&) { return row.reply; });
    CFS_TProxy proxy;
    proxy.SetConnectionAddress("", "CFS", network.server->Port(), TLocationMode_Default);
    proxy.AddCacheRoot("Resources");
    EXPECT_EQ(Thrown([&] { proxy.GetCached("Resources/a", true); }), row.thrown) << row.name;
  }
  NQM_TClient::SetTransport(before);
}

sockaddr_in Loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// Writes the bytes, and reads until the other side closes.
void Converse(int connection, const std::string& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const auto count = send(connection, bytes.data() + written, bytes.size() - written, MSG_NOSIGNAL);
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  shutdown(connection, SHUT_WR);
  char answer[4096];
  while (recv(connection, answer, sizeof answer, 0) > 0) {
  }
  close(connection);
}

const std::string kPreface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";

std::vector<std::string> Garbage() {
  base_test::TRandom random(3);
  std::string noise(100'000, '\0');
  for (char& byte : noise) byte = static_cast<char>(random.Below(256));
  return {"",
          "GET / HTTP/1.1\r\n\r\n",
          kPreface,
          noise,
          kPreface + noise,
          kPreface + std::string("\0\0\0\4\0\0\0\0\0", 9) + noise,
          kPreface + std::string("\xFF\xFF\xFF\1\5\0\0\0\1", 9) + noise};
}

TEST(GrpcDrills, MalformedBytesAtTheServersPort) {
  TNetwork network;
  network.services->Add("", "it", One);
  const sockaddr_in address = Loopback(network.server->Port());
  for (const std::string& bytes : Garbage()) {
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    Converse(connection, bytes);
    EXPECT_EQ(network.CauseOf("it", Request("Go")), "");
  }
}

TEST(GrpcDrills, MalformedBytesFromTheServersPort) {
  for (const std::string& bytes : Garbage()) {
    const int listening = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(listening, 5), 0);
    getsockname(listening, reinterpret_cast<sockaddr*>(&address), &size);
    std::thread server([&] {
      for (int connection; (connection = accept(listening, nullptr, nullptr)) >= 0;) Converse(connection, bytes);
    });
    NQM_TGrpcTransport transport;
    const NQM_TAddress where{"127.0.0.1", "it", ntohs(address.sin_port)};
    EXPECT_EQ(TNetwork::Cause([&] { transport.Call(where, Request("Go"), 30s); }), "unreachable");
    shutdown(listening, SHUT_RDWR);
    server.join();
    close(listening);
  }
}

/// Answers {"P1": n} with the text of n + 1, and notes every n that it sees.
class TCounting {
 public:
  NQ_TAny operator()(const NQ_TDict& request) {
    const int number = FirstOf(request).AsInt32();
    const std::lock_guard guard(lock_);
    ++seen_[number];
    return NQ_TString::Format("%d", number + 1);
  }
  int Most() {
    const std::lock_guard guard(lock_);
    int most = 0;
    for (const auto& [number, times] : seen_) most = std::max(most, times);
    return most;
  }

 private:
  std::mutex lock_;
  std::map<int, int> seen_;
};

constexpr int kThreads = 8;
constexpr int kQueriesOfThread = 1250;

/// What the threads have done so far; anybody may wait for more.
class TProgress {
 public:
  void Answered() {
    const std::lock_guard guard(lock_);
    ++answered_;
    more_.notify_all();
  }
  /// Waits for so many more answers; false when they were the last ones.
  bool AwaitMore(int count) {
    std::unique_lock guard(lock_);
    const int goal = std::min(answered_ + count, kThreads * kQueriesOfThread);
    more_.wait(guard, [&] { return answered_ >= goal; });
    return answered_ < kThreads * kQueriesOfThread;
  }

 private:
  std::mutex lock_;
  std::condition_variable more_;
  int answered_ = 0;
};

/// A registry whose name "n" asks the service at the port.
class TQuery {
 public:
  TQuery(std::uint16_t port, const std::shared_ptr<TNameProxyProvider>& provider)
      : server_(NQ_TString::Format("#%d", port)) {
    names_.SetTNameProxyProvider(provider);
    names_.Define("n", TName::TName_TypeString, TName::TName_LookupServerQuery);
  }
  /// Asks once; whether there was an answer. It is the right one, and kept until it is cleared; or nothing is kept.
  bool Ask(int number) {
    NQ_TDict parameters;
    parameters.Add("P1", number);
    names_.SetServerQuery("n", "localhost", server_, "Count", parameters);
    NQ_TString text;
    const bool answered = names_.Resolve("<n/>", text);
    EXPECT_EQ(text, answered ? NQ_TString::Format("%d", number + 1) : NQ_TString("<n/>"));
    EXPECT_EQ(names_.HasValue("n"), answered);
    if (answered) {
      EXPECT_TRUE(names_.Resolve("<n/>", text));  // the service would note that it is asked again
      names_.ClearCache("n");
    }
    return answered;
  }

 private:
  NQ_TString server_;
  TName names_;
};

// 10,000 queries from 8 threads through one provider, and as many reads of a proxy that keeps what it fetched, while
// the server restarts: each attempt has the right answer or fails as unreachable, and none reaches the service twice.
TEST(GrpcDrills, QueriesWhileTheServerRestarts) {
  TNetwork network;
  NQM_TGrpcServerOptions options;
  options.port = network.server->Port();
  TCounting counting;
  std::atomic<int> fetched{0};
  network.services->Add("", options.port, [&](const NQ_TDict& request) { return counting(request); });
  network.services->Add("", "CFS", [&](const NQ_TDict&) {
    NQ_TTree tree;
    tree.Add("fetch", NQ_TAny(++fetched));
    return NQ_TAny(tree);
  });
  const auto before = NQM_TClient::SetTransport(std::move(network.transport));
  CFS_TProxy proxy;
  proxy.SetConnectionAddress("", "CFS", options.port, TLocationMode_Default);
  proxy.AddCacheRoot("Resources");
  const auto provider = std::make_shared<TNameProxyProvider>();
  std::deque<TQuery> queries;  // one for each thread
  while (queries.size() < kThreads) queries.emplace_back(options.port, provider);

  TProgress progress;
  std::atomic<int> numbers{0};
  std::atomic<int> failed{0};
  const auto answered = [&](bool result) {
    failed += result ? 0 : 1;
    return result;
  };
  const auto read = [&] {
    const std::string cause = TNetwork::Cause([&] {
      const NQ_TAny& value = proxy.GetCached("Resources/fetch", false);
      EXPECT_EQ(value, NQ_TAny(fetched.load()));
    });
    EXPECT_TRUE(cause.empty() || cause == "unreachable") << cause;
    return cause.empty();
  };
  std::vector<std::thread> threads;
  for (TQuery& query : queries)
    threads.emplace_back([&] {
      for (int round = 0; round < kQueriesOfThread; ++round) {
        while (!answered(query.Ask(++numbers))) {
        }
        while (!answered(read())) {
        }
        progress.Answered();
      }
    });
  int restarts = 0;
  while (progress.AwaitMore(1000)) {
    network.server.reset();
    network.server = std::make_unique<NQM_TGrpcServer>(network.services, options);
    ++restarts;
  }
  for (auto& thread : threads) thread.join();
  for (TQuery& query : queries) EXPECT_TRUE(query.Ask(++numbers));  // from this thread: no lock is left
  NQM_TClient::SetTransport(before);
  EXPECT_GE(restarts, 5);
  EXPECT_LE(counting.Most(), 1);
  RecordProperty("failed_attempts", failed);
}

}  // namespace
}  // namespace grpc_test
