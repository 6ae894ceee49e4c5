#include "engine/NameSuggestions.h"

#include "engine/AttributeKeys.h"

namespace templatenames {

NQ_TString TNameSuggestions::NearestName(const NQ_TString& key, const TNameStore& store) {
  Follow(store);
  return index_.Nearest(key.StringView(), [&](const NQ_TString& name) {
    const auto* const entry = store.Names().Get<TEntry>(name);
    const auto* const visibility = entry == nullptr ? nullptr : entry->Get<NQ_TString>(Keys().visibility);
    return visibility == nullptr || *visibility != "0";
  });
}

void TNameSuggestions::Follow(const TNameStore& store) {
  if (version_ == store.Version()) return;
  // Each name that comes or goes is a version: as many more names as versions, and none has gone.
  const unsigned int size = store.Names().Size();
  if (version_ == 0 || size - known_ != store.Version() - version_) {
    index_.Clear();
    known_ = 0;
  }
  unsigned int place = 0;
  for (NQ_TConstIterator i(store.Names()); !i.IsDone(); i.Next())
    if (place++ >= known_) index_.Add(i.Key());
  known_ = size;
  version_ = store.Version();
}

}  // namespace templatenames
