#include "CFS/Server/cfs_tproxy.h"

#include <gtest/gtest.h>

#include <thread>

#include "Middleware/Support.h"
#include "NQ_TTree.h"

namespace middleware_test {
namespace {

using TRequests = std::vector<std::string>;

// Below each root but "plain" and "unset": a = 1, b/c = deep, b/none illegal, b/null null.
NQ_TAny Configuration(const NQ_TDict& request) {
  const NQ_TString root = *request.Get<NQ_TString>("P1");
  if (root == "unset") return NQ_TAny::Illegal();
  if (root == "plain") return NQ_TDict();
  NQ_TTree inner;
  inner.Add("c", "deep").Add("none", NQ_TAny(NQ_TAny::Illegal())).Add("null", NQ_TAny());
  return NQ_TTree().Add("a", 1).Add("b", inner);
}

std::unique_ptr<CFS_TProxy> Connected() {
  auto proxy = std::make_unique<CFS_TProxy>();
  proxy->SetConnectionAddress("", "CFS", 0, TLocationMode_Default);
  for (const char* root : {"/Resources", "Resources/Special/", "plain", "unset"}) proxy->AddCacheRoot(root);
  return proxy;
}

/// What a read gives or throws.
std::string Read(CFS_TProxy& proxy, const char* path, bool zipped = false) {
  try {
    return Printed(proxy.GetCached(path, zipped));
  } catch (const CFS_EConfigException& error) {
    EXPECT_EQ(error.NQ_Message(), "");
    EXPECT_GE(error.NQ_ExceptionFile().Find("CFS/Server/cfs_tproxy"), 0);
    return std::string(error.ClassName()) + " " + Printed(error.NQ_Data());
  }
}

TEST(CFS_TProxy, ReadsBelowItsRoots) {
  TOffered server("CFS", Configuration);
  const auto proxy = Connected();
  const std::string whole = "{a = 1, b = {c = deep, none = (illegal), null = (null)}}";
  const std::string asked = "{M = [], P1 = Resources, P2 = 0}";
  const struct {
    const char* path;
    std::string value;
    TRequests requests;
  } rows[] = {
      {"elsewhere/a", "(illegal)", {}},
      {"", "(illegal)", {}},
      {"ResourcesAndMore/a", "(illegal)", {}},
      {"/Resources/b/c", "deep", {asked}},
      {"Resources/a", "1", {}},
      {"/Resources", whole, {}},
      {"/Resources/", whole, {}},
      {"/Resources/b/null", "(null)", {}},
      {"/Resources/b/none", "CFS_EValueNotSet (null)", {}},
      {"/Resources/x", "CFS_EIllegalPath /Resources/x", {}},
      {"Resources/x/y", "CFS_EIllegalPath Resources/x/y", {}},
      {"/Resources/a/y", "CFS_EIllegalPath /Resources/a/y", {}},
      {"//Resources/a", "(illegal)", {}},
      {"/Resources/Special/a", "1", {"{M = [], P1 = Resources/Special, P2 = 0}"}},
      {"/Resources/Special", whole, {}},
      {"/plain", "{}", {"{M = [], P1 = plain, P2 = 0}"}},
      {"/plain/a", "CFS_EIllegalPath /plain/a", {}},
      {"/unset/a", "CFS_EValueNotSet (null)", {"{M = [], P1 = unset, P2 = 0}"}},
      {"/unset", "CFS_EValueNotSet (null)", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Read(*proxy, row.path), row.value) << row.path;
    EXPECT_EQ(server.Requests(), row.requests) << row.path;
  }
  EXPECT_EQ(&proxy->GetCached("elsewhere", true), &NQ_TAny::Illegal());
  proxy->ClearCache();
  EXPECT_EQ(Read(*proxy, "Resources/a", true), "1");
  EXPECT_EQ(server.Requests(), TRequests{"{M = [], P1 = Resources, P2 = 0, PZIPPED = 1}"});
}

TEST(CFS_TProxy, AFetchThatFailsIsNotKeptAndThreadsShareTheNext) {
  int calls = 0;
  const TOffered server("CFS", [&](const NQ_TDict& request) {
    if (++calls == 1) nq::Throw(NQ_EException("starting up"));
    return Configuration(request);
  });
  const auto proxy = Connected();
  EXPECT_EQ(Thrown([&] { proxy->GetCached("Resources/a", false); }), "NQ_EException: starting up");
  std::vector<std::thread> threads;  // others: no lock is left; they share one fetch
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int round = 0; round < 500; ++round) ASSERT_EQ(Read(*proxy, "Resources/b/c"), "deep");
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(calls, 2);
}

// A service of this process that reads through the proxy that asks it.
TEST(CFS_TProxy, MayBeReadDuringItsOwnFetch) {
  const auto proxy = Connected();
  TOffered server("CFS", [&](const NQ_TDict& request) {
    if (*request.Get<NQ_TString>("P1") == "Resources/Special") proxy->GetCached("Resources/a", false);
    return Configuration(request);
  });
  EXPECT_EQ(Read(*proxy, "Resources/Special/a"), "1");
  EXPECT_EQ(server.Requests().size(), 2U);
}

// However long a path is, looking for its root takes no longer than reading it.
TEST(CFS_TProxy, LongPathsAreRefusedFast) {
  const TOffered server("CFS", Configuration);
  const auto proxy = Connected();
  const std::string path = "Resources" + std::string(1'000'000, '/');
  EXPECT_EQ(Thrown([&] { proxy->GetCached(NQ_TString(path), false); }), "CFS_EIllegalPath: ");
  EXPECT_TRUE(proxy->GetCached(NQ_TString("x" + path), false).IsIllegal());
}

}  // namespace
}  // namespace middleware_test
