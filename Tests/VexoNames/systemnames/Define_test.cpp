// Definitions once read, logs, and preparing the library.
#include <cstring>

#include "systemnames/Initialization.h"
#include "systemnames/Office.h"

using system_test::Dict;
using system_test::Names;
using system_test::Office;
using system_test::Output;

namespace {

constexpr char kConfiguration[] = R"({
  "cfs ServerTreeName": "S",
  "cfs /Resources/S/TemplateNames/global": "G1,G2",
  "cfs /Resources/S/TemplateNames/user": "U1",
  "cfs /Resources/G1": {"$tree": {"a": {"$tree": {"Type": "Name"}}}},
  "cfs /Resources/G2": {"$tree": {"b": {"$tree": {"Type": "Name"}}}},
  "cfs /Resources/U1": {"$tree": {"u": {"$tree": {"Type": "Name"}}}}})";

TEST(SystemNameDefinitions, AskedForOnceAndKept) {
  Office office(kConfiguration);
  for (const char* const requests :
       {"cfs ServerTreeName; cfs /Resources/S/TemplateNames/global; cfs /Resources/G1 zipped; "
        "cfs /Resources/G2 zipped; cfs /Resources/S/TemplateNames/user; cfs /Resources/U1 zipped",
        "cfs /Resources/S/TemplateNames/global; cfs /Resources/S/TemplateNames/user"}) {
    Names names("");
    office.system.DefineSystemVexoNames(names, "");
    EXPECT_EQ(names_test::KeysText(names), "a b u");
    EXPECT_EQ(office.Asked(), requests);
  }
  EXPECT_EQ(office.system.ClearCache(), 3U);
  EXPECT_EQ(office.system.ClearCache(), 0U);
}

std::int64_t now = 0;  // nanoseconds

TEST(SystemNameDefinitions, GrowOldByThePolicy) {
  const struct {
    int policy;
    std::int64_t milliseconds;  // between two definitions
    int reads;                  // of a user's tree, in three definitions
  } rows[] = {{3000, 1000, 1}, {3000, 2999, 2}, {3000, 3000, 3}, {0, 100'000'000, 1}, {-1, 0, 3}, {1, 0, 1}};
  for (const auto& row : rows) {
    Office office(kConfiguration);
    EXPECT_EQ(office.system.GetCachingPolicy(), 3000);
    office.system.SetCachingPolicy(row.policy);
    office.system.SetClock([] { return now; });
    for (int i = 0; i < 3; ++i) {
      Names names("");
      office.system.DefineSystemVexoNames(names, "");
      EXPECT_EQ(names_test::KeysText(names), "a b u");
      now += row.milliseconds * 1'000'000;
    }
    EXPECT_EQ(office.Count("cfs /Resources/U1 zipped"), row.reads) << row.policy << " " << row.milliseconds;
    EXPECT_EQ(office.Count("cfs /Resources/G1 zipped"), 1);
  }
}

// Times are cut off.
TEST(SystemNameDefinitions, LogByLevel) {
  const char* const define = "Defining Global VexoNames\n";
  const char* const get = "CFS Get of /Resources/U1 took \n";
  const std::string rest = "Defined Global VexoNames in \nResetting VexoNames\nReset VexoNames in \n";
  const std::string logs[] = {"", define + std::string(get) + rest,
                              define + std::string("TName::Define: Template resource = U1\n") + get + rest};
  for (int level = 0; level <= 2; ++level) {
    Office office(kConfiguration);
    office.Reply("cfs /Resources/S/TemplateNames/global", 5);
    Names names("");
    EXPECT_EQ(office.system.SetDebugLevel(level), 0);
    Output output;
    office.system.DefineVexoNames(names, system_test::U("file:///"), Dict("{}"), Dict("{}"));
    std::string log = output.Take();
    for (const char* const time : {" took ", " in "})
      for (auto at = log.find(time); at != log.npos; at = log.find(time, at + 1))
        log.erase(at + std::strlen(time), log.find('\n', at) - at - std::strlen(time));
    EXPECT_EQ(log, logs[level]);
    EXPECT_EQ(office.system.SetDebugLevel(0), level);
  }
}

TEST(SystemNameRequests, KeptRepliesAreForgottenByAReset) {
  Office office(R"({"jobs m": "v"})");
  Names names("define q = 0 1");
  names.SetServerQuery("q", "localhost", "jobs", "m", NQ_TDict());
  for (int resets = 0; resets <= 2; ++resets) {
    if (resets > 0) office.system.ResetVexoNames(names, system_test::U("file:///"), Dict("{}"), Dict("{}"));
    for (const char* const asked : {"jobs m", ""}) {
      EXPECT_EQ(system_test::Resolved(names, "<q/>"), "v");
      EXPECT_EQ(office.Asked(), asked);
    }
  }
}

TEST(SystemNameRequests, AreRefusedWithALineThatNamesTheLimit) {
  const struct {
    int queries;
    std::int64_t milliseconds;
    const char* log;
  } rows[] = {{0, 1, "VexoNameUtils: More queries than the limit allows\n"},
              {1, 0, "VexoNameUtils: More time for queries than the limit allows\n"}};
  for (const auto& row : rows) {
    Office office(R"({"files Query": {"Type": "PDF"}})");
    Names names("text filetype");
    office.system.ResetVexoNames(names, system_test::U("file:///"), Dict("{}"), Dict("{}"));
    TNameLimits limits;
    limits.queries = row.queries;
    limits.queryMilliseconds = row.milliseconds;
    names.SetLimits(limits);
    names.SetDebugLevel(2);
    Output output;
    EXPECT_EQ(system_test::Resolved(names, "<filetype/>"), "UNKNOWN");
    EXPECT_NE(output.Take().find(row.log), std::string::npos);
    EXPECT_EQ(office.Asked(), "");
  }
}

std::string called;
bool secondSucceeds = false;

TEST(SystemNameInitialization, StopsAtAFailureAndBeginsAnew) {
  constexpr NQ_TInitialization kFunctions[] = {[] { return (called += '1', true); },
                                               [] { return (called += '2', secondSucceeds); },
                                               [] { return (called += '3', true); }};
  std::atomic<bool> done{false};
  EXPECT_FALSE(systemnames::InitializeAll(kFunctions, done));
  secondSucceeds = true;
  EXPECT_TRUE(systemnames::InitializeAll(kFunctions, done));
  EXPECT_TRUE(systemnames::InitializeAll(kFunctions, done));
  EXPECT_EQ(called, "12123");
  EXPECT_TRUE(__NQ_INITIALIZATION_FUNCTION_VexoNames__());
  for (const char* const name : {"NQ_TTree", "NQM_ECallFailed", "AT_TTicket"})
    EXPECT_NE(NQ_TClass::Find(name), nullptr) << name;
}

}  // namespace
