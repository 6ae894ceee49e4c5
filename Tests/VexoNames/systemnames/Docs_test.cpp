// What Docs/system-names.md says of each name is so.
#include <ctime>
#include <set>

#include "DocsPage.h"
#include "systemnames/NameTables.h"
#include "systemnames/Office.h"

using system_test::A;
using system_test::D;
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

std::vector<string> Keys(const string& title) {
  std::vector<string> all;
  for (const Row& row : Group(title)) all.push_back(row.name + " " + row.key);
  return all;
}
std::vector<string> NamesOf(const string& title) {
  std::vector<string> all;
  for (const Row& row : Group(title)) all.push_back(row.name);
  return all;
}

// The rows of a table in the code, and those that it does not have because code of their own sets them.
template <class Table>
std::vector<string> KeysOf(const Table& table, std::initializer_list<const char*> others) {
  std::vector<string> all;
  for (const auto& row : table) all.push_back(string(row.name) + " " + row.key);
  all.insert(all.end(), others.begin(), others.end());
  return all;
}

TEST(SystemNamesPage, HasTheNamesAndKeysOfTheTables) {
  EXPECT_EQ(Keys("Job"), KeysOf(systemnames::kJobNames, {"jobid JID"}));
  EXPECT_EQ(Keys("Customer"), KeysOf(systemnames::kCustomerNames, {}));
  EXPECT_EQ(Keys("Product"), KeysOf(systemnames::kProductNames,
                                    {"vxtpr:productpartdatazone pp.folder", "vxtpr:productamount p.productusage"}));
  std::vector<string> files;
  for (const auto& row : systemnames::kFileNames) files.emplace_back(row.name);
  files.emplace_back("inputnr");
  EXPECT_EQ(NamesOf("File"), files);
  EXPECT_EQ(NamesOf("Ticket"),
            std::vector<string>(std::begin(systemnames::kTicketNames), std::end(systemnames::kTicketNames)));
  const std::vector<string> others = NamesOf("Other");
  EXPECT_EQ(std::vector<string>(others.begin(), others.begin() + std::ssize(systemnames::kContainerNames)),
            std::vector<string>(std::begin(systemnames::kContainerNames), std::end(systemnames::kContainerNames)));
  std::set<string> once;
  for (const char* const title : kGroups)
    for (const Row& row : Group(title)) EXPECT_TRUE(once.insert(row.name).second) << row.name;
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
  Office office;
  NQ_TDict part = Reply("Product");
  part.Add("p.id", "P1").Add("pp.id", "PP1");
  part.Add("p.productusage", A({D({{"jid", "J-2041"}, {"amount", 5000}})}));
  office.replies = {
      {"jobs jinfo_cpp", Reply("Job")},
      {"jobs cinfo_cpp", Reply("Customer")},
      {"jobs jpgetcpp", A({A({"Paper", "S", 0, "Munken Lynx"})})},
      {"products GetProductPartFromURL", part},
      {"products LoadProductParameters", D({{"Binding", "thread"}})},
      {"products LoadPartParameters", D({{"Side", "outside"}})},
      {"containers FindParentContainer",
       D({{"Name", "Hotfolder 1"}, {"URL", U("file://ps-storage/hotfolders/press1")}})},
      {"files Query", D({{"Type", "PDF"}, {"VexoIDStr", "0A1B2C"}})},
      {"accounts GetUser", D({{"EMail", "ann@print.example"}})},
  };
  const AT_TDictTicket ticket(D({{"TicketID", "T-88213"},
                                 {"ShortID", "213"},
                                 {"WorkflowID", "WF-7"},
                                 {"TaskName", "Impose"},
                                 {"TicketPath", "/Workflows/Spring books*"},
                                 {"Operator", D({{"UserName", "ann"}})},
                                 {"JobID", "J-2041"},
                                 {"WorkflowParameters", D({{"Due date", "Friday"}})},
                                 {"InputURLs", A({U("file://ps-storage/hotfolders/press1/today/cover.pdf")})}}));
  Names names(Definitions());
  office.system.ResetVexoNames(names, ticket, 1);
  for (const char* const title : kGroups)
    for (const Row& row : Group(title)) EXPECT_EQ(Resolved(names, "<" + row.name + "/>"), row.example) << row.name;
}

}  // namespace
