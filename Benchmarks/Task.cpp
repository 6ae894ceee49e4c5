#include "Task.h"

#include <initializer_list>
#include <map>

#include "CFS/Server/cfs_tproxy.h"
#include "NQ_TArray.h"
#include "NQ_TTree.h"
#include "Services/A_TProxy.h"
#include "Services/CW_TProxy.h"
#include "Services/FS_TProxy.h"
#include "Services/J_TProxy.h"
#include "Services/P_TProxy.h"
#include "TName.h"
#include "Ticket/AT_TDictTicket.h"
#include "VexoNameUtils.h"

namespace bench {
namespace {

using Entries = std::initializer_list<std::pair<const char*, NQ_TAny>>;

template <class Dict = NQ_TDict>
NQ_TAny Filled(Entries entries) {
  Dict all;
  for (const auto& [key, value] : entries) all.Add(key, NQ_TAny(value));
  return all;
}

NQ_TAny Listed(std::initializer_list<NQ_TAny> values) {
  NQ_TArray all;
  for (const NQ_TAny& value : values) all.Add(value);
  return all;
}

NQ_TAny Url(const char* text) { return NQ_TURL(NQ_TString(text)); }

// ---- the names, and templates that use every group of them

constexpr struct {
  const char* type;
  std::initializer_list<const char*> names;
} kNames[] = {
    {"Name",
     {"jobid",
      "job",
      "jobfolder",
      "joborderid",
      "jobsuborderid",
      "jobdescription",
      "jobcategory",
      "jobcategory2",
      "jobcategory3",
      "jobcustomer",
      "jobcustomerref",
      "jobcsr",
      "jobcsremail",
      "jobprojectid",
      "jobcustomername",
      "jobcustomerdesc",
      "customercontact1",
      "customeremail1",
      "customerinfo1",
      "containername",
      "file",
      "file1stfolder",
      "filefolder",
      "filetype",
      "vexoid",
      "id",
      "shortid",
      "wfid",
      "taskname",
      "ticketname",
      "operator",
      "taskowner",
      "vxtpr:productid",
      "vxtpr:productname",
      "vxtpr:productdesc",
      "vxtpr:productpartname",
      "vxtpr:productamount"}},
    {"URL", {"joburl", "jobfolderurl", "filespec", "filelocation", "fileurl", "containerurl"}},
    {"Time", {"jobduedate", "jobduetime"}},
    {"Number", {"inputnr"}},
};

constexpr struct {
  const char* text;
  const char* result;
} kTemplates[] = {
    {"<<jobid/>>_<<job/>>/<<file/>>", "J-2041_Spring catalogue/cover.pdf"},
    {"<<joborderid/>>-<<jobsuborderid/>> <<jobdescription/>>", "PO-2026-B 48 pages, saddle stitched"},
    {"<<jobcategory/>>/<<jobcategory2/>>/<<jobcategory3/>>", "Catalogues/Offset/A4"},
    {"<<jobcustomer/>> <<jobcustomername/>>", "C-117 Imprimerie Lefèvre & Fils"},
    {"<<jobcustomerdesc/>>, <<jobcustomerref/>>", "Magazines and catalogues, SC26"},
    {"<<customercontact1/>> <<customeremail1/>> (<<customerinfo1/>>)",
     "Marie Lefèvre marie@lefevre.example (Net 30 days)"},
    {"<<jobcsr/>> <<jobcsremail/>> <<jobprojectid/>>", "Eva Brandt eva@print.example PR-9"},
    {"<<joburl/>>/<<jobfolder/>>", "file://ps-storage/jobs/J-2041/Spring catalogue"},
    {"<<containername/>>: <<containerurl/>>", "Hotfolder 1: file://ps-storage/hotfolders/press1"},
    {"<<filelocation/>> <<file1stfolder/>> <<filefolder/>>", "file://ps-storage/hotfolders/press1/in press1 in"},
    {"<<file elem=\".,0\"/>>_<<inputnr format=\"%03d\"/>>.<<filetype/>>", "cover_001.PDF"},
    {"<<filetype/>> <<vexoid/>> <<filespec/>>", "PDF 0A1B2C file://ps-storage/hotfolders/press1/in/cover.pdf"},
    {"<<id/>> <<shortid/>> <<wfid/>>", "T-88213 213 WF-7"},
    {"<<taskname/>> of <<ticketname/>> by <<operator/>>", "Impose of Spring books by ann"},
    {"<<taskowner/>>", "ann@print.example"},
    {"<<vxtpr:productid/>> <<vxtpr:productname/>> x <<vxtpr:productamount/>>", "B-77 The Lighthouse x 5000"},
    {"<<vxtpr:productdesc/>>: <<vxtpr:productpartname/>>", "Novel: Cover, outside"},
    {"<<jp.Paper/>>, <<pp.Binding/>>, <<ppp.Side/>>", "Munken Lynx, thread, outside"},
    {"<<wfp.Due%20date/>>/<<wfp.Press/>>", "Friday/XL 106"},
    {"<<jobcustomername extract=\"0,10\"/>>_<<job/>>_<<file/>>", "Imprimerie_Spring catalogue_cover.pdf"},
};
static_assert(std::size(kTemplates) == 20);

NQ_TAny Records() {
  NQ_TTree records;
  for (const auto& row : kNames)
    for (const char* const name : row.names) records.Add(name, Filled<NQ_TTree>({{"Type", row.type}}));
  return records;
}

// ---- what the services reply

using Replies = std::map<NQ_TString, NQ_TAny>;

Replies Configuration() {
  return {{"ServerTreeName", "Shop"},
          {"/Resources/Shop/TemplateNames/global", "SystemNames"},
          {"/Resources/SystemNames", Records()}};
}

Replies JobReplies() {
  return {{"jinfo_cpp", Filled({{"JID", "J-2041"},
                                {"Name", "Spring catalogue"},
                                {"OrderId", "PO-2026"},
                                {"SubOrderId", "B"},
                                {"Description", "48 pages, saddle stitched"},
                                {"DueDate", NQ_TTime::FromMilliseconds(1.78e12)},
                                {"Category", "Catalogues"},
                                {"Category2", "Offset"},
                                {"Category3", "A4"},
                                {"Customer", "C-117"},
                                {"CustomerRef", "SC26"},
                                {"CSR", "Eva Brandt"},
                                {"CSREMail", "eva@print.example"},
                                {"ProjectId", "PR-9"},
                                {"Url", Url("file://ps-storage/jobs/J-2041")}})},
          {"cinfo_cpp", Filled({{"Name", "Imprimerie Lefèvre & Fils"},
                                {"Description", "Magazines and catalogues"},
                                {"Contact1", "Marie Lefèvre"},
                                {"EMail1", "marie@lefevre.example"},
                                {"Info1", "Net 30 days"}})},
          {"jpgetcpp", Listed({Listed({"Paper", "S", 0, "Munken Lynx"}), Listed({"Colours", "S", 0, "4/4"})})}};
}

Replies ProductReplies() {
  return {{"LoadProductPart", Filled({{"p.id", "P1"},
                                      {"pp.id", "PP1"},
                                      {"p.prodid", "B-77"},
                                      {"p.name", "The Lighthouse"},
                                      {"p.desc", "Novel"},
                                      {"pp.name", "Cover, outside"},
                                      {"p.productusage", Listed({Filled({{"jid", "J-2041"}, {"amount", 5000}})})}})},
          {"LoadProductParameters", Filled({{"Binding", "thread"}})},
          {"LoadPartParameters", Filled({{"Side", "outside"}})}};
}

Replies ContainerReplies() {
  return {
      {"FindParentContainer", Filled({{"Name", "Hotfolder 1"}, {"URL", Url("file://ps-storage/hotfolders/press1")}})}};
}

Replies FileReplies() { return {{"Query", Filled({{"Type", "PDF"}, {"VexoIDStr", "0A1B2C"}})}}; }

Replies AccountReplies() { return {{"GetUser", Filled({{"EMail", "ann@print.example"}})}}; }

constexpr struct {
  const char* name;
  Replies (*replies)();
} kServices[] = {
    {"bench configuration", Configuration}, {"bench jobs", JobReplies},   {"bench products", ProductReplies},
    {"bench containers", ContainerReplies}, {"bench files", FileReplies}, {"bench accounts", AccountReplies},
};

// By method; the configuration server by path.
NQ_TAny Answer(const Replies& replies, const NQ_TDict& request) {
  const auto& method = *request.Get<NQ_TString>("M");
  const auto reply = replies.find(method == "[]" ? *request.Get<NQ_TString>("P1") : method);
  if (reply == replies.end()) nq::Throw(NQ_EException("There is no reply", request));
  return reply->second;
}

NQ_TDict TicketContent() {
  return *Filled({{"TicketID", "T-88213"},
                  {"ShortID", "213"},
                  {"WorkflowID", "WF-7"},
                  {"TaskName", "Impose"},
                  {"TicketPath", "/Workflows/Spring books*"},
                  {"Operator", Filled({{"UserName", "ann"}})},
                  {"JobID", "J-2041"},
                  {"ProductPartID", "PP1"},
                  {"WorkflowParameters", Filled({{"Due date", "Friday"}, {"Press", "XL 106"}})},
                  {"InputURLs", Listed({Url("file://ps-storage/hotfolders/press1/in/cover.pdf")})}})
              .As<NQ_TDict>();
}

/// Hands requests on, and notes where to and what they are.
class Watch final : public NQM_ITransport {
 public:
  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override {
    seen.emplace_back(NQM_TServices::OfProcess()->Find(address), request);
    return NQM_TServices::OfProcess()->Call(address, request, timeout);
  }

