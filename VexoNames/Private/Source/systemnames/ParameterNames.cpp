// VexoNameUtils: names of the parameters of jobs, products and parts.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NQ_TArray.h"
#include "NameGroups.h"
#include "Reading.h"
#include "Requests.h"

using systemnames::Ask;
using systemnames::Attempt;
using systemnames::Held;
using systemnames::TEngineAccess;
using systemnames::TextOrEmpty;
using systemnames::UndefineCategory;

namespace {

struct TKind {
  const char16_t* prefix;
  const char* category;
};
constexpr TKind kJob = {u"jp.", "jp"};
constexpr TKind kProduct = {u"pp.", "prodparams"};
constexpr TKind kPart = {u"ppp.", "prodpparams"};

void DefineText(TName& names, const NQ_TString& key) {
  names.Define(key, TName::TName_TypeString, TName::TName_LookupValue);
}

void SetCategoryAndValue(TName& names, const NQ_TString& key, const TKind& kind, const NQ_TString& value) {
  names.SetCategory(key, kind.category);
  names.SetValue(key, value);
}

// A parameter is a row {name, type word, -, value}. Only texts, whose type word begins with "S", are names.
void DefineJobParameter(TName& names, const NQ_TArray& row) {
  const auto text = [&](unsigned int column) -> const NQ_TString& {
    const NQ_TAny* const value = row.At(column);
    return Held<NQ_TString>(value == nullptr ? NQ_TAny::Illegal() : *value);
  };
  if (!text(1).StartsWith("S", 1)) return;
  const NQ_TString& raw = text(0);
  const NQ_TString& value = text(3);
  const NQ_TString encoded = TName::Encode(raw);
  const NQ_TString key = NQ_TString(kJob.prefix) + encoded;
  DefineText(names, key);
  names.SetUserInfo(key, raw);
  SetCategoryAndValue(names, key, kJob, value);
  if (encoded == raw) return;
  const NQ_TString hidden = NQ_TString(kJob.prefix) + raw;  // for templates that were written before names were encoded
  DefineText(names, hidden);
  SetCategoryAndValue(names, hidden, kJob, value);
  names.SetVisibility(hidden, "0");
}

// The parameters of a product or part: texts by their names.
void Redefine(TName& names, const NQ_TDict& parameters, const TKind& kind) {
  UndefineCategory(names, kind.category);
  for (NQ_TConstIterator i(parameters); !i.IsDone(); i.Next()) {
    const auto* const value = i.Value().As<NQ_TString>();
    if (value == nullptr) continue;
    const NQ_TString full = NQ_TString(kind.prefix) + i.Key();
    const NQ_TString key = full.Replace("%", "%25").Replace(" ", "%20");
    DefineText(names, key);
    SetCategoryAndValue(names, key, kind, *value);
    names.SetUserInfo(key, full);
  }
}

}  // namespace

void VexoNameUtils::SetWarnLookupHandler(TName& names) const { names.SetWarnLookupHandler(&handlers_->warn); }

void VexoNameUtils::WarnLookup(const NQ_TString& key, TName& names) const {
  if (TEngineAccess::IsPreview(names)) return;
  // Whether a template asks for a parameter of a kind of which there is none yet.
  const auto isMissing = [&](const TKind& kind) {
    return key.StringView().starts_with(kind.prefix) && !names.IsDefined(key) &&
           !TEngineAccess::HasCategory(names, kind.category);
  };
  Attempt([&] {
    if (isMissing(kJob)) RedefineJobParameterVexoNames(names, FindJID(names));
  });
  Attempt([&] {
    if (isMissing(kProduct)) RedefineProductParameterVexoNames(names, TextOrEmpty(FindProductInfo(names), "p.id"));
  });
  Attempt([&] {
    if (isMissing(kPart)) RedefinePartParameterVexoNames(names, TextOrEmpty(FindProductInfo(names), "pp.id"));
  });
}

void VexoNameUtils::RedefineJobParameterVexoNames(TName& names, const NQ_TString& jobId) const {
  UndefineCategory(names, kJob.category);
  J_TProxy* const jobs = jobs_;
  if (jobId.Empty() || jobs == nullptr) return;
  const NQ_TAny reply = Ask(names, [&] { return systemnames::AskForJobParameters(*jobs, jobId); });
  const auto* const rows = reply.As<NQ_TArray>();
  for (unsigned int i = 0; rows != nullptr && i < rows->Count(); ++i)
    Attempt([&] { DefineJobParameter(names, Held<NQ_TArray>(*rows->At(i))); });
}

// Nothing when there is no identifier or no service, or asking fails.
NQ_TDict VexoNameUtils::FindParameters(TName& names, const NQ_TString& id,
                                       NQ_TDict (*ask)(P_TProxy& products, const NQ_TString& id)) const {
  NQ_TDict parameters;
  P_TProxy* const products = products_;
  if (!id.Empty() && products != nullptr) Attempt([&] { parameters = Ask(names, [&] { return ask(*products, id); }); });
  return parameters;
}

void VexoNameUtils::RedefineProductParameterVexoNames(TName& names, const NQ_TString& productId) const {
  Redefine(names, FindParameters(names, productId, systemnames::AskForProductParameters), kProduct);
}

void VexoNameUtils::RedefinePartParameterVexoNames(TName& names, const NQ_TString& partId) const {
  Redefine(names, FindParameters(names, partId, systemnames::AskForPartParameters), kPart);
}
