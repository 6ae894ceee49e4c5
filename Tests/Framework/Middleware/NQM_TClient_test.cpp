#include "NQM_TClient.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "Middleware/Support.h"
#include "NQM_ECallFailed.h"
#include "NQ_TBoxed.h"
#include "NQ_TSocket.h"
#include "Services/J_TProxy.h"

namespace middleware_test {
namespace {

using namespace std::chrono_literals;

/// A transport that says what it was asked for.
class TRecorder final : public NQM_ITransport {
 public:
  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override {
    return NQ_TAny(NQ_TString(Printed(address.Text()) + " mode " + std::to_string(address.mode) + " " +
                              Printed(request) + " " + std::to_string(timeout.count()) + " ms"));
  }
};

TEST(NQM_TClient, SendsWhatItIsGivenWhereItIsTold) {
  const auto before = NQM_TClient::SetTransport(std::make_shared<TRecorder>());
  NQM_TClient client;
  client.SetConnectionAddress("srv1", 8088);
  EXPECT_EQ(Printed(client.Call(NQ_TDict().Add("M", "Go").Add("Named", 5))),
            "srv1:8088 mode 0 {M = Go, Named = 5} 30000 ms");
  client.SetTimeout(250ms);
  for (const auto timeout : {0ms, -1ms}) EXPECT_NE(Thrown([&] { client.SetTimeout(timeout); }), "");
  client.SetConnectionAddress("srv2", "CFS", 0, TLocationMode_Default);
  EXPECT_EQ(Printed(client.Call("[]", "a/b", false)), "CFS@srv2 mode 0 {M = [], P1 = a/b, P2 = 0} 250 ms");
  client.SetConnectionAddress("", "FS", 99, static_cast<TLocationMode>(2));
  EXPECT_EQ(Printed(client.Call("Query", 1, 2.5, NQ_TAny::Illegal())),
            "FS@localhost:99 mode 2 {M = Query, P1 = 1, P2 = 2.5, P3 = (illegal)} 250 ms");
  NQM_TClient::SetTransport(before);
}

// Clients with services of their own do not see those of the process, nor each other's.
TEST(NQM_TClient, MayHaveATransportOfItsOwn) {
  const TOffered ofProcess("Jobs", [](auto&) { return NQ_TAny("the process's"); });
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([t] {
      const auto services = std::make_shared<NQM_TServices>();
      services->Add("", "Jobs", [t](auto&) { return NQ_TAny(t); });
      J_TProxy jobs;
      jobs.Client().SetConnectionAddress("", "Jobs", 0, TLocationMode_Default);
      jobs.Client().SendThrough(services);
      for (int round = 0; round < 100; ++round) ASSERT_EQ(jobs.Client().Call(NQ_TDict{{"M", "Who"}}), NQ_TAny(t));
      jobs.Client().SendThrough(nullptr);
      EXPECT_EQ(jobs.Client().Call(NQ_TDict{{"M", "Who"}}), NQ_TAny("the process's"));
    });
  for (auto& thread : threads) thread.join();
}

// The reply stays what it was, whatever the service throws.
TEST(NQM_TClient, FailuresSayWhatWasCalledAndWhere) {
  const std::string failed = "NQM_ECallFailed: Calling \"Go\" at Failing@localhost: ";
  const std::string data = " [{Method = Go, Address = Failing@localhost, Cause = ";
  const struct {
    std::string thrown;
    NQM_TService service;
  } rows[] = {
      {failed + "this process offers no such service" + data + "no service}]", nullptr},
      {failed + "disk full" + data + "service failed}]",
       [](auto&) -> NQ_TAny { throw std::runtime_error("disk full"); }},
      {failed + "an unknown exception" + data + "service failed}]", [](auto&) -> NQ_TAny { throw 5; }},
      {"NQ_ENoMatchingTreeKey: where is it (",
       [](auto&) -> NQ_TAny { nq::Throw(NQ_ENoMatchingTreeKey("where is it")); }},
  };
  NQM_TClient client;
  client.SetConnectionAddress("", "Failing", 0, TLocationMode_Default);
  for (const auto& row : rows) {
    NQM_TServices::OfProcess()->Add("", "Failing", row.service);
    NQ_TAny reply("before");
    try {
      client.Call(NQ_TDict().Add("M", "Go"), reply);
      ADD_FAILURE() << row.thrown;
    } catch (const NQ_EException& error) {
      EXPECT_EQ(Printed(error).substr(0, row.thrown.size()), row.thrown);
    }
    EXPECT_EQ(Printed(reply), "before");
  }
  NQM_TServices::OfProcess()->Remove("", "Failing");
  EXPECT_EQ(Thrown([] { NQM_TClient().Call(NQ_TDict()); }),
            "NQM_ECallFailed: Calling \"\" at localhost: the client has neither a port nor a service name");
}

TEST(NQM_ECallFailed, ShowsTheBeginningOfAMethod) {
  const NQ_TString method(std::string(1000, 'x'));
  const NQM_ECallFailed failure({"h", "S"}, NQ_TDict().Add("M", method), NQM_ECallFailed::kDeadline, "late");
  EXPECT_EQ(failure.NQ_Message().Length(), 200 + NQ_TString("Calling \"\" at S@h: late").Length());
  EXPECT_EQ(NQM_ECallFailed().Cause(), "");
}

const rows_test::RowFile file("Middleware/NQM_TServices.txt", {}, [](const rows_test::Row& row) {
  NQM_TServices services;
  const auto saying = [](const char* text) { return [text](const NQ_TDict&) { return NQ_TAny(text); }; };
  services.Add("", "CFS", saying("local CFS"));
  services.Add("", 8088, saying("local 8088"));
  services.Add("Other", "CFS", saying("other CFS"));
  services.Add("other", "FS", saying("replaced"));
  services.Add("OTHER", "FS", saying("other FS"));
  services.Add("", "gone", saying("gone"));
  services.Remove(NQ_TSocket::HostName(false), "gone");
  services.Add("", 1, saying("gone"));
  services.Remove("localhost", 1);
  const auto parts = rows_test::Pieces(row.text, " => ");
  const auto service = services.Find(Address(parts.at(0)));
  EXPECT_EQ(service == nullptr ? "nothing" : Printed((*service)({})), parts.at(1));
});

// Services come and go while others are called, and a service takes itself away.
TEST(NQM_TServices, MayChangeDuringCalls) {
  NQM_TServices services;
  std::atomic<int> answered{0};
  services.Add("", "once", [&](const NQ_TDict&) {
    services.Remove("", "once");
    return NQ_TAny(++answered);
  });
  services.Call({"", "once"}, {}, 1s);
  EXPECT_EQ(services.Find({"", "once"}), nullptr);
  services.Add("", "stays", [&](const NQ_TDict&) { return NQ_TAny(++answered); });
  std::vector<std::thread> threads;
  for (std::uint16_t t = 1; t <= 4; ++t)
    threads.emplace_back([&services, t] {
      for (int round = 0; round < 500; ++round) {
        services.Add("", t, [](const NQ_TDict&) { return NQ_TAny(); });
        services.Call({"", "stays"}, {}, 1s);
        services.Call({"", "", t}, {}, 1s);
        services.Remove("", t);
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(answered, 2001);
}

}  // namespace
}  // namespace middleware_test
