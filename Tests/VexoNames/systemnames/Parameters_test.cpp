// Parameter names: of jobs, products, parts and workflows.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "systemnames/Office.h"

using system_test::A;
using system_test::D;
using system_test::Names;
using system_test::Office;
using system_test::Output;
using system_test::Resolved;
using system_test::S;
using system_test::Text;
using system_test::U;

namespace {

/// "key=value category userinfo visibility", for all names but the anchors.
std::string Parameters(TName& names) {
  std::string all;
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next()) {
    const auto& key = *i.Value().As<NQ_TString>();
    if (key.Find('.') < 0) continue;
    all += (all.empty() ? "" : "; ") + Text(key) + "=" + Text(names.GetValue(key)) + " " +
           Text(names.GetCategory(key)) + " " + Text(names.GetUserInfo(key)) + " " + Text(names.GetVisibility(key));
  }
  return all;
}

const NQ_TDict kJob = D({{"JID", "J1"}});
const NQ_TDict kProduct = D({{"p.id", "P1"}, {"pp.id", "PP1"}});
constexpr char kAnchors[] = "text jobid; text vxtpr:productid";

TEST(SystemNameParameters, NamesFromEveryShapeOfReply) {
  const struct {
    const char* what;
    std::map<std::string, NQ_TAny> replies;
    const char* parameters;
  } rows[] = {
      {"of a job",
       {{"jobs jpgetcpp", A({A({"a", "String", 0, "1"}), A({"b c", "S", 0, "2"})})}},
       "jp.a=1 jp a ; jp.b%20c=2 jp b c ; jp.b c=2 jp  0"},
      {"of other types",
       {{"jobs jpgetcpp", A({A({"a", "Number", 0, "1"}), A({"b", "", 0, "2"}), A({"c", "XS", 0, "2"})})}},
       ""},
      {"rows of other shapes",
       {{"jobs jpgetcpp", A({5, A({"a"}), A({"b", "S", 0}), A({"c", "S", 0, 5}), A({5, "S", 0, "1"}),
                             A({"d", 5, 0, "1"}), A({"e", "S", 0, "2"})})}},
       "jp.e=2 jp e "},
      {"of another kind", {{"jobs jpgetcpp", D({})}}, ""},
      {"of a product",
       {{"products LoadProductParameters", D({{"a", "1"}, {"50 %", "2"}, {"x", 5}})}},
       "pp.a=1 prodparams pp.a ; pp.50%20%25=2 prodparams pp.50 % "},
      {"of a part", {{"products LoadPartParameters", D({{"a", "1"}})}}, "ppp.a=1 prodpparams ppp.a "},
      {"null", {{"products LoadPartParameters", NQ_TAny()}, {"products LoadProductParameters", 5}}, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Office office;
    office.replies = row.replies;
    office.replies.try_emplace("jobs jpgetcpp", A({}));
    Names names(kAnchors);
    office.system.ResetVexoNames(names, U("file://h/a"), kJob, kProduct);
    EXPECT_EQ(Parameters(names), row.parameters);
    office.system.ResetVexoNames(names, U("file://h/a"), D({}), D({}));
    EXPECT_EQ(Parameters(names), "") << "the next task has its own";
  }
}

TEST(SystemNameParameters, AreCreatedWhenATemplateAsks) {
  const AT_TDictTicket ticket(D({{"JobID", "J1"}, {"ProductPartID", "PP1"}}));
  const struct {
    const char* names;
    const char* text;
    const char* result;
    const char* requests;
  } rows[] = {
      {kAnchors, "<jp.a/><jp.x/><jp.y/>", "! 1<jp.x/><jp.y/>", "jobs jinfo_cpp J1; jobs jpgetcpp J1"},
      {kAnchors, "<pp.a/><pp.x/>", "! 2<pp.x/>", "products LoadProductPart PP1; products LoadProductParameters P1"},
      {kAnchors, "<ppp.a/><ppp.x/>", "! 3<ppp.x/>", "products LoadProductPart PP1; products LoadPartParameters PP1"},
      {"text jobid; text jp.own = 9; category jp.own = jp", "<jp.own/>", "! <jp.own/>",
       "jobs jinfo_cpp J1; jobs jpgetcpp J1"},
      {"text jobid; text jp.own = 9", "<jp.own/>", "9", ""},
      {"", "<jp.a/><pp.a/><ppp.a/>", "! <jp.a/><pp.a/><ppp.a/>", ""},
      {kAnchors, "<jpx/><p.a/>", "! <jpx/><p.a/>", ""},
  };
  for (const auto& row : rows) {
    Office office;
    office.replies = {{"jobs jinfo_cpp", kJob},
                      {"jobs jpgetcpp", A({A({"a", "S", 0, "1"})})},
                      {"products LoadProductPart", kProduct},
                      {"products LoadProductParameters", D({{"a", "2"}})},
                      {"products LoadPartParameters", D({{"a", "3"}})}};
    Names names(row.names);
    office.system.ResetVexoNames(names, ticket, 1);
    EXPECT_EQ(office.Asked(), "");
    EXPECT_EQ(Resolved(names, row.text), row.result);
    EXPECT_EQ(office.Asked(), row.requests) << row.text;
  }
}

TEST(SystemNameParameters, AFailedServiceLeavesNone) {
  Office office;
  const AT_TDictTicket ticket(D({{"JobID", "J1"}}));
  Names names(kAnchors);
  office.system.ResetVexoNames(names, ticket, 1);
  EXPECT_EQ(Resolved(names, "<jp.a/><pp.a/>"), "! <jp.a/><pp.a/>");
  EXPECT_EQ(office.Asked(), "jobs jinfo_cpp J1; products GetProductPartFromURL file:///");
}

class WorkflowParameters : public testing::Test {
 protected:
  WorkflowParameters() { std::filesystem::create_directories(folder_); }
  ~WorkflowParameters() override { std::filesystem::remove_all(folder_); }

  NQ_TURL File(const char* name, const std::string& content) const {
    std::ofstream(folder_ + name) << content;
    return NQ_TURL(S("file://" + folder_ + name));
  }
  /// Without the folder.
  std::string Short(std::string text) const {
    for (auto at = text.find(folder_); at != text.npos; at = text.find(folder_)) text.erase(at, folder_.size());
    return text;
  }

  const std::string folder_ = testing::TempDir() + "WorkflowParameters" + std::to_string(getpid()) + "/";
  Office office_;
};

TEST_F(WorkflowParameters, HoldTheirValues) {
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"Customer", "ACME"}, {"Due date", "now"}, {"n", 5}})}}));
  Names names("text id");
  office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
  EXPECT_EQ(Parameters(names), "wfp.Customer=ACME wfp  ; wfp.Due%20date=now wfp  ");
  EXPECT_EQ(names_test::EntryText(names, "wfp.Customer").find("LookupHandler2"), std::string::npos);
}

