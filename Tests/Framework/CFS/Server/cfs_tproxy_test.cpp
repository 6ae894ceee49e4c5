#include "CFS/Server/cfs_tproxy.h"

#include <gtest/gtest.h>

#include <thread>

#include "Middleware/Support.h"
#include "NQ_TTree.h"
#include "Rows.h"

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

// A path => what is read there => the requests of a proxy that reads nothing else.
const rows_test::RowFile file("CFS/Server/cfs_tproxy.txt", {}, [](const rows_test::Row& row) {
  TOffered server("CFS", Configuration);
  const auto proxy = Connected();
  const auto parts = rows_test::Pieces(row.text, " =>");
  for (const bool again : {false, true}) {  // then from what is kept
    EXPECT_EQ(' ' + Read(*proxy, parts.at(0).c_str()), parts.at(1));
    EXPECT_EQ(server.Requests(), again || parts.at(2).empty() ? TRequests{} : TRequests{parts.at(2).substr(1)});
  }
});

TEST(CFS_TProxy, FetchesWhatIsBelowARootOnce) {
  TOffered server("CFS", Configuration);
  const auto proxy = Connected();
  EXPECT_EQ(Read(*proxy, "/Resources/b/c") + Read(*proxy, "Resources/a"), "deep1");
  EXPECT_EQ(server.Requests().size(), 1U);
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
