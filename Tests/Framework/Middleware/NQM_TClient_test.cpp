#include "NQM_TClient.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "Middleware/Support.h"
#include "NQM_ECallFailed.h"
#include "NQ_TBoxed.h"
#include "NQ_TPacker.h"
#include "NQ_TSocket.h"

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

/// Puts a transport in place for as long as it lives.
class TChosenTransport {
 public:
  explicit TChosenTransport(std::shared_ptr<NQM_ITransport> transport)
      : before_(NQM_TClient::SetTransport(std::move(transport))) {}
  ~TChosenTransport() { NQM_TClient::SetTransport(before_); }
  TChosenTransport(const TChosenTransport&) = delete;
  TChosenTransport& operator=(const TChosenTransport&) = delete;

 private:
  std::shared_ptr<NQM_ITransport> before_;
};

TEST(NQM_TClient, SendsWhatItIsGivenWhereItIsTold) {
  const TChosenTransport chosen(std::make_shared<TRecorder>());
  NQM_TClient client;
  client.SetConnectionAddress("srv1", 8088);
  NQ_TDict request;
  request.Add("M", "Go").Add("Named", 5);
  NQ_TAny reply;
  client.Call(request, reply);
  EXPECT_EQ(Printed(reply), "srv1:8088 mode 0 {M = Go, Named = 5} 30000 ms");
  client.SetTimeout(250ms);
  EXPECT_EQ(Printed(client.Call(request)), "srv1:8088 mode 0 {M = Go, Named = 5} 250 ms");
  client.SetConnectionAddress("srv2", "CFS", 0, TLocationMode_Default);
  EXPECT_EQ(Printed(client.Call("[]", "a/b", false)), "CFS@srv2 mode 0 {M = [], P1 = a/b, P2 = 0} 250 ms");
  client.SetConnectionAddress("", "FS", 99, static_cast<TLocationMode>(2));
  EXPECT_EQ(Printed(client.Call("Query", 1, 2.5, NQ_TAny::Illegal())),
            "FS@localhost:99 mode 2 {M = Query, P1 = 1, P2 = 2.5, P3 = (illegal)} 250 ms");
}

TEST(NQM_TClient, RefusesTimeoutsThatEndBeforeTheyBegin) {
  NQM_TClient client;
  for (const auto timeout : {0ms, -1ms}) EXPECT_NE(Thrown([&] { client.SetTimeout(timeout); }), "");
  EXPECT_EQ(client.Timeout(), NQM_TClient::kDefaultTimeout);
}

// The reply stays what it was, whatever the service throws.
TEST(NQM_TClient, FailuresSayWhatWasCalledAndWhere) {
  const struct {
    const char* name;
    NQM_TService service;
    const char* thrown;
    const char* cause;  // null: the service's own exception
  } rows[] = {
      {"none offered", nullptr,
       "NQM_ECallFailed: Calling \"Go\" at Failing@localhost: this process offers no such service", "no service"},
      {"own exception", [](auto&) -> NQ_TAny { nq::Throw(NQ_ENoMatchingTreeKey("where is it")); },
       "NQ_ENoMatchingTreeKey: where is it", nullptr},
      {"standard exception", [](auto&) -> NQ_TAny { throw std::runtime_error("disk full"); },
       "NQM_ECallFailed: Calling \"Go\" at Failing@localhost: disk full", "service failed"},
      {"something else", [](auto&) -> NQ_TAny { throw 5; },
       "NQM_ECallFailed: Calling \"Go\" at Failing@localhost: an unknown exception", "service failed"},
  };
  NQM_TClient client;
  client.SetConnectionAddress("", "Failing", 0, TLocationMode_Default);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    NQM_TServices::OfProcess()->Add("", "Failing", row.service);
    NQ_TDict request;
    request.Add("M", "Go");
    NQ_TAny reply("before");
    EXPECT_EQ(Thrown([&] { client.Call(request, reply); }), row.thrown);
    EXPECT_EQ(Printed(reply), "before");
    try {
      client.Call(request);
    } catch (const NQM_ECallFailed& error) {
      EXPECT_EQ(Printed(error.NQ_Data()),
                std::string("{Method = Go, Address = Failing@localhost, Cause = ") + row.cause + "}");
    } catch (const NQ_EException&) {
      EXPECT_EQ(row.cause, nullptr);
    }
  }
  NQM_TServices::OfProcess()->Remove("", "Failing");
  NQM_TClient nowhere;
  EXPECT_EQ(Thrown([&] { nowhere.Call(NQ_TDict()); }),
            "NQM_ECallFailed: Calling \"\" at localhost: the client has neither a port nor a service name");
}

TEST(NQM_TClient, AFailureTravelsPacked) {
  NQ_TDict request;
  request.Add("M", NQ_TString(std::string(1000, 'x')));
  const NQM_ECallFailed failure({"h", "S"}, request, NQM_ECallFailed::kDeadline, "late");
  EXPECT_EQ(failure.NQ_Message().Length(), 200 + NQ_TString("Calling \"\" at S@h: late").Length());
  NQ_TPacker packer;
  failure.NQ_Pack(packer);
  NQM_ECallFailed again;
  EXPECT_EQ(again.Cause(), "");
  NQ_TUnpacker unpacker(packer.Bytes());
  again.NQ_Unpack(unpacker);
  EXPECT_EQ(again, failure);
  EXPECT_EQ(again.Cause(), NQM_ECallFailed::kDeadline);
}

TEST(NQM_TServices, AreFoundByNameOrPort) {
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
  const struct {
    NQM_TAddress address;
    const char* answer;  // null: not found
  } rows[] = {
      {{"", "CFS"}, "local CFS"},
      {{"LocalHost", "CFS"}, "local CFS"},
      {{NQ_TSocket::HostName(false), "CFS", 8088}, "local CFS"},
      {{"", "", 8088}, "local 8088"},
      {{"other", "CFS"}, "other CFS"},
      {{"other", "FS", 9}, "other FS"},
      {{"other", "", 8088}, nullptr},
      {{"", "cfs"}, nullptr},
      {{"", "FS"}, nullptr},
      {{"", "gone"}, nullptr},
      {{"", "", 1}, nullptr},
  };
  for (const auto& row : rows) {
    const auto service = services.Find(row.address);
    EXPECT_EQ(service == nullptr ? "nothing" : Printed((*service)({})), row.answer == nullptr ? "nothing" : row.answer)
        << row.address.Text();
  }
}

// Services come and go while others are called, and a service takes itself away.
TEST(NQM_TServices, MayChangeDuringCalls) {
  NQM_TServices services;
  std::atomic<int> answered{0};
  services.Add("", "once", [&](const NQ_TDict&) {
    services.Remove("", "once");
    ++answered;
    return NQ_TAny();
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