TEST_F(WorkflowParameters, LiveOnesAreReadOnceFromAllFiles) {
  const auto ticketOf = [](const NQ_TAny& files) {
    return AT_TDictTicket(D({{"WorkflowParameters",
                              D({{"--LiveXMLList--", files}, {"Customer", "ACME"}, {"Due date", "d"}, {"k", "v"}})}}));
  };
  const NQ_TURL first =
      File("1", "<r><name>Customer</name><value>BETA</value><name>Due date</name><value>1</value></r>");
  const NQ_TURL second = File("2", "<r><Customer>GAMMA</Customer><other>x</other></r>");
  const NQ_TURL broken = File("3", "<r>");
  const struct {
    NQ_TAny files;
    const char* result;
    const char* log;
  } rows[] = {
      {A({}), "ACME d v", ""},
      {A({first}), "BETA 1 v", ""},
      {A({first, second}), "GAMMA 1 v", ""},
      {A({second, first}), "BETA 1 v", ""},
      {A({first, broken, second}), "GAMMA 1 v",
       "Failed to update Workflow Parameter values from 'file://3'.  Caused by:\nNQ_EException: The XML file '3' is "
       "not "
       "well-formed: error at line 1 column 4:"},
      {A({5}), "! <wfp.Customer/> d v",
       "Looking up XML Workflow Parameters failed.  Caused by:\nNQ_EIllegalCastFromAny: "},
      {"x", "! <wfp.Customer/> d v",
       "Looking up XML Workflow Parameters failed.  Caused by:\nNQ_EIllegalCastFromAny: "},
  };
  for (const auto& row : rows) {
    const AT_TDictTicket ticket = ticketOf(row.files);
    Names names("text id");
    office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
    EXPECT_FALSE(names.HasValue("wfp.k"));
    EXPECT_FALSE(names.IsDefined("wfp.--LiveXMLList--"));
    Output output;
    EXPECT_EQ(Resolved(names, "<wfp.Customer/> <wfp.Due%20date/> <wfp.k/>"), row.result);
    const std::string log = Short(output.Take());
    EXPECT_TRUE(log.starts_with(row.log) && log.empty() == std::string_view(row.log).empty()) << log;
  }
}

