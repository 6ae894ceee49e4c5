#include "Task.h"

#include <filesystem>
#include <iostream>

#include "CFS/Server/cfs_tproxy.h"
#include "Errors.h"
#include "JsonValue.h"
#include "KeyTable.h"
#include "NQ_TArray.h"
#include "Services/A_TProxy.h"
#include "Services/CW_TProxy.h"
#include "Services/FS_TProxy.h"
#include "Services/J_TProxy.h"
#include "Services/P_TProxy.h"
#include "Text.h"
#include "Ticket/AT_TDictTicket.h"
#include "VexoNameUtils.h"

namespace {

constexpr char kXmlFiles[] = "--LiveXMLList--";  // among the workflow's parameters

NQ_TDict ReadDict(const TJsonNode& object) {
  NQ_TDict read;
  for (const auto& [key, value] : object.Members())
    read.Add(NQ_TString(std::string_view(key)), ReadValue(TJsonNode(object, key, value)));
  return read;
}

// ---- tickets

struct TTicketReading {
  const std::string& folder;
  NQ_TDict content{};

  void Add(const TJsonNode& node, NQ_TAny&& value) { content.Add(NQ_TString(node.Key()), std::move(value)); }
};

void AddText(const TJsonNode& value, TTicketReading& ticket) { ticket.Add(value, value.Text()); }
void AddDict(const TJsonNode& value, TTicketReading& ticket) { ticket.Add(value, ReadDict(value)); }

// A string is what `textIs` makes of it.
template <class TextIs>
NQ_TArray ReadUrls(const TJsonNode& array, TextIs textIs) {
  if (!array.Value().is_array()) array.FailKind("an array of URLs");
  NQ_TArray urls;
  for (const TJson& value : array.Value()) {
    const std::string place = std::to_string(urls.Count());
    const TJsonNode node(array, place, value);
    urls.Add(value.is_string() ? textIs(node) : ReadUrl(node));
  }
  return urls;
}

void AddInputs(const TJsonNode& value, TTicketReading& ticket) { ticket.Add(value, ReadUrls(value, &ReadUrl)); }

void AddParameters(const TJsonNode& object, TTicketReading& ticket) {
  NQ_TDict parameters;
  for (const auto& [key, value] : object.Members()) {
    const TJsonNode node(object, key, value);
    const auto fileBeside = [&](const TJsonNode& name) {
      if (name.Text().Empty()) name.Fail("a file needs a name");
      const std::filesystem::path file = std::filesystem::path(ticket.folder) / std::string(name.Text().Narrow());
      return NQ_TURL(NQ_TString("file://" + std::filesystem::absolute(file).string()));
    };
    const bool files = key == kXmlFiles;
    parameters.Add(NQ_TString(node.Key()), files ? NQ_TAny(ReadUrls(node, fileBeside)) : ReadValue(node));
  }
  ticket.Add(object, parameters);
}

constexpr TKeyRow<TTicketReading> kTicketKeys[] = {
    {"TicketPath", &AddText},
    {"TicketID", &AddText},
    {"TaskName", &AddText},
    {"JobID", &AddText},
    {"ShortID", &AddText},
    {"WorkflowID", &AddText},
    {"ProductPartID", &AddText},
    {"Operator", &AddDict},
    {"Settings", &AddDict},
    {"InputURLs", &AddInputs},
    {"WorkflowParameters", &AddParameters},
};

// What the engine fails with here is an input's or a service's fault.
template <class Action>
void Attempt(const char* what, TServiceCalls& calls, Action action) {
  try {
    action();
  } catch (const NQ_EException& error) {
    const std::string failure = calls.TakeFailure();
    if (!failure.empty()) throw TServiceError(what + (": " + failure));
    throw TInputError(what + (": " + Printable(error.NQ_Message().Narrow())));
  }
}

}  // namespace

/// The services under the names that a context gives them.
struct TTask::TSystem {
  CFS_TProxy configuration;
  J_TProxy jobs;
  P_TProxy products;
  CW_TProxy containers;
  FS_TProxy files;
  A_TProxy accounts;
  VexoNameUtils names;

