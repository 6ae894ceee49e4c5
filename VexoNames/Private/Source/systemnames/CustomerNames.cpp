// VexoNameUtils: names of the job's customer.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Requests.h"

using systemnames::kCustomerNames;
using systemnames::TextOrEmpty;

namespace {

// A job whose customer cannot be told is another matter than a job without a customer: nothing is asked for it.
NQ_TDict FindCustomer(TName& names, J_TProxy* jobs) {
  NQ_TString customer;
  const bool told = names.Resolve("<jobcustomer/>", customer);
  if (customer.Empty() || jobs == nullptr) return {};
  if (!told) nq::Throw(NQ_EException("The job's customer cannot be told"));
  return systemnames::Ask(names, [&] { return systemnames::AskForCustomer(*jobs, customer); });
}

}  // namespace

void VexoNameUtils::SetCustomerLookupHandler(TName& names) const {
  for (const auto& row : kCustomerNames) systemnames::Install(names, row.name, handlers_->customer);
}

bool VexoNameUtils::LookupCustomerInfo(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value,
                              [&] { CalculateCustomerVexoNames(FindCustomer(names, jobs_), names); });
}

void VexoNameUtils::CalculateCustomerVexoNames(const NQ_TDict& customer, TName& names) {
  for (const auto& row : kCustomerNames) {
    const NQ_TString name(row.name);
    if (!names.IsDefined(name)) continue;
    try {
      names.SetValue(name, TextOrEmpty(customer, row.key));
    } catch (...) {
      if (!row.emptyWhenUnfit) throw;
      names.SetValue(name, NQ_TString());
    }
  }
}
