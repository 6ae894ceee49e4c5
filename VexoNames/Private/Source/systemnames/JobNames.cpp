// VexoNameUtils: names of the job.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NQ_TBoxed.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Requests.h"

using systemnames::Ask;
using systemnames::AttemptIfDefined;
using systemnames::kJobNames;
using systemnames::TextOrEmpty;

namespace {

constexpr char kAnchor[] = "jobid";  // its raw data leads to the job

template <class T>
bool SetAs(TName& names, const NQ_TString& name, const NQ_TAny& value) {
  const auto* const held = value.As<T>();
  if (held == nullptr) return false;
  if constexpr (std::is_same_v<T, NQ_TInt32>)
    names.SetValue(name, int{held->Value()});
  else
    names.SetValue(name, *held);
  return true;
}

// By the kind of the value; what is of another kind sets nothing.
constexpr bool (*kSetters[])(TName& names, const NQ_TString& name, const NQ_TAny& value) = {
    SetAs<NQ_TString>, SetAs<NQ_TTime>, SetAs<NQ_TURL>, SetAs<NQ_TInt32>};

// What a name holds when the job says nothing: the empty text, or the current time.
void SetUnknown(TName& names, const NQ_TString& name) {
  const TName::TName_Type type = names.GetType(name);
  if (type == TName::TName_TypeString) names.SetValue(name, NQ_TString());
  if (type == TName::TName_TypeTime) names.SetValue(name, NQ_TTime());
}

}  // namespace

void VexoNameUtils::SetJobLookupHandler(TName& names) const {
  for (const auto& row : kJobNames) systemnames::Install(names, row.name, handlers_->job);
}

bool VexoNameUtils::LookupJobInfo(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] { CalculateJobVexoNames(FindJobInfo(names), names); });
}

void VexoNameUtils::CalculateJobVexoNames(const NQ_TDict& job, TName& names) {
  for (const auto& row : kJobNames)
    AttemptIfDefined(names, row.name, [&](const NQ_TString& name) {
      const NQ_TAny* const value = job.ValueOfKey(row.key);
      if (value == nullptr) return SetUnknown(names, name);
      for (const auto set : kSetters)
        if (set(names, name, *value)) return;
    });
}

// Asks once: what was found takes the place of what led to it, also when it is nothing.
NQ_TDict VexoNameUtils::FindJobInfo(TName& names) const {
  const NQ_TAny lead = names.GetRawData(kAnchor);
  if (const auto* const job = lead.As<NQ_TDict>(); job != nullptr) return *job;
  J_TProxy* const jobs = jobs_;
  const auto* const id = lead.As<NQ_TString>();
  const auto* const url = lead.As<NQ_TURL>();
  if (jobs == nullptr || (id == nullptr && url == nullptr)) return {};
  const NQ_TString jobId = id != nullptr ? *id : Ask(names, [&] { return systemnames::AskForJobOf(*jobs, *url); });
  NQ_TDict job = jobId.Empty() ? NQ_TDict() : Ask(names, [&] { return systemnames::AskForJob(*jobs, jobId); });
  names.SetRawData(kAnchor, job);
  return job;
}

NQ_TString VexoNameUtils::FindJID(TName& names) const { return TextOrEmpty(FindJobInfo(names), "JID"); }
