// VexoNameUtils: names of the task's ticket and its owner.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Services/A_TProxy.h"
#include "Ticket/AT_TTicket.h"

using systemnames::Ask;
using systemnames::AttemptIfDefined;
using systemnames::Entry;
using systemnames::Held;

namespace {

constexpr struct {
  const char* name;
  NQ_TString (AT_TTicket::*get)() const;
} kTexts[] = {
    {"id", &AT_TTicket::GetTicketID},
    {"shortid", &AT_TTicket::GetShortID},
    {"wfid", &AT_TTicket::GetWorkflowID},
    {"taskname", &AT_TTicket::GetTaskName},
};

// The last segment of its path without "*"; a ticket of no particular name goes by its workflow's label.
NQ_TString TicketName(const AT_TTicket& ticket) {
  const NQ_TString path = ticket.GetTicketPath();
  NQ_TString name = path.Substring(path.Find('/', -1, true) + 1).Replace("*", "");
  if (name != "Default") return name;
  const NQ_TDict settings = ticket.GetSettings();
  return settings.HasKey("WFLab") ? Entry<NQ_TString>(settings, "WFLab") : name;
}

NQ_TString AccountOf(const AT_TTicket& ticket) {
  const AT_TOperator who = ticket.GetOperator();
  return who.domain.Empty() ? who.userName : who.userName + "@" + who.domain;
}

}  // namespace

void VexoNameUtils::SetTicketLookupHandler(TName& names) const {
  systemnames::InstallAll(names, systemnames::kTicketNames, handlers_->ticket);
}

void VexoNameUtils::SetTaskOwnerLookupHandler(TName& names) const {
  systemnames::Install(names, "taskowner", handlers_->taskOwner);
}

bool VexoNameUtils::LookupTicket(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TAny ticket = names.GetRawData("id");
    CalculateTicketVexoNames(Held<AT_TTicket>(ticket), names);
  });
}

void VexoNameUtils::CalculateTicketVexoNames(const AT_TTicket& ticket, TName& names) {
  for (const auto& row : kTexts)
    if (const NQ_TString name(row.name); names.IsDefined(name)) names.SetValue(name, (ticket.*row.get)());
  AttemptIfDefined(names, "ticketname", [&](const NQ_TString& name) { names.SetValue(name, TicketName(ticket)); });
  AttemptIfDefined(names, "fileurl", [&](const NQ_TString& name) {
    names.SetValue(name, Entry<NQ_TURL>(ticket.GetSettings(), "Inputfolder"));
  });
  AttemptIfDefined(names, "operator",
                   [&](const NQ_TString& name) { names.SetValue(name, ticket.GetOperator().userName); });
}

bool VexoNameUtils::LookupTaskOwner(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TAny ticket = names.GetRawData("taskowner");
    const NQ_TString account = AccountOf(Held<AT_TTicket>(ticket));
    A_TProxy* const accounts = accounts_;
    if (accounts == nullptr) nq::Throw(NQ_EException("There is no user-account service"));
    names.SetValue(key, Ask(names, [&] { return accounts->GetUser(account).GetEMail(); }));
  });
}
