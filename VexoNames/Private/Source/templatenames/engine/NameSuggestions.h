#pragma once
#include "engine/NameStore.h"
namespace templatenames {
class TNameSuggestions {
 public:
  NQ_TString NearestName(const NQ_TString&, const TNameStore&) { return {}; }
};
}  // namespace templatenames
