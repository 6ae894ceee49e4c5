// What each name holds, from which requests, whatever the services say.
#include <functional>

#include "systemnames/Office.h"

using system_test::A;
using system_test::D;
using system_test::Names;
using system_test::Office;
using system_test::Resolved;
using system_test::U;

namespace {

using Replies = std::map<std::string, NQ_TAny>;

struct Row {
  const char* what;
  const char* names;  // as Support.h says
  Replies replies;
  const char* text;
  const char* result;    // "! " before it when a token failed
  const char* requests;  // of resolving the text
  std::function<void(Office&)> change = [](Office&) {};
};

/// Resets with the ticket and the input that all rows share, and resolves twice: the second time asks nothing more,
/// unless the first one failed.
void Check(const Row& row) {
  SCOPED_TRACE(row.what);
  Office office;
  office.replies = row.replies;
  row.change(office);
  const AT_TDictTicket ticket(D({{"TicketPath", "/Workflows/Default*"},
                                 {"TicketID", "T1"},
                                 {"TaskName", "Rip"},
                                 {"Operator", D({{"UserName", "ann"}, {"Domain", "north"}})},
                                 {"Settings", D({{"WFLab", "Books"}, {"Inputfolder", U("file://srv/hot")}})},
                                 {"ShortID", "1"},
                                 {"WorkflowID", "W1"}}));
  Names names(row.names);
  office.system.ResetVexoNames(names, U("file://srv/share/in/a.pdf"), ticket);
  EXPECT_EQ(office.Asked(), "") << "values are asked for when a template needs one";
  const std::string result = Resolved(names, row.text);
  EXPECT_EQ(result, row.result);
  EXPECT_EQ(office.Asked(), row.requests);
  if (result.starts_with("! ")) return;
  EXPECT_EQ(Resolved(names, row.text), row.result);
  EXPECT_EQ(office.Asked(), "") << "once per reset";
}

double Noon() { return 43'200'000; }

const NQ_TAny kInJob = A({true, 5, "J7"});
constexpr char kAskJob[] = "jobs ij file://srv/share/in/a.pdf; jobs jinfo_cpp J7";
constexpr char kAskUrl[] = "jobs ij file://srv/share/in/a.pdf";

TEST(SystemNameGroups, Job) {
  constexpr char kNames[] =
      "text jobid; text job; text jobfolder; number joborderid = 0; text jobsuborderid; time jobduedate; text "
      "jobduetime; "
      "text jobcustomer; url joburl; text jobcsr";
  const NQ_TTime::TClock before = NQ_TTime::SetClock(Noon);
  const auto job = [](system_test::Entries entries) {
    return Replies{{"jobs ij", kInJob}, {"jobs jinfo_cpp", D(entries)}};
  };
  const Row rows[] = {
      {"every kind of value", kNames,
       job({{"JID", "J7"},
            {"Name", "Book"},
            {"OrderId", 42},
            {"SubOrderId", "7/1"},
            {"DueDate", NQ_TTime::FromMilliseconds(0)}}),
       "<job/> <jobfolder/> <joborderid/> <jobsuborderid/> <jobduedate format=\"%s\"/> <joburl/>|<jobcsr/>|",
       "Book Book 42 7/1 0 file://srv/share/in||", kAskJob},
      {"missing keys", kNames, job({}), "<job/>|<jobduedate format=\"%s\"/>|<jobduetime/>", "|43200|", kAskJob},
      {"a number that is not said fails", kNames, job({}), "<job/><joborderid/>", "! <joborderid/>", kAskJob},
      {"a value of no use fails", kNames, job({{"Name", A({})}, {"CSR", NQ_TAny()}, {"Customer", "ACME"}}),
       "<jobcustomer/><job/><jobcsr/>", "! ACME<job/><jobcsr/>", kAskJob},
      {"a value of another type fails", kNames, job({{"Name", 5}, {"Customer", "ACME"}}), "<jobcustomer/><job/>",
       "! ACME<job/>", kAskJob},
      {"a file outside any job", kNames, {{"jobs ij", A({false, 0, "J7"})}}, "<job/>|<jobcsr/>|", "||", kAskUrl},
      {"which job is not said", kNames, {{"jobs ij", A({true})}}, "<job/>|", "|", kAskUrl},
      {"the reply is of another kind", kNames, {{"jobs ij", "J7"}}, "<job/>|", "|", kAskUrl},
      {"the job is of another kind",
       kNames,
       {{"jobs ij", kInJob}, {"jobs jinfo_cpp", NQ_TAny()}},
       "<job/>|",
       "|",
       kAskJob},
      {"the service fails", kNames, {}, "<job/>", "! <job/>", kAskUrl},
      {"there is no service",
       kNames,
       {},
       "<job/>|<jobduedate format=\"%s\"/>",
       "|43200",
       "",
       [](Office& office) { office.system.SetJobProxy(nullptr); }},
      {"the anchor is not defined", "text job", {}, "<job/>", "! <job/>", ""},
  };
  for (const Row& row : rows) Check(row);
  NQ_TTime::SetClock(before);
}

TEST(SystemNameGroups, Customer) {
  constexpr char kNames[] =
      "text jobid; text jobcustomer; text jobcustomername; text jobcustomerdesc; text customercontact1; "
      "text customeremail3; text customerinfo5";
  constexpr char kText[] =
      "<jobcustomername/>|<jobcustomerdesc/>|<customercontact1/>|<customeremail3/>|<customerinfo5/>";
  const auto customer = [](const NQ_TAny& reply) {
    return Replies{{"jobs ij", kInJob}, {"jobs jinfo_cpp", D({{"Customer", "C1"}})}, {"jobs cinfo_cpp", reply}};
  };
  const std::string asked = std::string(kAskJob) + "; jobs cinfo_cpp C1";
  const Row rows[] = {
      {"known", kNames,
       customer(D({{"Name", "ACME"}, {"Description", "d"}, {"Contact1", "c"}, {"EMail3", "e"}, {"Info5", "i"}})), kText,
       "ACME|d|c|e|i", asked.c_str()},
      {"missing keys", kNames, customer(D({})), kText, "||||", asked.c_str()},
      {"further entries of another kind", kNames, customer(D({{"Name", "ACME"}, {"Contact1", 5}, {"EMail3", A({})}})),
       kText, "ACME||||", asked.c_str()},
      {"a name of another kind", kNames, customer(D({{"Name", 5}})), "<jobcustomername/>", "! <jobcustomername/>",
       asked.c_str()},
      {"the reply is of another kind", kNames, customer(NQ_TAny()), kText, "||||", asked.c_str()},
      {"a job without a customer", kNames, {{"jobs ij", kInJob}, {"jobs jinfo_cpp", D({})}}, kText, "||||", kAskJob},
      {"the service fails",
       kNames,
       {{"jobs ij", kInJob}, {"jobs jinfo_cpp", D({{"Customer", "C1"}})}},
       "<customerinfo5/>",
       "! <customerinfo5/>",
       asked.c_str()},
      {"the job cannot be told", kNames, {}, "<customerinfo5/>", "! <customerinfo5/>", kAskUrl},
      {"there is no service",
       kNames,
       {},
       kText,
       "||||",
       "",
       [](Office& office) { office.system.SetJobProxy(nullptr); }},
  };
  for (const Row& row : rows) Check(row);
}

TEST(SystemNameGroups, Container) {
  constexpr char kNames[] = "text containername; url containerurl";
  constexpr char kText[] = "<containername/> <containerurl/>";
  constexpr char kAsked[] = "containers FindParentContainer file://srv/share/in/a.pdf";
  const auto container = [](const NQ_TAny& reply) { return Replies{{"containers FindParentContainer", reply}}; };
  const Row rows[] = {
      {"known", kNames, container(D({{"Name", "c"}, {"URL", U("file://srv/c")}})), kText, "c file://srv/c", kAsked},
      {"missing keys", kNames, container(D({})), kText, " file:///", kAsked},
      {"entries of another kind", kNames, container(D({{"Name", 5}, {"URL", U("file://srv/c")}})), kText,
       "! <containername/> file://srv/c", kAsked},
      {"the reply is of another kind", kNames, container("c"), kText, " file:///", kAsked},
      {"the service fails", kNames, {}, "<containerurl/>", "! <containerurl/>", kAsked},
      {"there is no service",
       kNames,
       {},
       kText,
       " file:///",
       "",
       [](Office& office) { office.system.SetContainerProxy(nullptr); }},
      {"the anchor is not defined", "url containerurl", {}, "<containerurl/>", "! <containerurl/>", ""},
  };
  for (const Row& row : rows) Check(row);
}

TEST(SystemNameGroups, File) {
  constexpr char kAttributes[] = "text filetype; text vexoid";
  constexpr char kAsked[] = "files Query file://srv/share/in/a.pdf";
  const Row rows[] = {
      {"names",
       "text file; url filespec; url filelocation; url fileurl; text file1stfolder; text filefolder",
       {},
       "<file/> <filespec/> <filelocation/> <fileurl/> <file1stfolder/> <filefolder/>",
       "a.pdf file://srv/share/in/a.pdf file://srv/share/in file://srv/share/in in in",
       ""},
      {"one of another type spoils no other",
       "text file; url filespec; text filelocation",
       {},
       "<file/><filelocation/>",
       "! a.pdf<filelocation/>",
       ""},
      {"the anchor is not defined", "text file", {}, "<file/>", "! <file/>", ""},
      {"type", kAttributes, {{"files Query", D({{"Type", "PDF"}})}}, "<filetype/>", "PDF", kAsked},
      {"identifier", kAttributes, {{"files Query", D({{"VexoIDStr", "0A1B2C"}})}}, "<vexoid/>", "0A1B2C", kAsked},
      {"missing keys", kAttributes, {{"files Query", D({})}}, "<filetype/>", "UNKNOWN", kAsked},
      {"an identifier of another kind",
       kAttributes,
       {{"files Query", D({{"VexoIDStr", 5}})}},
       "<vexoid/>",
       "000000",
       kAsked},
      {"null", kAttributes, {{"files Query", NQ_TAny()}}, "<vexoid/>", "000000", kAsked},
      {"the service fails", kAttributes, {}, "<filetype/>", "UNKNOWN", kAsked},
      {"there is no service",
       kAttributes,
       {},
       "<filetype/> <vexoid/>",
       "UNKNOWN 000000",
       "",
       [](Office& office) { office.system.SetFileServerProxy(nullptr); }},
  };
  for (const Row& row : rows) Check(row);
}

// What fails is asked for again by the next token, as far as a call may ask.
TEST(SystemNameGroups, RequestsOfACallAreLimited) {
  constexpr char kNames[] =
      "text jobid; text job; text jobcustomer; text customerinfo1; text containername; text filetype; text taskowner; "
      "text vxtpr:productid";
  const std::pair<const char*, const char*> rows[] = {
      {"<job/><job/><job/>", "jobs ij file://h/a; jobs ij file://h/a"},
      {"<job/><filetype/><taskowner/>", "jobs ij file://h/a; files Query file://h/a"},
      {"<containername/><jp.a/><customerinfo1/>", "containers FindParentContainer file://h/a; jobs ij file://h/a"},
      {"<pp.a/><ppp.a/><vxtpr:productid/>",
       "products GetProductPartFromURL file://h/a; products GetProductPartFromURL file://h/a"},
  };
  const AT_TDictTicket ticket(D({}));
  for (const auto& [text, requests] : rows) {
    Office office;
    Names names(kNames);
    TNameLimits limits;
    limits.queries = 2;
    names.SetLimits(limits);
    for (int call = 1; call <= 2; ++call) {
      office.system.ResetVexoNames(names, U("file://h/a"), ticket);
      Resolved(names, text);
      EXPECT_EQ(office.Asked(), requests) << call;
    }
    limits.queryMilliseconds = 0;
    names.SetLimits(limits);
    office.system.ResetVexoNames(names, U("file://h/a"), ticket);
    names.SetDebugLevel(2);
    system_test::Output output;
    EXPECT_EQ(Resolved(names, "<filetype/>"), "UNKNOWN");
    EXPECT_NE(output.Take().find("VexoNameUtils: More time for queries than the limit allows\n"), std::string::npos);
    EXPECT_EQ(office.Asked(), "");
  }
}

TEST(SystemNameGroups, FirstFolder) {
  const struct {
    const char* url;
    const char* folder;
  } rows[] = {
      {"host/share/dir/name", "share"}, {"/share/name", ""}, {"a/b", ""}, {"a//b", ""}, {"name", ""}, {"", ""},
  };
  for (const auto& row : rows) {
    Office office;
    Names names("text file1stfolder; url filespec");
    office.system.ResetVexoNames(names, U(row.url), D({}), D({}));
    EXPECT_EQ(Resolved(names, "<file1stfolder/>"), row.folder) << row.url;
  }
}

TEST(SystemNameGroups, TicketAndOwner) {
  constexpr char kNames[] =
      "text id; text shortid; text wfid; text taskname; text ticketname; text operator; text taskowner; url fileurl";
  constexpr char kAsked[] = "accounts GetUser ann@north";
  const Row rows[] = {
      {"ticket",
       kNames,
       {},
       "<id/> <shortid/> <wfid/> <taskname/> <ticketname/> <operator/> <fileurl/>",
       "T1 1 W1 Rip Books ann file://srv/hot",
       ""},
      {"owner",
       kNames,
       {{"accounts GetUser", D({{"EMail", "ann@north.example"}})}},
       "<taskowner/>",
       "ann@north.example",
       kAsked},
      {"an owner without an address", kNames, {{"accounts GetUser", D({})}}, "<taskowner/>|", "|", kAsked},
      {"an address of another kind",
       kNames,
       {{"accounts GetUser", D({{"EMail", 5}})}},
       "<taskowner/>",
       "! <taskowner/>",
       kAsked},
      {"the reply is null", kNames, {{"accounts GetUser", NQ_TAny()}}, "<taskowner/>", "! <taskowner/>", kAsked},
      {"the service fails", kNames, {}, "<taskowner/>", "! <taskowner/>", kAsked},
      {"there is no service",
       kNames,
       {},
       "<taskowner/>",
       "! <taskowner/>",
       "",
       [](Office& office) { office.system.SetAAProxy(nullptr); }},
      {"the anchor is not defined", "text wfid", {}, "<wfid/>", "! <wfid/>", ""},
  };
  for (const Row& row : rows) Check(row);
}

TEST(SystemNameGroups, TicketsOfOtherShapes) {
  const struct {
    system_test::Entries ticket;
    const char* text;
    const char* result;
    const char* requests;
  } rows[] = {
      {{{"TicketPath", "/a/Default*"}}, "<ticketname/>", "Default", ""},
      {{{"TicketPath", "*plain*"}}, "<ticketname/>", "plain", ""},
      {{{"TicketPath", "a/b/"}}, "<ticketname/>|", "|", ""},
      {{{"TicketPath", "/a/Other"}, {"Settings", D({{"WFLab", "Books"}})}}, "<ticketname/>", "Other", ""},
      {{{"TicketPath", "Default"}, {"Settings", D({{"WFLab", 5}})}}, "<id/><ticketname/>", "! <ticketname/>", ""},
      {{{"TicketPath", "/a/Other"}, {"Settings", 5}}, "<ticketname/>", "Other", ""},
      {{{"TicketID", "T"}, {"WorkflowID", 5}}, "<id/>", "T", ""},
      {{{"Settings", D({{"Inputfolder", 5}})}}, "<id/><fileurl/>", "! <fileurl/>", ""},
      {{{"TicketID", 5}}, "<id/>", "! <id/>", ""},
      {{{"Operator", D({{"UserName", "ann"}})}}, "<taskowner/>", "! <taskowner/>", "accounts GetUser ann"},
      {{{"Operator", 5}}, "<id/>|<operator/>", "! |<operator/>", ""},
  };
  for (const auto& row : rows) {
    Office office;
    const AT_TDictTicket ticket(D(row.ticket));
    Names names("text id; text ticketname; text operator; text taskowner; url fileurl");
    office.system.ResetVexoNames(names, U("file:///a"), ticket);
    EXPECT_EQ(Resolved(names, row.text), row.result) << &row - rows;
    EXPECT_EQ(office.Asked(), row.requests) << &row - rows;
  }
}

TEST(SystemNameGroups, Product) {
  constexpr char kNames[] =
      "text jobid; text vxtpr:productid; text vxtpr:productname; text vxtpr:productcusemail1; "
      "url vxtpr:productpartdatazone; text vxtpr:productamount; text vxtpr:other";
  constexpr char kAsked[] =
      "jobs ij file://srv/share/in/a.pdf; products GetProductPartFromURL file://srv/share/in/a.pdf";
  const auto part = [](const NQ_TAny& reply) {
    return Replies{{"jobs ij", A({false, 0, ""})}, {"products GetProductPartFromURL", reply}};
  };
  const auto used = [&](std::initializer_list<NQ_TAny> uses) { return part(D({{"p.productusage", A(uses)}})); };
  const Row rows[] = {
      {"known", kNames, part(D({{"p.prodid", "P1"}, {"p.name", "Book"}, {"pp.folder", U("file://srv/p")}})),
       "<vxtpr:productid/> <vxtpr:productname/> <vxtpr:productpartdatazone/>", "P1 Book file://srv/p", kAsked},
      {"missing keys", kNames, part(D({{"p.name", "Book"}})), "<vxtpr:productname/><vxtpr:productcusemail1/>",
       "! Book<vxtpr:productcusemail1/>", kAsked},
      {"entries of another kind", kNames, part(D({{"p.prodid", 5}, {"p.name", "Book"}, {"pp.folder", "x"}})),
       "<vxtpr:productname/><vxtpr:productid/><vxtpr:productpartdatazone/>",
       "! Book<vxtpr:productid/><vxtpr:productpartdatazone/>", kAsked},
      {"the zone is the file's folder", kNames, part(D({{"pp.url", U("file://srv/p/a.pdf")}})),
       "<vxtpr:productpartdatazone/>", "file://srv/p", kAsked},
      {"amount", kNames,
       used({5, D({{"jid", "J9"}, {"amount", 1}}), D({{"jid", ""}}), D({{"jid", ""}, {"amount", "x"}}),
             D({{"jid", ""}, {"amount", 12}}), D({{"jid", ""}, {"amount", 13}})}),
       "<vxtpr:productamount/>", "12", kAsked},
      {"amounts for other jobs", kNames, used({D({{"jid", "J9"}, {"amount", 1}})}), "<vxtpr:productamount/>",
       "! <vxtpr:productamount/>", kAsked},
      {"a name that the tables do not have", kNames, part(D({{"p.name", "Book"}})),
       "<vxtpr:other/><vxtpr:productname/>", "! <vxtpr:other/>Book", kAsked},
      {"nothing is known", kNames, part(NQ_TAny::Illegal()), "<vxtpr:productname/><vxtpr:productamount/>",
       "! <vxtpr:productname/><vxtpr:productamount/>", kAsked},
      {"the reply is of another kind", kNames, part(5), "<vxtpr:productname/>", "! <vxtpr:productname/>", kAsked},
      {"the service fails",
       kNames,
       {{"jobs ij", A({false, 0, ""})}},
       "<vxtpr:productname/>",
       "! <vxtpr:productname/>",
       kAsked},
      {"there is no service",
       kNames,
       {{"jobs ij", A({false, 0, ""})}},
       "<vxtpr:productname/>",
       "! <vxtpr:productname/>",
       kAskUrl,
       [](Office& office) { office.system.SetProductProxy(nullptr); }},
      {"the job's anchor is not defined", "text vxtpr:productid; text vxtpr:productname", part(D({})),
       "<vxtpr:productname/>", "! <vxtpr:productname/>", ""},
  };
  for (const Row& row : rows) Check(row);
}

TEST(SystemNameGroups, RequestsHaveAllTheirFields) {
  const NQ_TAny inJob = A({true, 0, "J7"});
  const char* const product = ", Interface = com.vemox.nq.core.server.products.vx.session.ProductCpp}";
  const struct {
    const char* names;
    Replies replies;
    const char* text;
    std::string request;    // the last one
    const char* part = "";  // of the product, in the ticket
  } rows[] = {
      {"text jobid; text job", {}, "<job/>", "{M = ij, ElemType = job, P1 = file://h/a, P2 = 1, P3 = 1}"},
      {"text jobid; text job", {{"jobs ij", inJob}}, "<job/>", "{M = jinfo_cpp, ElemType = job, P1 = J7}"},
      {"text jobid; text jobcustomer; text customerinfo1",
       {{"jobs ij", inJob}, {"jobs jinfo_cpp", D({{"Customer", "C1"}})}},
       "<customerinfo1/>",
       "{M = cinfo_cpp, ElemType = job, P1 = C1}"},
      {"text jobid",
       {{"jobs ij", inJob}, {"jobs jinfo_cpp", D({{"JID", "J7"}})}},
       "<jp.a/>",
       "{M = jpgetcpp, ElemType = job, P1 = J7}"},
      {"text containername", {}, "<containername/>", "{M = FindParentContainer, P1 = file://h/a, P2 = 0}"},
      {"text filetype", {}, "<filetype/>", "{M = Query, P1 = file://h/a, P2 = {Type = (null)}, P3 = 0}"},
      {"text vexoid",
       {},
       "<vexoid/>",
       "{M = Query, P1 = file://h/a, P2 = {VexoID = (illegal), VexoIDStr = 36}, P3 = 0}"},
      {"text vxtpr:productid; text jobid",
       {{"jobs ij", A({})}},
       "<vxtpr:productid/>",
       std::string("{M = GetProductPartFromURL, ElemType = product, Parameters = [file://h/a], ParameterTypes = "
                   "[com.vemox.nq.core.server.nqtypes.NQ_TURL]") +
           product},
      {"text vxtpr:productid; text jobid",
       {{"jobs ij", A({})}},
       "<vxtpr:productid/>",
       std::string("{M = LoadProductPart, ElemType = product, Parameters = [PP1], ParameterTypes = "
                   "[java.lang.String]") +
           product,
       "PP1"},
      {"text vxtpr:productid",
       {{"products GetProductPartFromURL", D({{"p.id", "P1"}})}},
       "<pp.a/>",
       std::string("{M = LoadProductParameters, ElemType = product, Parameters = [P1], ParameterTypes = "
                   "[java.lang.String]") +
           product},
      {"text vxtpr:productid",
       {{"products GetProductPartFromURL", D({{"pp.id", "PP1"}})}},
       "<ppp.a/>",
       std::string("{M = LoadPartParameters, ElemType = product, Parameters = [PP1], ParameterTypes = "
                   "[java.lang.String]") +
           product},
  };
  for (const auto& row : rows) {
    Office office;
    office.replies = row.replies;
    const AT_TDictTicket ticket(D({{"ProductPartID", row.part}}));
    Names names(row.names);
    office.system.ResetVexoNames(names, U("file://h/a"), ticket);
    Resolved(names, row.text);
    EXPECT_EQ(office.LastRequest(), row.request) << row.text;
  }
}

}  // namespace
