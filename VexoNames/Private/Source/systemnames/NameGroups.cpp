#include "NameGroups.h"

#include "EngineAccess.h"

namespace systemnames {

void Install(TName& names, const NQ_TString& key, const TNameLookupHandler& handler) {
  if (names.IsDefined(key)) names.SetLookupHandler(key, &handler, true);
}

void UndefineCategory(TName& names, const NQ_TString& category) {
  for (const NQ_TString& key : TEngineAccess::KeysOfCategory(names, category)) names.UnDefine(key);
}

}  // namespace systemnames
