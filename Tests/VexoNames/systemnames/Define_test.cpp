// Loading definitions, and what a reset leaves in each name.
#include <functional>
#include <sstream>

#include "systemnames/Initialization.h"
#include "systemnames/Office.h"

using system_test::A;
using system_test::D;
using system_test::Names;
using system_test::Office;
using system_test::Output;
using system_test::Resolved;
using system_test::S;
using system_test::T;
using system_test::Text;
using system_test::U;

namespace {

NQ_TTree Records(std::initializer_list<const char*> names) {
  NQ_TTree records;
  for (const char* const name : names) records.Add(name, T({{"Type", "Name"}}));
  return records;
}

/// The lists and trees of a small configuration.
std::map<std::string, NQ_TAny> Configuration() {
  return {
      {"cfs ServerTreeName", "S"},
      {"cfs /Resources/S/TemplateNames/global", "G1,G2"},
      {"cfs /Resources/S/TemplateNames/user", "U1"},
      {"cfs /Resources/S/TaskTemplateNames/Rip", "K1"},
      {"cfs /Resources/S/TaskUserTemplateNames/Rip", "K2"},
      {"cfs /Resources/G1", Records({"a"})},
      {"cfs /Resources/G2", Records({"b", "c"})},
      {"cfs /Resources/U1", Records({"u"})},
      {"cfs /Resources/K1", Records({"k"})},
      {"cfs /Resources/K2", Records({"ku"})},
  };
}

constexpr char kReadGlobals[] =
    "cfs /Resources/S/TemplateNames/global; cfs /Resources/G1 zipped; cfs /Resources/G2 zipped";

TEST(SystemNameDefinitions, AskedForOnceAndKept) {
  Office office;
  office.replies = Configuration();
  Names first("");
  office.system.DefineSystemVexoNames(first, "");
  EXPECT_EQ(office.Asked(), std::string("cfs ServerTreeName; ") + kReadGlobals +
                                "; cfs /Resources/S/TemplateNames/user; cfs /Resources/U1 zipped");
  EXPECT_EQ(names_test::KeysText(first), "a b c u");
  EXPECT_FALSE(first.IsUserDefined("c"));
  EXPECT_TRUE(first.IsUserDefined("u"));
  Names second("");
  office.system.DefineSystemVexoNames(second, "Rip");
  EXPECT_EQ(office.Asked(),
            "cfs /Resources/S/TemplateNames/global; cfs /Resources/S/TemplateNames/user; "
            "cfs /Resources/S/TaskTemplateNames/Rip; cfs /Resources/K1 zipped; "
            "cfs /Resources/S/TaskUserTemplateNames/Rip; cfs /Resources/K2 zipped");
  EXPECT_EQ(names_test::KeysText(second), "a b c u k ku");
  EXPECT_TRUE(second.IsUserDefined("ku"));
  EXPECT_EQ(office.system.ClearCache(), 5U);
  EXPECT_EQ(office.system.ClearCache(), 0U);
}

TEST(SystemNameDefinitions, WhatCannotBeReadIsPassedOver) {
  const struct {
    const char* what;
    const char* path;  // whose reply is another one
    NQ_TAny reply;
    const char* requests;  // for the global list
    const char* names;
  } rows[] = {
      {"the list is of another kind", "/Resources/S/TemplateNames/global", 5, "cfs /Resources/S/TemplateNames/global",
       "u"},
      {"a list of nothing", "/Resources/S/TemplateNames/global", "",
       "cfs /Resources/S/TemplateNames/global; cfs /Resources/ zipped", "u"},
      {"a list that ends in a comma", "/Resources/S/TemplateNames/global", "G1,",
       "cfs /Resources/S/TemplateNames/global; cfs /Resources/G1 zipped; cfs /Resources/ zipped", "a u"},
      {"a tree is of another kind", "/Resources/G1", "x",
       "cfs /Resources/S/TemplateNames/global; cfs /Resources/G1 zipped", "u"},
      {"a tree fails to define: the next one is read, and not defined", "/Resources/G1",
       T({{"x", T({{"Type", "Name"}, {"Format", 5}})}}), kReadGlobals, "x u"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Office office;
    office.replies = Configuration();
    office.replies[std::string("cfs ") + row.path] = row.reply;
    Names names("");
    testing::internal::CaptureStderr();
    office.system.DefineSystemVexoNames(names, "");
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(office.Asked(), std::string("cfs ServerTreeName; ") + row.requests +
                                  "; cfs /Resources/S/TemplateNames/user; cfs /Resources/U1 zipped");
    EXPECT_EQ(names_test::KeysText(names), row.names);
  }
}

std::int64_t now = 0;  // nanoseconds

TEST(SystemNameDefinitions, GrowOldByThePolicy) {
  const struct {
    int policy;
    std::int64_t milliseconds;  // between two definitions
    int reads;                  // of a user's tree, in three definitions
  } rows[] = {{3000, 1000, 1}, {3000, 2999, 2}, {3000, 3000, 3}, {0, 100'000'000, 1}, {-1, 0, 3}, {1, 0, 1}};
  for (const auto& row : rows) {
    Office office;
    office.replies = Configuration();
    office.system.SetCachingPolicy(row.policy);
    office.system.SetClock([] { return now; });
    for (int i = 0; i < 3; ++i) {
      Names names("");
      office.system.DefineSystemVexoNames(names, "");
      EXPECT_EQ(names_test::KeysText(names), "a b c u");
      now += row.milliseconds * 1'000'000;
    }
    EXPECT_EQ(office.Count("cfs /Resources/U1 zipped"), row.reads) << row.policy << " " << row.milliseconds;
    EXPECT_EQ(office.Count("cfs /Resources/G1 zipped"), 1);
  }
}

TEST(SystemNameDefinitions, LogByLevel) {
  Office office;
  office.replies = Configuration();
  Names names("");
  Output output;
  EXPECT_EQ(office.system.SetDebugLevel(2), 0);
  office.system.DefineSystemVexoNames(names, "");
  EXPECT_EQ(office.system.SetDebugLevel(0), 2);
  office.system.DefineSystemVexoNames(names, "");
  const std::string log = output.Take();
  for (const char* const line : {"Defining Global VexoNames\n", "TName::Define: Template resource = G2\n",
                                 "CFS Get of /Resources/G1 took ", "Defined Global VexoNames in "})
    EXPECT_NE(log.find(line), log.npos) << line << log;
  EXPECT_EQ(log.find("Defining", 10), log.npos) << log;
}

TEST(SystemNameDefinitions, RequestsHaveAllTheirFields) {
  const std::pair<const char*, const char*> rows[] = {
      {"cfs ServerTreeName", "{M = ServerTreeName}"},
      {"cfs /Resources/S/TemplateNames/user", "{M = [], P1 = /Resources/S/TemplateNames/user, P2 = 0}"},
      {"cfs /Resources/U1", "{M = [], P1 = /Resources/U1, P2 = 0, PZIPPED = 1}"},
  };
  for (const auto& [last, request] : rows) {
    Office office;
    office.replies = Configuration();
    office.replies.erase(last);
    Names names("");
    try {
      office.system.DefineSystemVexoNames(names, "");
    } catch (const NQ_EException&) {
      EXPECT_STREQ(last, "cfs ServerTreeName");
    }
    EXPECT_EQ(office.LastRequest(), request);
  }
}

TEST(SystemNameDefinitions, NewObject) {
  VexoNameUtils system;
  EXPECT_EQ(system.GetDebugLevel(), 0);
  EXPECT_EQ(system.GetCachingPolicy(), 3000);
  EXPECT_EQ(system.ClearCache(), 0U);
  Names names("text job");
  system.DefineSystemVexoNames(names, "Rip");
  EXPECT_EQ(names_test::KeysText(names), "job");
}

// ---- what a reset leaves

constexpr char kNames[] =
    "url filespec; text jobid; text vxtpr:productid; text vexoid; text taskowner; text filetype; text id; "
    "text containername; number inputnr = 0; url joburl; url jobfolderurl; text job; text wfp.old; category wfp.old = "
    "wfp";

struct Form {
  const char* what;
  std::function<void(VexoNameUtils&, TName&)> reset;
  const char* raw;     // of filespec, jobid, vxtpr:productid
  const char* values;  // of jobid, inputnr, joburl, jobfolderurl
  const char* requests = "";
};

TEST(SystemNameReset, EachFormHandsOverItsContext) {
  const AT_TDictTicket ticket(D({{"JobID", "J1"},
                                 {"InputURLs", A({U("file://h/d/1"), U("file://h/d/2")})},
                                 {"WorkflowParameters", D({{"p", "v"}})}}));
  const AT_TDictTicket ofPart(D({{"ProductPartID", "PP1"}}));
  const NQ_TDict job = D({{"JID", "J2"}, {"Name", "Book"}});
  const NQ_TDict nameless = D({{"Name", "Book"}});
  const NQ_TDict product = D({{"p.id", "P1"}, {"pp.id", "PP2"}});
  const NQ_TURL url = U("file://h/d/u");
  const Form forms[] = {
      {"ticket, first input", [&](auto& s, auto& n) { s.ResetVexoNames(n, ticket, 1); }, "file://h/d/1 J1 file://h/d/1",
       "J1 1 (illegal) (illegal)"},
      {"ticket, last input", [&](auto& s, auto& n) { s.ResetVexoNames(n, ticket, 2); }, "file://h/d/2 J1 file://h/d/2",
       "J1 2 (illegal) (illegal)"},
      {"ticket, no such input", [&](auto& s, auto& n) { s.ResetVexoNames(n, ticket, 3); }, "file:/// J1 file:///",
       "J1 3 (illegal) (illegal)"},
      {"ticket, input 0 and no job", [&](auto& s, auto& n) { s.ResetVexoNames(n, ofPart, 0); }, "file:///  PP1",
       " 0 file:/// file:///"},
      {"URL and ticket", [&](auto& s, auto& n) { s.ResetVexoNames(n, url, ticket); },
       "file://h/d/u file://h/d/u file://h/d/u", "(illegal) 1 file://h/d file://h/d"},
      {"URL, ticket, job and product", [&](auto& s, auto& n) { s.ResetVexoNames(n, url, ofPart, job, product); },
       "file://h/d/u {JID = J2, Name = Book} {p.id = P1, pp.id = PP2}", "J2 1 (illegal) (illegal)",
       "jobs jpgetcpp J2; products LoadProductParameters P1; products LoadPartParameters PP2"},
      {"URL, job without identifier, product", [&](auto& s, auto& n) { s.ResetVexoNames(n, url, nameless, D({})); },
       "file://h/d/u {Name = Book} {}", " 1 file://h/d file://h/d"},
  };
  for (const Form& form : forms) {
    SCOPED_TRACE(form.what);
    Office office;
    office.replies = {{"jobs jpgetcpp", A({})}};
    Names names(kNames);
    form.reset(office.system, names);
    const auto raw = [&](const char* key) { return Text(names.GetRawData(key)); };
    const auto value = [&](const char* key) { return Text(names.GetValue(key)); };
    EXPECT_EQ(raw("filespec") + " " + raw("jobid") + " " + raw("vxtpr:productid"), form.raw);
    for (const char* const key : {"vexoid", "filetype", "containername"}) EXPECT_EQ(raw(key), raw("filespec")) << key;
    EXPECT_EQ(value("jobid") + " " + value("inputnr") + " " + value("joburl") + " " + value("jobfolderurl"),
              form.values);
    EXPECT_EQ(office.Asked(), form.requests);
    EXPECT_FALSE(names.IsDefined("wfp.old"));
  }
}

// What led to the values of the context before is gone even then.
TEST(SystemNameReset, ThrowsWhatIsWrongWithTheContext) {
  const struct {
    NQ_TDict job;
    const char* error;
  } rows[] = {{D({{"JID", 5}}), "NQ_EIllegalCastFromAny: NQ_TString expected"},
              {D({{"JID", "J2"}}), "NQ_EException: There is no reply"}};
  for (const auto& row : rows) {
    Office office;
    Names names(kNames);
    std::string error;
    try {
      office.system.ResetVexoNames(names, U("file://h/d/u"), row.job, D({}));
    } catch (const NQ_EException& thrown) {
      error = std::string(thrown.ClassName()) + ": " + Text(thrown.NQ_Message());
    }
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(names.GetRawData("jobid"), NQ_TAny(row.job));
  }
}

TEST(SystemNameReset, TicketsAreKeptByReference) {
  const AT_TDictTicket ticket(D({{"WorkflowParameters", D({{"p", "v"}})}}));
  const NQ_TURL url = U("file://h/d/u");
  Office office;
  Names names(kNames);
  office.system.ResetVexoNames(names, url, ticket);
  for (const char* const key : {"id", "taskowner"})
    EXPECT_EQ(names.GetRawData(key).DynamicCast("AT_TTicket"), static_cast<const AT_TTicket*>(&ticket)) << key;
  EXPECT_EQ(Resolved(names, "<wfp.p/>"), "v");
  office.system.ResetVexoNames(names, url, D({}), D({}));
  for (const char* const key : {"id", "taskowner"}) EXPECT_TRUE(names.GetRawData(key).IsNull()) << key;
  EXPECT_EQ(Resolved(names, "<id/><wfp.p/>"), "! <id/><wfp.p/>");
}

// Every name that has a handler, and some that have none.
TEST(SystemNameReset, HandlersGoToTheNamesThatAreDefined) {
  const std::string handled =
      "job jobfolder joborderid jobsuborderid jobdescription jobduedate jobduetime jobcategory jobcategory2 "
      "jobcategory3 jobcategory4 jobcategory5 jobcategory6 jobcategory7 jobcustomer jobcustomerref jobscopemode jobcsr "
      "jobcsremail jobprojectid jobfolderurl joburl jobmasterlocation vxtpr:productid vxtpr:anything jobcustomername "
      "jobcustomerdesc customercontact1 customercontact2 customercontact3 customeremail1 customeremail2 customeremail3 "
      "customerinfo1 customerinfo2 customerinfo3 customerinfo4 customerinfo5 vexoid filetype file filespec "
      "filelocation file1stfolder filefolder fileurl containername containerurl id shortid wfid taskname ticketname "
      "operator taskowner";
  const std::string free = "jobid inputnr vxtpr jobs customerinfo6";
  std::string script;
  std::istringstream keys(handled + " " + free);
  for (std::string key; keys >> key;) script += (script.empty() ? "url " : "; url ") + key + " = file://old/value";
  script += "; number inputnr = 0; text jobid";
  Names names(script);
  Office office;
  office.replies = {{"jobs jpgetcpp", A({})}};
  office.system.ResetVexoNames(names, U("file://h/d/u"), D({{"JID", "J1"}}), D({}));
  const auto check = [&](const std::string& some, bool expected) {
    std::istringstream all(some);
    for (std::string key; all >> key;) {
      const bool has = names_test::EntryText(names, key).find("LookupHandler2") != std::string::npos;
      EXPECT_EQ(has, expected) << key;
      EXPECT_EQ(names.HasValue(S(key)), !expected) << key;
    }
  };
  check(handled, true);
  check(free, false);
}

TEST(SystemNameReset, NamesThatAreNotDefinedStaySo) {
  Office office;
  Names names("text a = 1");
  const AT_TDictTicket ticket(D({}));
  office.system.ResetVexoNames(names, ticket, 1);
  EXPECT_EQ(names_test::KeysText(names), "a");
  EXPECT_EQ(Resolved(names, "<a/><job/>"), "! 1<job/>");
  EXPECT_EQ(office.Asked(), "");
}

TEST(SystemNameReset, DefiningResetsToo) {
  Office office;
  office.replies = Configuration();
  office.replies["cfs /Resources/G1"] = Records({"jobid", "job", "file", "filespec"});
  office.replies["jobs jinfo_cpp"] = D({{"Name", "Book"}});
  office.replies["jobs jpgetcpp"] = A({});
  const AT_TDictTicket ticket(D({{"TaskName", "Rip"}, {"JobID", "J1"}, {"InputURLs", A({U("file://h/1")})}}));
  Names names("");
  office.system.DefineVexoNames(names, ticket, 1);
  EXPECT_EQ(office.Count("cfs /Resources/K1 zipped"), 1);
  EXPECT_EQ(Resolved(names, "<jobid/> <job/>"), "J1 Book");
  Names next("");
  office.Asked();
  office.system.DefineVexoNames(next, U("file://h/2"), D({{"JID", "J2"}, {"Name", "Map"}}), D({}));
  EXPECT_EQ(Resolved(next, "<jobid/> <job/>"), "J2 Map");
  EXPECT_EQ(office.Count("cfs /Resources/K1 zipped"), 1);
}

// ---- preparing the library

std::string called;
bool secondSucceeds = false;

TEST(SystemNameInitialization, StopsAtAFailureAndBeginsAnew) {
  constexpr NQ_TInitialization kFunctions[] = {[] { return (called += '1', true); },
                                               [] { return (called += '2', secondSucceeds); },
                                               [] { return (called += '3', true); }};
  std::atomic<bool> done{false};
  EXPECT_FALSE(systemnames::InitializeAll(kFunctions, done));
  EXPECT_EQ(std::exchange(called, ""), "12");
  secondSucceeds = true;
  EXPECT_TRUE(systemnames::InitializeAll(kFunctions, done));
  EXPECT_EQ(std::exchange(called, ""), "123");
  EXPECT_TRUE(systemnames::InitializeAll(kFunctions, done));
  EXPECT_EQ(called, "");
  EXPECT_TRUE(__NQ_INITIALIZATION_FUNCTION_VexoNames__());
  for (const char* const name : {"NQ_TTree", "NQM_ECallFailed", "AT_TTicket"})
    EXPECT_NE(NQ_TClass::Find(name), nullptr) << name;
}

}  // namespace