TEST_F(WorkflowParameters, LiveOnesAreReadAgainAfterAReset) {
  const NQ_TURL file = File("1", "<r><a>1</a></r>");
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"--LiveXMLList--", A({file})}, {"a", "v"}})}}));
  Names names("text id");
  office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
  EXPECT_EQ(Resolved(names, "<wfp.a/>"), "1");
  File("1", "<r><a>2</a></r>");
  EXPECT_EQ(Resolved(names, "<wfp.a/>"), "1");
  office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
  EXPECT_EQ(Resolved(names, "<wfp.a/>"), "2");
}

TEST_F(WorkflowParameters, LogByLevel) {
  const NQ_TURL file = File("1", "<r><a>1</a></r>");
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"--LiveXMLList--", A({file})}, {"a", "v"}})}}));
  constexpr const char* kLines[] = {
      "Resolving XML Workflow Parameters\n", "Looking up XML Workflow Parameters in file://1\n",
      "Looking up Workflow Parameter a\n", "Updating Workflow Parameter a with value=1 from file://1\n"};
  const std::pair<int, std::vector<int>> rows[] = {{0, {}}, {1, {0}}, {2, {0, 1}}, {4, {0, 1, 3}}, {6, {0, 1, 2, 3}}};
  for (const auto& [level, lines] : rows) {
    Names names("text id");
    office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
    office_.system.SetDebugLevel(level);
    Output output;
    EXPECT_EQ(Resolved(names, "<wfp.a/>"), "1");
    std::string expected;
    for (const int line : lines) expected += kLines[line];
    EXPECT_EQ(Short(output.Take()), expected) << level;
    office_.system.SetDebugLevel(0);
  }
}

TEST_F(WorkflowParameters, AValueThatCannotBeSetIsTold) {
  const NQ_TURL file = File("1", "<r><a>1</a><b>2</b></r>");
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"--LiveXMLList--", A({file})}, {"a", "v"}, {"b", "w"}})}}));
  Names names("text id");
  office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
  names.UnDefine("wfp.a");
  Output output;
  EXPECT_EQ(Resolved(names, "<wfp.b/>"), "2");
  EXPECT_TRUE(Short(output.Take()).starts_with("Lookup of 'a' in file://1 failed\nNQ_ENoSuchKey: wfp.a"));
}

TEST_F(WorkflowParameters, LiveOnesNeedTheTicket) {
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"--LiveXMLList--", A({})}, {"a", "v"}})}}));
  Names names("");
  office_.system.ResetVexoNames(names, U("file://h/a"), ticket);
  Output output;
  EXPECT_EQ(Resolved(names, "<wfp.a/>"), "! <wfp.a/>");
  EXPECT_TRUE(output.Take().starts_with("Looking up XML Workflow Parameters failed.  Caused by:\nNQ_ENoSuchKey: id"));
}

}  // namespace
