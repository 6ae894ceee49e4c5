#include <gtest/gtest.h>

#include "Middleware/Support.h"
#include "NQ_TArray.h"
#include "Services/A_TProxy.h"
#include "Services/CW_TProxy.h"
#include "Services/FS_TProxy.h"
#include "Services/J_TProxy.h"
#include "Services/P_TProxy.h"
#include "Services/TM_TProxy.h"

using middleware_test::Thrown;
using middleware_test::TOffered;

namespace {

TEST(Services, UserAccounts) {
  NQ_TDict account;
  NQ_TDict nameless;
  NQ_TDict unfit;
  account.Add("EMail", "ann@x");
  nameless.Add("EMail", NQ_TAny());
  unfit.Add("EMail", 5);
  const struct {
    NQ_TAny reply;
    const char* address;
    const char* error;
  } rows[] = {
      {account, "ann@x", ""},
      {nameless, "", ""},
      {NQ_TDict(), "", ""},
      {unfit, "", "NQ_EIllegalCastFromAny: EMail"},
      {"ann@x", "", "NQ_EIllegalCastFromAny: The account of ann@north"},
      {NQ_TAny(), "", "NQ_EIllegalCastFromAny: The account of ann@north"},
  };
  for (const auto& row : rows) {
    TOffered service("accounts", [&](const NQ_TDict&) { return row.reply; });
    A_TProxy accounts;
    accounts.SetConnectionAddress("", "accounts", 0, TLocationMode_Default);
    NQ_TString address;
    EXPECT_EQ(Thrown([&] { address = accounts.GetUser("ann@north").GetEMail(); }), row.error);
    EXPECT_STREQ(address.c_str(), row.address);
    EXPECT_EQ(service.Requests(), std::vector<std::string>{"{M = GetUser, P1 = ann@north}"});
  }
}

TEST(Services, EveryProxyReachesItsService) {
  J_TProxy jobs;
  P_TProxy products;
  CW_TProxy containers;
  FS_TProxy files;
  TM_TProxy tasks;
  TOffered service("office", [](const NQ_TDict&) { return NQ_TAny(7); });
  for (NQM_TClient* const client : {&jobs.Client(), &products.Client(), static_cast<NQM_TClient*>(&containers),
                                    static_cast<NQM_TClient*>(&files), static_cast<NQM_TClient*>(&tasks)}) {
    client->SetConnectionAddress("", "office", 0, TLocationMode_Default);
    EXPECT_EQ(client->Call("m", 1, 2).AsInt32(), 7);
  }
  EXPECT_EQ(service.Requests().size(), 5U);
}

}  // namespace