  TSystem() {
    const auto at = [](NQM_TClient& client, const char* name) {
      client.SetConnectionAddress({}, name, 0, TLocationMode_Default);
    };
    at(configuration, "CFS"), at(jobs.Client(), "jobs"), at(products.Client(), "products");
    at(containers, "containers"), at(files, "files"), at(accounts, "accounts");
    names.SetCFSProxy(&configuration), names.SetJobProxy(&jobs), names.SetProductProxy(&products);
    names.SetContainerProxy(&containers), names.SetFileServerProxy(&files), names.SetAAProxy(&accounts);
  }
};

struct TTask::TReading {
  TTask& task;
  const std::string& folder;
};

TTask::TTask() = default;
TTask::~TTask() = default;

void TTask::ReadTicket(const TJsonNode& value, TReading& reading) {
  TTicketReading ticket{reading.folder};
  ReadMembers(value, kTicketKeys, ticket);
  reading.task.ticket_ = std::make_unique<AT_TDictTicket>(ticket.content);
}

void TTask::ReadInputs(const TJsonNode& value, TReading& reading) {
  if (!value.Value().is_array()) value.FailKind("an array of URLs and numbers");
  for (const TJson& input : value.Value()) {
    const std::string place = std::to_string(reading.task.inputs_.size());
    const TJsonNode node(value, place, input);
    if (input.is_number() && node.Int32() < 1) node.Fail("expected the number of an input of the ticket, from 1");
    if (input.is_number())
      reading.task.inputs_.emplace_back(static_cast<unsigned int>(node.Int32()));
    else
      reading.task.inputs_.emplace_back(ReadUrl(node));
  }
}

void TTask::ReadJob(const TJsonNode& value, TReading& reading) { reading.task.job_ = ReadDict(value); }
void TTask::ReadProduct(const TJsonNode& value, TReading& reading) { reading.task.product_ = ReadDict(value); }

void TTask::Read(const TJsonNode& object, const std::string& folder) {
  constexpr TKeyRow<TReading> kKeys[] = {
      {"ticket", &TTask::ReadTicket},
      {"inputs", &TTask::ReadInputs},
      {"job", &TTask::ReadJob},
      {"product", &TTask::ReadProduct},
  };
  TReading reading{*this, folder};
  ReadMembers(object, kKeys, reading);
  system_ = std::make_unique<TSystem>();
  if (inputs_.empty()) inputs_.emplace_back(1U);
  if (ticket_ == nullptr) ticket_ = std::make_unique<AT_TDictTicket>(NQ_TDict());
  const std::size_t ofTicket = ticket_->GetInputURLs().size();
  for (const TInput& input : inputs_) {
    const auto* const number = std::get_if<unsigned int>(&input);
    if (number != nullptr && *number > ofTicket)
      object.Fail("the ticket has no input " + std::to_string(*number) + " among its \"InputURLs\"");
  }
}

void TTask::Define(TName& names, TServiceCalls& calls) {
  if (!IsGiven()) return;
  const unsigned int before = names.GetTNames().Count();
  system_->names.SetDebugLevel(names.GetDebugLevel());
  Attempt("defining the system names", calls,
          [&] { system_->names.DefineSystemVexoNames(names, ticket_->GetTaskName()); });
  const std::string failure = calls.Forgive();
  if (names.GetTNames().Count() == before && !failure.empty())
    std::cerr << "vexonames: no system names are defined: " << failure << '\n';
}

void TTask::Reset(TName& names, std::size_t input, TServiceCalls& calls) {
  if (!IsGiven()) return;
  Attempt("resetting the system names", calls, [&] { ResetTo(names, inputs_[input]); });
}

void TTask::ResetTo(TName& names, const TInput& input) const {
  const auto* const number = std::get_if<unsigned int>(&input);
  if (job_ || product_)
    system_->names.ResetVexoNames(names, UrlOf(input), *ticket_, job_.value_or(NQ_TDict()),
                                  product_.value_or(NQ_TDict()));
  else if (number != nullptr)
    system_->names.ResetVexoNames(names, *ticket_, *number);
  else
    system_->names.ResetVexoNames(names, UrlOf(input), *ticket_);
}

NQ_TURL TTask::UrlOf(const TInput& input) const {
  const auto* const number = std::get_if<unsigned int>(&input);
  return number == nullptr ? std::get<NQ_TURL>(input) : ticket_->GetInputURLs()[*number - 1];
}

NQ_TString TTask::InputText(std::size_t input) const { return UrlOf(inputs_[input]).Text(); }
