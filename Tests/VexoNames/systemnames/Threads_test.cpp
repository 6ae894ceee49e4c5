// One VexoNameUtils for many threads.
#include <thread>
#include <vector>

#include "systemnames/Office.h"

using system_test::Names;
using system_test::Office;
using system_test::Resolved;

namespace {

std::atomic<std::int64_t> now{0};  // nanoseconds

constexpr char kReplies[] = R"({
  "cfs ServerTreeName": "S",
  "cfs /Resources/S/TemplateNames/global": "G1,G2",
  "cfs /Resources/S/TemplateNames/user": "U1",
  "cfs /Resources/G1": {"$tree": {"jobid": {"$tree": {"Type": "Name"}}, "job": {"$tree": {"Type": "Name"}},
    "jobcustomer": {"$tree": {"Type": "Name"}}, "filespec": {"$tree": {"Type": "URL"}}}},
  "cfs /Resources/G2": {"$tree": {"file": {"$tree": {"Type": "Name"}}, "customerinfo1": {"$tree": {"Type": "Name"}},
    "vxtpr:productid": {"$tree": {"Type": "Name"}}}},
  "cfs /Resources/U1": {"$tree": {"id": {"$tree": {"Type": "Name"}}, "taskowner": {"$tree": {"Type": "Name"}},
    "containername": {"$tree": {"Type": "Name"}}}},
  "jobs jinfo_cpp": {"JID": "J1", "Name": "Book", "Customer": "C1"},
  "jobs cinfo_cpp": {"Info1": "i"},
  "jobs jpgetcpp": [["a", "S", 0, "1"]],
  "products GetProductPartFromURL": {"p.prodid": "P1", "p.id": "PP"},
  "products LoadProductParameters": {"b": "2"},
  "containers FindParentContainer": {"Name": "c"},
  "accounts GetUser": {"EMail": "ann@x"}})";

TEST(SystemNameThreads, EachWithNamesOfItsOwn) {
  Office office(kReplies);
  office.system.SetClock([] { return now.load(); });
  constexpr int kThreads = 8;
  constexpr int kRounds = names_test::Scaled(50);
  constexpr int kPeriods = 3;
  const auto work = [&](int thread) {
    for (int round = 0; round < kRounds; ++round) {
      const std::string file = "file" + std::to_string(thread) + std::to_string(round);
      const AT_TDictTicket ticket =
          system_test::Ticket(R"({"TicketID": "T", "JobID": "J1", "WorkflowParameters": {"p": "v"}, "InputURLs": [)"
                              R"({"$url": "file://h/d/)" +
                              file + "\"}]}");
      Names names("");
      office.system.DefineVexoNames(names, ticket, 1);
      office.system.ResetVexoNames(names, ticket, 1);
      EXPECT_EQ(Resolved(names,
                         "<job/> <customerinfo1/> <file/> <id/> <taskowner/> <containername/> "
                         "<vxtpr:productid/> <jp.a/> <pp.b/> <wfp.p/>"),
                "Book i " + file + " T ann@x c P1 1 2 v");
    }
  };
  for (int period = 0; period < kPeriods; ++period) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
    now += 3'000'000'000;
  }
  for (const char* const once : {"cfs ServerTreeName", "cfs /Resources/G1 zipped", "cfs /Resources/G2 zipped"})
    EXPECT_EQ(office.Count(once), 1) << once;
  EXPECT_EQ(office.Count("cfs /Resources/U1 zipped"), kPeriods);
  EXPECT_EQ(office.Count("jobs jinfo_cpp"), kThreads * kRounds * kPeriods);
}

}  // namespace
