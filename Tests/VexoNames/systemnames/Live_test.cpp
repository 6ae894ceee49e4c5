// Workflow parameters that XML files override while the job runs: alone, and used by several threads.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "systemnames/Office.h"

using system_test::Names;
using system_test::Office;
using system_test::Output;
using system_test::Resolved;

namespace {

class WorkflowParameters : public testing::Test {
 protected:
  WorkflowParameters() { std::filesystem::create_directories(folder_); }
  ~WorkflowParameters() override { std::filesystem::remove_all(folder_); }

  void Write(const char* name, const std::string& content) const { std::ofstream(folder_ + name) << content; }
  /// A ticket with these parameters; "FILE/" leads to the folder.
  AT_TDictTicket Ticket(std::string json) const {
    for (auto at = json.find("FILE/"); at != json.npos; at = json.find("FILE/"))
      json.replace(at, 5, "file://" + folder_);
    return system_test::Ticket(R"({"WorkflowParameters": )" + json + "}");
  }
  void Reset(TName& names, const AT_TTicket& ticket) {
    office_.system.ResetVexoNames(names, system_test::U("file://h/a"), ticket);
  }
  /// What the output has collected, without the folder.
  std::string Log(Output& output) const {
    std::string text = output.Take();
    for (auto at = text.find(folder_); at != text.npos; at = text.find(folder_)) text.erase(at, folder_.size());
    return text;
  }

  const std::string folder_ = testing::TempDir() + "WorkflowParameters" + std::to_string(getpid()) + "/";
  Office office_;
};

TEST_F(WorkflowParameters, LiveOnesAreReadOnceAndAgainAfterAReset) {
  Write("1", "<r><name>Customer</name><value>BETA</value><name>Due date</name><value>1</value></r>");
  Write("2", "<r><Customer>GAMMA</Customer><other>x</other></r>");
  Write("3", "<r>");
  const std::string broken =
      "Failed to update Workflow Parameter values from 'file://3'.  Caused by:\nNQ_EException: The XML file '3' is not "
      "well-formed: error at line 1 column 4:";
  const std::string unfit = "Looking up XML Workflow Parameters failed.  Caused by:\nNQ_EIllegalCastFromAny: ";
  const struct {
    const char* files;
    const char* result;
    std::string log{};  // how it begins
    const char* names = "text id";
  } rows[] = {
      {"[]", "ACME d v"},
      {R"([{"$url": "FILE/1"}])", "BETA 1 v"},
      {R"([{"$url": "FILE/1"}, {"$url": "FILE/2"}])", "GAMMA 1 v"},
      {R"([{"$url": "FILE/2"}, {"$url": "FILE/1"}])", "BETA 1 v"},
      {R"([{"$url": "FILE/1"}, {"$url": "FILE/3"}, {"$url": "FILE/2"}])", "GAMMA 1 v", broken},
      {"[5]", "! <wfp.Customer/> d v", unfit},
      {"\"x\"", "! <wfp.Customer/> d v", unfit},
      {"[]", "! <wfp.Customer/> <wfp.Due%20date/> <wfp.k/>",
       "Looking up XML Workflow Parameters failed.  Caused by:\nNQ_ENoSuchKey: id", ""},
  };
  for (const auto& row : rows) {
    const AT_TDictTicket ticket = Ticket(std::string(R"({"Customer": "ACME", "Due date": "d", "k": "v",)") +
                                         R"("--LiveXMLList--": )" + row.files + "}");
    Names names(row.names);
    for (int time = 1; time <= 2; ++time) {
      Reset(names, ticket);
      EXPECT_FALSE(names.HasValue("wfp.k"));
      EXPECT_FALSE(names.IsDefined("wfp.--LiveXMLList--"));
      Output output;
      EXPECT_EQ(Resolved(names, "<wfp.Customer/> <wfp.Due%20date/> <wfp.k/>"), row.result);
      const std::string log = Log(output);
      EXPECT_TRUE(log.starts_with(row.log) && log.empty() == row.log.empty()) << log;
    }
  }
}

TEST_F(WorkflowParameters, LogByLevel) {
  Write("1", "<r><a>1</a></r>");
  const AT_TDictTicket ticket = Ticket(R"({"--LiveXMLList--": [{"$url": "FILE/1"}], "a": "v"})");
  constexpr const char* kLines[] = {
      "Resolving XML Workflow Parameters\n", "Looking up XML Workflow Parameters in file://1\n",
      "Looking up Workflow Parameter a\n", "Updating Workflow Parameter a with value=1 from file://1\n"};
  const std::pair<int, std::vector<int>> rows[] = {{0, {}},        {1, {0}},       {2, {0, 1}},      {3, {0, 1}},
                                                   {4, {0, 1, 3}}, {5, {0, 1, 3}}, {6, {0, 1, 2, 3}}};
  for (const auto& [level, lines] : rows) {
    Names names("text id");
    Reset(names, ticket);
    office_.system.SetDebugLevel(level);
    Output output;
    EXPECT_EQ(Resolved(names, "<wfp.a/>"), "1");
    std::string expected;
    for (const int line : lines) expected += kLines[line];
    EXPECT_EQ(Log(output), expected) << level;
    Write("1", "<r><a>2</a></r>");
    EXPECT_EQ(Resolved(names, "<wfp.a/>"), "1") << "read once";
    Write("1", "<r><a>1</a></r>");
    office_.system.SetDebugLevel(0);
  }
}

TEST_F(WorkflowParameters, AValueThatCannotBeSetIsTold) {
  Write("1", "<r><a>1</a><b>2</b></r>");
  const AT_TDictTicket ticket = Ticket(R"({"--LiveXMLList--": [{"$url": "FILE/1"}], "a": "v", "b": "w"})");
  Names names("text id");
  Reset(names, ticket);
  names.UnDefine("wfp.a");
  Output output;
  EXPECT_EQ(Resolved(names, "<wfp.b/>"), "2");
  EXPECT_TRUE(Log(output).starts_with("Lookup of 'a' in file://1 failed\nNQ_ENoSuchKey: wfp.a"));
}

// The file is read once, by whichever thread comes first.
TEST_F(WorkflowParameters, ManyThreadsShareOneTName) {
  Write("1", "<r><a>1</a></r>");
  const AT_TDictTicket ticket = Ticket(R"({"--LiveXMLList--": [{"$url": "FILE/1"}], "a": "v", "b": "w"})");
  Names names("text id");
  for (int round = 0; round < names_test::Scaled(50); ++round) {
    Reset(names, ticket);
    office_.system.SetDebugLevel(1);
    Output output;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
      threads.emplace_back(
          [&, a = i % 2 == 0] { EXPECT_EQ(Resolved(names, a ? "<wfp.a/>" : "<wfp.b/>"), a ? "1" : "w"); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(Log(output), "Resolving XML Workflow Parameters\n");
    office_.system.SetDebugLevel(0);
  }
}

}  // namespace
