// What Docs/system-names.md says of each name is so.
#include <ctime>
#include <set>

#include "DocsPage.h"
#include "systemnames/NameTables.h"
#include "systemnames/Office.h"

using system_test::Names;
using system_test::Office;
using system_test::Resolved;
using system_test::S;
using system_test::U;

namespace {

using std::string;

struct Row {
  string name, type, key, example;
};

constexpr const char* kGroups[] = {"Job", "Customer", "Product", "File", "Ticket", "Other"};

std::vector<Row> Group(const string& title) {
  std::vector<Row> rows;
  for (const auto& cells : names_test::Rows(names_test::Page("system-names.md"), title))
    rows.push_back({cells.at(0), cells.at(1), cells.at(2), cells.at(3)});
  EXPECT_FALSE(rows.empty()) << title;
  return rows;
}

// The rows of a table in the code.
template <class Table>
std::vector<string> InCode(const Table& table) {
  std::vector<string> all;
  for (const auto& row : table) {
    if constexpr (requires { row.key; })
      all.push_back(string(row.name) + " " + row.key);
    else if constexpr (requires { row.name; })
      all.emplace_back(row.name);
    else
      all.emplace_back(row);
  }
  return all;
}

// The page goes on with what code of its own sets.
TEST(SystemNamesPage, HasTheNamesAndKeysOfTheTables) {
  const struct {
    const char* title;
    bool keys;
    std::vector<string> names;
    std::vector<string> further;
  } rows[] = {
      {"Job", true, InCode(systemnames::kJobNames), {"jobid JID"}},
      {"Customer", true, InCode(systemnames::kCustomerNames), {}},
      {"Product",
       true,
       InCode(systemnames::kProductNames),
       {"vxtpr:productpartdatazone pp.folder", "vxtpr:productamount p.productusage"}},
      {"File", false, InCode(systemnames::kFileNames), {"inputnr"}},
      {"Ticket", false, InCode(systemnames::kTicketNames), {}},
      {"Other",
       false,
       InCode(systemnames::kContainerNames),
       {"filetype", "vexoid", "taskowner", "jp.Paper", "pp.Binding", "ppp.Side", "wfp.Due%20date"}},
  };
  std::set<string> once;
  for (const auto& row : rows) {
    std::vector<string> page, code = row.names;
    code.insert(code.end(), row.further.begin(), row.further.end());
    for (const Row& name : Group(row.title)) {
      page.push_back(name.name + (row.keys ? " " + name.key : ""));
      EXPECT_TRUE(once.insert(name.name).second) << name.name;
    }
    EXPECT_EQ(page, code);
  }
}

// In the local zone, as times are written.
NQ_TTime Due() {
  std::tm due{};
  due.tm_year = 126, due.tm_mon = 4, due.tm_mday = 29, due.tm_hour = 15, due.tm_min = 30, due.tm_isdst = -1;
  return NQ_TTime::FromMilliseconds(static_cast<double>(std::mktime(&due)) * 1000);
}

// A reply that has the examples of the group under their keys.
NQ_TDict Reply(const string& title) {
  NQ_TDict reply;
  for (const Row& row : Group(title)) {
    const NQ_TAny value = row.type == "URL"    ? NQ_TAny(U(row.example.c_str()))
                          : row.type == "time" ? NQ_TAny(Due())
                                               : NQ_TAny(S(row.example));
    reply.Add(S(row.key), NQ_TAny(value));
  }
  return reply;
}

// The names of the page, with the types that it says. Parameters define themselves.
string Definitions() {
  const std::map<string, string> words = {{"text", "text "}, {"URL", "url "}, {"time", "time "}, {"number", "number "}};
  string script;
  for (const char* const title : kGroups)
    for (const Row& row : Group(title))
      if (row.name.find('.') == string::npos)
        script += (script.empty() ? "" : "; ") + words.at(row.type) + row.name + (row.type == "number" ? " = 0" : "");
  return script + "; format jobduedate = %Y-%m-%d; format jobduetime = %H:%M";
}

TEST(SystemNamesPage, ExamplesAreWhatTheNamesGive) {
  NQ_TDict part = Reply("Product");
  part.Add("p.id", "P1").Add("pp.id", "PP1");
  part.Add("p.productusage", system_test::J(R"([{"jid": "J-2041", "amount": 5000}])"));
  Office office(R"({
      "jobs jpgetcpp": [["Paper", "S", 0, "Munken Lynx"]],
      "products LoadProductParameters": {"Binding": "thread"},
      "products LoadPartParameters": {"Side": "outside"},
      "containers FindParentContainer": {"Name": "Hotfolder 1", "URL": {"$url": "file://ps-storage/hotfolders/press1"}},
      "files Query": {"Type": "PDF", "VexoIDStr": "0A1B2C"},
      "accounts GetUser": {"EMail": "ann@print.example"}})");
  office.Reply("jobs jinfo_cpp", Reply("Job"));
  office.Reply("jobs cinfo_cpp", Reply("Customer"));
  office.Reply("products GetProductPartFromURL", part);
  const AT_TDictTicket ticket = system_test::Ticket(R"({
      "TicketID": "T-88213", "ShortID": "213", "WorkflowID": "WF-7", "TaskName": "Impose", "JobID": "J-2041",
      "TicketPath": "/Workflows/Spring books*", "Operator": {"UserName": "ann"},
      "WorkflowParameters": {"Due date": "Friday"},
      "InputURLs": [{"$url": "file://ps-storage/hotfolders/press1/today/cover.pdf"}]})");
  Names names(Definitions());
  office.system.ResetVexoNames(names, ticket, 1);
  for (const char* const title : kGroups)
    for (const Row& row : Group(title)) EXPECT_EQ(Resolved(names, "<" + row.name + "/>"), row.example) << row.name;
}

}  // namespace
