// VexoNameUtils: names of the product that the task works on.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Requests.h"

using systemnames::Ask;
using systemnames::Attempt;
using systemnames::kProductNames;

namespace {

constexpr char kAnchor[] = "vxtpr:productid";  // its raw data leads to the product

// Sets the value of a name that is defined; without one, or where it does not take it, it has none.
template <class Value>
void SetOrRemove(TName& names, const NQ_TString& name, const Value* value) {
  if (!names.IsDefined(name)) return;
  if (value == nullptr || !Attempt([&] { names.SetValue(name, *value); })) names.RemValue(name);
}

// Where the part's data lies: its own folder, else the folder of its file.
void SetDataZone(TName& names, const NQ_TDict& part) {
  const bool hasFolder = part.HasKey("pp.folder");
  const auto* const url = part.Get<NQ_TURL>(hasFolder ? "pp.folder" : "pp.url");
  const NQ_TURL folder = url == nullptr ? NQ_TURL() : hasFolder ? *url : url->Location();
  SetOrRemove(names, "vxtpr:productpartdatazone", url == nullptr ? nullptr : &folder);
}

// The amount of the first use for that job that has one that the name takes.
void SetAmount(TName& names, const NQ_TDict& part, const NQ_TString& jobId) {
  const NQ_TString name("vxtpr:productamount");
  if (!names.IsDefined(name)) return;
  const auto* const uses = part.Get<NQ_TArray>("p.productusage");
  for (unsigned int i = 0; uses != nullptr && i < uses->Count(); ++i) {
    const auto* const use = uses->At(i)->As<NQ_TDict>();
    const auto* const job = use == nullptr ? nullptr : use->Get<NQ_TString>("jid");
    const auto* const amount = use == nullptr ? nullptr : use->Get<NQ_TInt32>("amount");
    if (job == nullptr || amount == nullptr || !(*job == jobId)) continue;
    if (Attempt([&] { names.SetValue(name, NQ_TString::Format("%d", amount->Value())); })) return;
  }
  names.RemValue(name);
}

void CalculateProductNames(TName& names, const NQ_TDict& part, const NQ_TString& jobId) {
  for (const auto& row : kProductNames) SetOrRemove(names, row.name, part.Get<NQ_TString>(row.key));
  SetDataZone(names, part);
  SetAmount(names, part, jobId);
}

}  // namespace

void VexoNameUtils::SetProductLookupHandler(TName& names) const {
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next())
    if (const auto& key = *i.Value().As<NQ_TString>(); key.Match("vxtpr:*", 0))
      systemnames::Install(names, key, handlers_->product);
}

bool VexoNameUtils::LookupProductInfo(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TString jobId = FindJID(names);
    CalculateProductNames(names, FindProductInfo(names), jobId);
  });
}

// Asks once: what was found takes the place of what led to it, also when it is nothing.
NQ_TDict VexoNameUtils::FindProductInfo(TName& names) const {
  const NQ_TAny lead = names.GetRawData(kAnchor);
  if (const auto* const part = lead.As<NQ_TDict>(); part != nullptr) return *part;
  P_TProxy* const products = products_;
  const auto* const id = lead.As<NQ_TString>();
  const auto* const url = lead.As<NQ_TURL>();
  if (products == nullptr || (id == nullptr && url == nullptr)) return {};
  NQ_TDict part = Ask(names, [&] {
    return id != nullptr ? systemnames::AskForProductPart(*products, *id)
                         : systemnames::AskForProductPart(*products, *url);
  });
  names.SetRawData(kAnchor, part);
  return part;
}
