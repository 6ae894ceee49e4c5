// VexoNameUtils: the next input.
#include "Context.h"
#include "NQ_TTime.h"
#include "NameGroups.h"
#include "Reading.h"
#include "VexoNameUtils.h"
#include "text/Log.h"

using systemnames::Attempt;
using systemnames::SetIfDefined;
using systemnames::TContext;
using systemnames::TextOrEmpty;
using templatenames::Log;

namespace {

NQ_TURL InputOf(const AT_TTicket& ticket, unsigned int number) {
  const std::vector<NQ_TURL> inputs = ticket.GetInputURLs();
  return number >= 1 && number <= inputs.size() ? inputs[number - 1] : NQ_TURL(NQ_TString("file:///"));
}

TContext OfTicket(const AT_TTicket& ticket, unsigned int number, const NQ_TString& jobId) {
  return {InputOf(ticket, number), &ticket, nullptr, &jobId, nullptr, number, false};
}

// A ticket is kept by reference.
NQ_TAny Reference(const AT_TTicket* ticket) { return ticket == nullptr ? NQ_TAny() : NQ_TAny(ticket); }

void SetRaw(TName& names, const NQ_TString& key, const NQ_TAny& value) {
  if (names.IsDefined(key)) names.SetRawData(key, value);
}

// From which the names of the job are looked up. Returns the job's identifier, empty when it is not known yet.
NQ_TString ResetJob(TName& names, const TContext& context) {
  constexpr char kKey[] = "jobid";
  if (!names.IsDefined(kKey)) return {};
  if (context.job == nullptr && context.jobId == nullptr) {
    names.SetRawData(kKey, context.input);
    names.RemValue(kKey);
    return {};
  }
  names.SetRawData(kKey, context.job != nullptr ? NQ_TAny(*context.job) : NQ_TAny(*context.jobId));
  NQ_TString id = context.job != nullptr ? TextOrEmpty(*context.job, "JID") : *context.jobId;
  names.SetValue(kKey, id);
  return id;
}

// From which the names of the product are looked up.
NQ_TAny ProductOf(const TContext& context) {
  if (context.product != nullptr) return *context.product;
  const NQ_TString part = context.ticket == nullptr ? NQ_TString() : context.ticket->GetProductPartID();
  return part.Empty() ? NQ_TAny(context.input) : NQ_TAny(part);
}

// Outside a job, its folder is the input's.
void SetJobFolder(TName& names, const NQ_TURL& input) {
  NQ_TURL folder = input;
  Attempt([&] { folder = input.Location(); });
  SetIfDefined(names, "joburl", folder);
  SetIfDefined(names, "jobfolderurl", folder);
}

}  // namespace

void VexoNameUtils::ResetVexoNames(TName& names, const TContext& context) {
  const NQ_TTime begin;
  if (debugLevel_ > 0) Log(1, "Resetting VexoNames");
  names.ClearCaches();
  SetRaw(names, "filespec", context.input);
  const NQ_TString jobId = ResetJob(names, context);
  if (names.IsDefined("vxtpr:productid")) names.SetRawData("vxtpr:productid", ProductOf(context));
  SetRaw(names, "vexoid", context.input);
  SetRaw(names, "taskowner", Reference(context.ticket));
  SetRaw(names, "filetype", context.input);
  SetRaw(names, "id", Reference(context.ticket));
  SetRaw(names, "containername", context.input);
  SetIfDefined(names, "inputnr", static_cast<int>(context.inputNumber));
  RedefineParameterVexoNames(names, context, jobId);
  SetLookupHandlers(names);
  if (jobId.Empty()) SetJobFolder(names, context.input);
  if (debugLevel_ > 0) Log(1, "Reset VexoNames in ", NQ_TTime() - begin);
}

void VexoNameUtils::RedefineParameterVexoNames(TName& names, const TContext& context, const NQ_TString& jobId) const {
  const auto id = [&](const char* key) {
    return context.product == nullptr ? NQ_TString() : TextOrEmpty(*context.product, key);
  };
  const auto unlessLater = [&](const NQ_TString& text) { return context.createsParameters ? text : NQ_TString(); };
  RedefineJobParameterVexoNames(names, unlessLater(jobId));
  const NQ_TString productId = id("p.id");
  const NQ_TString partId = id("pp.id");
  RedefineProductParameterVexoNames(names, unlessLater(productId));
  RedefinePartParameterVexoNames(names, unlessLater(partId));
  RedefineWorkflowParameterVexoNames(names,
                                     context.ticket == nullptr ? NQ_TDict() : context.ticket->GetWorkflowParameters());
}

void VexoNameUtils::SetLookupHandlers(TName& names) const {
  SetJobLookupHandler(names);
  SetProductLookupHandler(names);
  SetCustomerLookupHandler(names);
  SetVexoIDLookupHandler(names);
  SetFileTypeLookupHandler(names);
  SetFileLookupHandler(names);
  SetContainerLookupHandler(names);
  SetTicketLookupHandler(names);
  SetTaskOwnerLookupHandler(names);
  SetWarnLookupHandler(names);
}

void VexoNameUtils::DefineVexoNames(TName& names, const AT_TTicket& ticket, unsigned int inputNumber) {
  const NQ_TString jobId = ticket.GetJobID();
  DefineVexoNames(names, OfTicket(ticket, inputNumber, jobId));
}

void VexoNameUtils::DefineVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket) {
  DefineVexoNames(names, TContext{.input = input, .ticket = &ticket});
}

void VexoNameUtils::DefineVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket, const NQ_TDict& job,
                                    const NQ_TDict& product) {
  DefineVexoNames(names, TContext{.input = input, .ticket = &ticket, .job = &job, .product = &product});
}

void VexoNameUtils::DefineVexoNames(TName& names, const NQ_TURL& input, const NQ_TDict& job, const NQ_TDict& product) {
  DefineVexoNames(names, TContext{.input = input, .job = &job, .product = &product});
}

void VexoNameUtils::ResetVexoNames(TName& names, const AT_TTicket& ticket, unsigned int inputNumber) {
  const NQ_TString jobId = ticket.GetJobID();
  ResetVexoNames(names, OfTicket(ticket, inputNumber, jobId));
}

void VexoNameUtils::ResetVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket) {
  ResetVexoNames(names, TContext{.input = input, .ticket = &ticket});
}

void VexoNameUtils::ResetVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket, const NQ_TDict& job,
                                   const NQ_TDict& product) {
  ResetVexoNames(names, TContext{.input = input, .ticket = &ticket, .job = &job, .product = &product});
}

void VexoNameUtils::ResetVexoNames(TName& names, const NQ_TURL& input, const NQ_TDict& job, const NQ_TDict& product) {
  ResetVexoNames(names, TContext{.input = input, .job = &job, .product = &product});
}
