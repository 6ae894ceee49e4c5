// Clients that names share.
#include "NQ_TSocket.h"
#include "Support.h"
#include "TNameProxyProvider.h"

namespace names_test {
namespace {

TEST(ProxyProvider, SharesClientsByHostAndServer) {
  const std::string local = Text(NQ_TSocket::HostName(false));
  const struct {
    std::string host, server, otherHost, otherServer;
    bool shared;
  } rows[] = {
      {"h", "s", "h", "s", true},       {"Host", "s", "hOST", "s", true},
      {"", "s", local, "s", true},      {"h", "s", "h", "S", false},
      {"h", "#80", "h", "#080", false}, {"h", "s", "g", "s", false},
      {"h", "s", "hs", "", false},      {"", "s", "localhost", "s", local == "localhost"},
  };
  for (const auto& row : rows) {
    TNameProxyProvider provider;
    const auto client = provider.GetClient(S(row.host), S(row.server));
    EXPECT_EQ(client == provider.GetClient(S(row.otherHost), S(row.otherServer)), row.shared)
        << row.host << ' ' << row.server << ' ' << row.otherHost << ' ' << row.otherServer;
    EXPECT_EQ(client->ConnectionAddress().host, S(row.host));
  }
}

TEST(ProxyProvider, KeepsTheFirstClientUntilItIsForgotten) {
  TNameProxyProvider provider;
  const auto first = std::make_shared<NQM_TClient>();
  provider.AddClient("H", "s", first);
  provider.AddClient("h", "s", std::make_shared<NQM_TClient>());
  EXPECT_EQ(provider.GetClient("h", "s"), first);
  provider.AddClient("h", "other", nullptr);
  provider.AddClient("h", "s", nullptr);
  EXPECT_EQ(first.use_count(), 1);
  const auto made = provider.GetClient("h", "s");
  EXPECT_NE(made, first);
  provider.AddClient("h", "s", first);
  EXPECT_EQ(provider.GetClient("h", "s"), made);
  provider.AddClient("h", "s", nullptr);
  EXPECT_EQ(made.use_count(), 1);
}

// Counts those that are alive.
struct TCounted : NQM_TClient {
  static inline int alive = 0;
  static inline int made = 0;
  TCounted() { ++alive, ++made; }
  ~TCounted() override { --alive; }
  void Call(const NQ_TDict& request, NQ_TAny& reply) override { reply = request.At("M"); }
};

std::shared_ptr<NQM_TClient> MakeCounted(const NQ_TString&, const NQ_TString&) { return std::make_shared<TCounted>(); }

TEST(ProxyProvider, KeepsABoundedNumberOfThoseLastUsed) {
  constexpr int kMost = TNameProxyProvider::kMostClients;
  TNameProxyProvider provider(MakeCounted);
  const auto added = std::make_shared<TCounted>();
  provider.AddClient("added", "s", added);
  const auto often = provider.GetClient("often", "s").get();
  for (int i = 0; i < 3 * kMost; ++i) {
    provider.GetClient(NQ_TString::Format("h%d", i), "s");
    EXPECT_EQ(provider.GetClient("often", "s").get(), often);
    EXPECT_LE(TCounted::alive, kMost + 1);
  }
  EXPECT_EQ(TCounted::alive, kMost + 1);
  EXPECT_EQ(provider.GetClient("added", "s"), added);
  const int before = TCounted::made;
  for (int i = 2 * kMost + 1; i < 3 * kMost; ++i) provider.GetClient(NQ_TString::Format("h%d", i), "s");
  EXPECT_EQ(TCounted::made, before) << "the last ones are all there";
}

TEST(ProxyProvider, RefusesWhatIsNoAddress) {
  const std::string longest(253, 'h');
  const struct {
    std::string host, server, refused;
  } rows[] = {
      {longest, longest, ""},
      {"[::1]", "Job service", ""},
      {"müller", "#8088", ""},
      {longest + "h", "s", "The name of a host has at most 253 characters"},
      {"h", longest + "h", "The name of a server has at most 253 characters"},
      {"a b", "s", "The name of a host has no spaces or control characters"},
      {"a\u00A0b", "s", "The name of a host has no spaces or control characters"},
      {"a\u200Bb", "s", "The name of a host has no spaces or control characters"},
      {"a\n", "s", "The name of a host has no spaces or control characters"},
      {"a\x7F", "s", "The name of a host has no spaces or control characters"},
      {"h", "s\u0085", "The name of a server has no control characters"},
  };
  for (const auto& row : rows) {
    TNameProxyProvider provider(MakeCounted);
    const auto refused = [&](auto action) {
      EXPECT_EQ(Thrown(action), row.refused.empty() ? "" : "NQ_EException: " + row.refused) << row.host << row.server;
    };
    refused([&] { provider.GetClient(S(row.host), S(row.server)); });
    EXPECT_EQ(TCounted::alive, row.refused.empty() ? 1 : 0);
    refused([&] { provider.AddClient(S(row.host), S(row.server), std::make_shared<TCounted>()); });
    provider.AddClient(S(row.host), S(row.server), nullptr);
    EXPECT_EQ(TCounted::alive, 0);
  }
}

// A value that grows with each query, and leads to another host each time.
TEST(ProxyProvider, HoldsNothingOfHostsThatGrow) {
  const auto provider = std::make_shared<TNameProxyProvider>(MakeCounted);
  TName names;
  Do(names, "text grow = h; define q = 0 2");
  std::string hosts = "h";
  int asked = 0;
  for (int i = 0; i < 400; ++i, hosts += "h") {
    names.SetTNameProxyProvider(provider);
    names.SetValue("grow", S(hosts));
    names.SetServerQuery("q", "<grow/>", "s", "Get", NQ_TDict());
    asked += Resolved(names, "<q/>") == "Get" ? 1 : 0;
  }
  EXPECT_EQ(asked, 253);
  EXPECT_EQ(TCounted::alive, 253);
}

TEST(ProxyProvider, PassesOnWhatTheFactoryThrowsAndKeepsNothing) {
  int calls = 0;
  TNameProxyProvider provider([&](const NQ_TString& host, const NQ_TString&) -> std::shared_ptr<NQM_TClient> {
    if (++calls == 1) nq::Throw(NQ_EException("refused", host));
    return calls == 2 ? nullptr : std::make_shared<TCounted>();
  });
  const auto get = [&] { provider.GetClient("h", "s"); };
  EXPECT_THROW(get(), NQ_EException);
  EXPECT_EQ(Thrown(get), "NQ_EException: There is no client for the server");
  EXPECT_EQ(Thrown(get), "");
  EXPECT_EQ(Thrown(get), "");
  EXPECT_EQ(calls, 3);
  EXPECT_NE(TNameProxyProvider(TNameProxyProvider::TFactory()).GetClient("h", "s"), nullptr);
}

// Each with services of its own.
TEST(ProxyProvider, GivesEveryRegistryItsOwnServicesSideBySide) {
  struct TFake final : NQM_TClient {
    explicit TFake(int given) : number(given) {}
    void Call(const NQ_TDict&, NQ_TAny& reply) override { reply = number; }
    const int number;
  };
  OnThreads(4, [](int t) {
    TName names;
    names.SetTNameProxyProvider(std::make_shared<TNameProxyProvider>(
        [t](const NQ_TString&, const NQ_TString&) { return std::make_shared<TFake>(t); }));
    Do(names, "define q = 2 2");
    names.SetServerQuery("q", "h", "s", "Get", NQ_TDict());
    for (int i = 0; i < Scaled(200); ++i) EXPECT_EQ(Resolved(names, "<q/>"), std::to_string(t));
  });
}

TEST(ProxyProvider, IsUsedByManyThreads) {
  TNameProxyProvider provider;
  const auto client = provider.GetClient("h", "s");
  OnThreads(4, [&](int) {
    for (int i = 0; i < Scaled(2000); ++i) {
      const NQ_TString server = NQ_TString::Format("%d", i);
      EXPECT_EQ(provider.GetClient("H", "s"), client);
      EXPECT_NE(provider.GetClient("h", server), nullptr);
      provider.AddClient("h", server, nullptr);
    }
  });
}

}  // namespace
}  // namespace names_test
