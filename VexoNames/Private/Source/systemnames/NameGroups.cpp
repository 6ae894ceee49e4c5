#include "NameGroups.h"

namespace systemnames {

void Install(TName& names, const NQ_TString& key, const TNameLookupHandler& handler) {
  if (names.IsDefined(key)) names.SetLookupHandler(key, &handler, true);
}

void UndefineCategory(TName& names, const NQ_TString& category) {
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next()) {
    const auto& key = *i.Value().As<NQ_TString>();
    if (names.GetCategory(key) == category) names.UnDefine(key);
  }
}

void DefineParameter(TName& names, const NQ_TString& key, const NQ_TString& category, const NQ_TString& value) {
  names.Define(key, TName::TName_TypeString, TName::TName_LookupValue);
  names.SetCategory(key, category);
  names.SetValue(key, value);
}

}  // namespace systemnames