  std::vector<std::pair<std::shared_ptr<const NQM_TService>, NQ_TDict>> seen;
};

std::size_t SizeOf(const NQ_TAny& reply) {
  if (const auto* const entries = reply.As<NQ_TDict>(); entries != nullptr) return entries->Size();
  const auto* const rows = reply.As<NQ_TArray>();
  return rows == nullptr ? 0 : rows->Count();
}

}  // namespace

std::string TaskExpected() {
  std::string all;
  for (const auto& row : kTemplates) all += row.result + std::string("\n");
  return all;
}

// In the order in which the templates need them, with the sizes of the replies.
std::string RequestsExpected() {
  return "jinfo_cpp 15, cinfo_cpp 5, FindParentContainer 2, Query 2, Query 2, GetUser 1, LoadProductPart 7, "
         "jpgetcpp 2, LoadProductParameters 1, LoadPartParameters 1, ";
}

// ---- services

struct TaskServices::Proxies {
  CFS_TProxy configuration;
  J_TProxy jobs;
  P_TProxy products;
  CW_TProxy containers;
  FS_TProxy files;
  A_TProxy accounts;
};

TaskServices::TaskServices()
    : proxies_(std::make_unique<Proxies>()),
      system_(std::make_unique<VexoNameUtils>()),
      ticket_(std::make_unique<AT_TDictTicket>(TicketContent())),
      names_(std::make_unique<TName>()) {
  Proxies& p = *proxies_;
  NQM_TClient* const clients[] = {&p.configuration, &p.jobs.Client(), &p.products.Client(),
                                  &p.containers,    &p.files,         &p.accounts};
  static_assert(std::size(clients) == std::size(kServices));
  for (std::size_t i = 0; i < std::size(kServices); ++i) {
    clients[i]->SetConnectionAddress({}, kServices[i].name, 0, TLocationMode_Default);
    NQM_TServices::OfProcess()->Add({}, kServices[i].name, [replies = kServices[i].replies()](const NQ_TDict& request) {
      return Answer(replies, request);
    });
  }
  system_->SetCFSProxy(&p.configuration), system_->SetJobProxy(&p.jobs), system_->SetProductProxy(&p.products);
  system_->SetContainerProxy(&p.containers), system_->SetFileServerProxy(&p.files);
  system_->SetAAProxy(&p.accounts);
  system_->DefineVexoNames(*names_, *ticket_, 1);
}

TaskServices::~TaskServices() {
  for (const auto& row : kServices) NQM_TServices::OfProcess()->Remove({}, row.name);
}

void TaskServices::Reset() { system_->ResetVexoNames(*names_, *ticket_, 1); }

void TaskServices::Resolve(const NQ_TString& text, NQ_TString& result) const { names_->Resolve(text, result); }

// ---- engines

WholeTask::WholeTask(std::shared_ptr<TaskServices> services) : services_(std::move(services)) {
  for (const auto& row : kTemplates) templates_.emplace_back(row.text, NQ_TString());
}

void WholeTask::Run() {
  services_->Reset();
  for (auto& [text, result] : templates_) services_->Resolve(text, result);
}

std::string WholeTask::Text() const {
  std::string all;
  for (const auto& [text, result] : templates_) all += std::string(result.Narrow()) + '\n';
  return all;
}

std::string ResetAlone::Text() const {
  NQ_TString file;
  services_->Resolve("<<file/>>", file);
  return std::string(file.Narrow());
}

ServicesAlone::ServicesAlone(const std::shared_ptr<TaskServices>& services) {
  const auto watch = std::make_shared<Watch>();
  const auto before = NQM_TClient::SetTransport(watch);
  WholeTask(services).Run();
  NQM_TClient::SetTransport(before);
  for (const auto& [service, content] : watch->seen) requests_.push_back({service, content, {}});
}

void ServicesAlone::Run() {
  for (Request& request : requests_) request.reply = (*request.service)(request.content);
}

std::string ServicesAlone::Text() const {
  std::string all;
  for (const Request& request : requests_)
    all += std::string(request.content.Get<NQ_TString>("M")->Narrow()) + ' ' + std::to_string(SizeOf(request.reply)) +
           ", ";
  return all;
}

}  // namespace bench
