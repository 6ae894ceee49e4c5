// Which name of a registry was meant by a key that is none of them.
//
//   TNameSuggestions suggestions;
//   suggestions.NearestName(NQ_TString("jobcustmer"), store);   // "jobcustomer", or empty
//
// Keeps an index of the names, made at the first question. It follows the registry at the next question after a change:
// names that were added are added, in time linear in them and a walk over the names; after a removal it is made anew.
// Names with the visibility "0" are not suggested. Used under the registry lock.
#pragma once

#include "engine/NameStore.h"
#include "text/NearestName.h"

namespace templatenames {

class TNameSuggestions {
 public:
  NQ_TString NearestName(const NQ_TString& key, const TNameStore& store);

 private:
  void Follow(const TNameStore& store);

  TNearestName index_;
  std::uint64_t version_ = 0;  // of the store, when the index was right
  unsigned int known_ = 0;     // how many names it had then
};

}  // namespace templatenames
