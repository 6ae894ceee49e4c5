// One VexoNameUtils for many threads.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "systemnames/Office.h"

using system_test::A;
using system_test::D;
using system_test::Names;
using system_test::Office;
using system_test::Resolved;
using system_test::T;
using system_test::U;

namespace {

std::atomic<std::int64_t> now{0};  // nanoseconds

NQ_TTree Records(std::initializer_list<std::pair<const char*, const char*>> types) {
  NQ_TTree records;
  for (const auto& [name, type] : types) records.Add(name, T({{"Type", type}}));
  return records;
}

TEST(SystemNameThreads, EachWithNamesOfItsOwn) {
  Office office;
  office.replies = {
      {"cfs ServerTreeName", "S"},
      {"cfs /Resources/S/TemplateNames/global", "G1,G2"},
      {"cfs /Resources/S/TemplateNames/user", "U1"},
      {"cfs /Resources/G1",
       Records({{"jobid", "Name"}, {"job", "Name"}, {"jobcustomer", "Name"}, {"filespec", "URL"}})},
      {"cfs /Resources/G2", Records({{"file", "Name"}, {"customerinfo1", "Name"}, {"vxtpr:productid", "Name"}})},
      {"cfs /Resources/U1", Records({{"id", "Name"}, {"taskowner", "Name"}, {"containername", "Name"}})},
      {"jobs jinfo_cpp", D({{"JID", "J1"}, {"Name", "Book"}, {"Customer", "C1"}})},
      {"jobs cinfo_cpp", D({{"Info1", "i"}})},
      {"jobs jpgetcpp", A({A({"a", "S", 0, "1"})})},
      {"products GetProductPartFromURL", D({{"p.prodid", "P1"}, {"p.id", "PP"}})},
      {"products LoadProductParameters", D({{"b", "2"}})},
      {"containers FindParentContainer", D({{"Name", "c"}})},
      {"accounts GetUser", D({{"EMail", "ann@x"}})},
  };
  office.system.SetClock([] { return now.load(); });
  constexpr int kThreads = 8;
  constexpr int kRounds = names_test::Scaled(50);
  constexpr int kPeriods = 3;
  for (int period = 0; period < kPeriods; ++period) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
      threads.emplace_back([&, i] {
        for (int round = 0; round < kRounds; ++round) {
          const std::string file = "file" + std::to_string(i) + std::to_string(round);
          const AT_TDictTicket ticket(D({{"TicketID", "T"},
                                         {"JobID", "J1"},
                                         {"InputURLs", A({U(("file://h/d/" + file).c_str())})},
                                         {"WorkflowParameters", D({{"p", "v"}})}}));
          Names names("");
          office.system.DefineVexoNames(names, ticket, 1);
          office.system.ResetVexoNames(names, ticket, 1);
          EXPECT_EQ(Resolved(names,
                             "<job/> <customerinfo1/> <file/> <id/> <taskowner/> <containername/> <vxtpr:productid/> "
                             "<jp.a/> <pp.b/> <wfp.p/>"),
                    "Book i " + file + " T ann@x c P1 1 2 v");
        }
      });
    for (std::thread& thread : threads) thread.join();
    now += 3'000'000'000;
  }
  EXPECT_EQ(office.Count("cfs ServerTreeName"), 1);
  EXPECT_EQ(office.Count("cfs /Resources/G1 zipped"), 1);
  EXPECT_EQ(office.Count("cfs /Resources/G2 zipped"), 1);
  EXPECT_EQ(office.Count("cfs /Resources/U1 zipped"), kPeriods);
  EXPECT_EQ(office.Count("jobs jinfo_cpp"), kThreads * kRounds * kPeriods);
}

// The file is read once, by whichever thread comes first.
TEST(SystemNameThreads, OneTNameWithLiveParameters) {
  const std::string path = testing::TempDir() + "live" + std::to_string(getpid()) + ".xml";
  std::ofstream(path) << "<r><a>1</a></r>";
  const NQ_TArray files = A({U(("file://" + path).c_str())});
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"--LiveXMLList--", files}, {"a", "v"}, {"b", "w"}})}}));
  Office office;
  Names names("text id");
  office.system.SetDebugLevel(1);
  for (int round = 0; round < names_test::Scaled(50); ++round) {
    system_test::Output output;
    office.system.ResetVexoNames(names, U("file://h/a"), ticket);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
      threads.emplace_back(
          [&, i] { EXPECT_EQ(Resolved(names, i % 2 == 0 ? "<wfp.a/>" : "<wfp.b/>"), i % 2 == 0 ? "1" : "w"); });
    for (std::thread& thread : threads) thread.join();
    const std::string log = output.Take();
    EXPECT_EQ(log.find("Resolving XML"), log.rfind("Resolving XML")) << log;
    EXPECT_NE(log.find("Resolving XML"), log.npos);
  }
  std::filesystem::remove(path);
}

}  // namespace
