// VexoNameUtils: names of the job's customer.
#include "Handlers.h"
#include "NameGroups.h"
#include "Reading.h"
#include "Requests.h"

using systemnames::TextOrEmpty;

namespace {

constexpr struct {
  const char* name;
  const char* key;      // in what the job service says of a customer
  bool emptyWhenUnfit;  // what is no text counts as absent; else it fails the lookup
} kNames[] = {
    {"jobcustomername", "Name", false},     {"jobcustomerdesc", "Description", false},
    {"customercontact1", "Contact1", true}, {"customercontact2", "Contact2", true},
    {"customercontact3", "Contact3", true}, {"customeremail1", "EMail1", true},
    {"customeremail2", "EMail2", true},     {"customeremail3", "EMail3", true},
    {"customerinfo1", "Info1", true},       {"customerinfo2", "Info2", true},
    {"customerinfo3", "Info3", true},       {"customerinfo4", "Info4", true},
    {"customerinfo5", "Info5", true},
};

// A job whose customer cannot be told is another matter than a job without a customer.
NQ_TString CustomerOf(TName& names) {
  NQ_TString customer;
  if (!names.Resolve("<jobcustomer/>", customer)) nq::Throw(NQ_EException("The job's customer cannot be told"));
  return customer;
}

}  // namespace

void VexoNameUtils::SetCustomerLookupHandler(TName& names) const {
  for (const auto& row : kNames) systemnames::Install(names, row.name, handlers_->customer);
}

bool VexoNameUtils::LookupCustomerInfo(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TString customer = CustomerOf(names);
    J_TProxy* const jobs = jobs_;
    const bool asks = !customer.Empty() && jobs != nullptr;
    CalculateCustomerVexoNames(asks ? systemnames::AskForCustomer(*jobs, customer) : NQ_TDict(), names);
  });
}

void VexoNameUtils::CalculateCustomerVexoNames(const NQ_TDict& customer, TName& names) {
  for (const auto& row : kNames) {
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
