#include "Ticket/AT_TDictTicket.h"

#include "NQ_EException.h"
#include "NQ_TArray.h"

namespace {

template <class T>
T Held(const NQ_TAny& value, const char* key) {
  if (const auto* const held = value.As<T>(); held != nullptr) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(key, value));
}

template <class T = NQ_TString>
T Entry(const NQ_TDict& content, const char* key) {
  const NQ_TAny* const value = content.ValueOfKey(key);
  return value == nullptr ? T() : Held<T>(*value, key);
}

}  // namespace

NQ_TString AT_TDictTicket::GetTicketPath() const { return Entry(content_, "TicketPath"); }
NQ_TString AT_TDictTicket::GetTicketID() const { return Entry(content_, "TicketID"); }
NQ_TString AT_TDictTicket::GetTaskName() const { return Entry(content_, "TaskName"); }
NQ_TString AT_TDictTicket::GetJobID() const { return Entry(content_, "JobID"); }
NQ_TString AT_TDictTicket::GetProductPartID() const { return Entry(content_, "ProductPartID"); }
NQ_TString AT_TDictTicket::GetShortID() const { return Entry(content_, "ShortID"); }
NQ_TString AT_TDictTicket::GetWorkflowID() const { return Entry(content_, "WorkflowID"); }
NQ_TDict AT_TDictTicket::GetSettings() const { return Entry<NQ_TDict>(content_, "Settings"); }
NQ_TDict AT_TDictTicket::GetWorkflowParameters() const { return Entry<NQ_TDict>(content_, "WorkflowParameters"); }

AT_TOperator AT_TDictTicket::GetOperator() const {
  const auto who = Entry<NQ_TDict>(content_, "Operator");
  return {Entry(who, "UserName"), Entry(who, "Domain")};
}

std::vector<NQ_TURL> AT_TDictTicket::GetInputURLs() const {
  std::vector<NQ_TURL> urls;
  const auto entries = Entry<NQ_TArray>(content_, "InputURLs");
  for (NQ_TConstIterator i(entries); !i.IsDone(); i.Next()) urls.push_back(Held<NQ_TURL>(i.Value(), "InputURLs"));
  return urls;
}
