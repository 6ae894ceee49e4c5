// What system names do with a TName that its public operations do not offer. All of it goes through here.
//
// Threads: as the operations of TName; each takes the registry lock for itself.
#pragma once

#include <mutex>
#include <vector>

#include "NQ_EException.h"
#include "TName.h"
#include "definitions/Definitions.h"
#include "engine/Queries.h"
#include "text/Log.h"

namespace systemnames {

class TEngineAccess {
 public:
  /// Defines every name of a tree of records. The source is where the tree came from, for messages.
  static bool Define(TName& names, const NQ_TTree& records, const NQ_TString& source, bool userDefined) {
    return templatenames::DefineTree(names.Engine(), records, source, userDefined);
  }
  /// What `TName::GetErrorReason` gives from now on.
  static void SetErrorReason(TName& names, const NQ_TString& reason) {
    const std::lock_guard guard(names.Engine().lock);
    names.Engine().errorReason = reason;
  }

  /// Whether there is a name of the category; the names of it. Logged as the `TName::GetTNames` that they stand for,
  /// and as fast as it takes where nothing has changed: a template may hold any number of tokens that ask.
  static bool HasCategory(TName& names, const NQ_TString& category) {
    const std::lock_guard guard(names.Engine().lock);
    return Categories(names).Has(category);
  }
  static std::vector<NQ_TString> KeysOfCategory(TName& names, const NQ_TString& category) {
    const std::lock_guard guard(names.Engine().lock);
    return Categories(names).KeysOf(category);
  }

  /// Makes a request to a service and returns the reply. While a template is resolved the request counts with those of
  /// that call: beyond its limits, and in a preview, none is made, and NQ_EException is thrown.
  template <class Request>
  static auto Ask(TName& names, Request request) {
    return templatenames::Ask(names.Engine(), request);
  }
  /// Whether what is resolved now is a preview, for which nothing is asked and nothing changes.
  static bool IsPreview(TName& names) {
    const std::lock_guard guard(names.Engine().lock);
    return names.Engine().budget.preview;
  }

 private:
  static templatenames::TCategoryIndex& Categories(TName& names) {
    if (names.Engine().Logs(2)) templatenames::Log(2, "TName::GetTNames: method called");
    return names.Engine().store.Categories();
  }
};

/// `TEngineAccess::Ask`, which every group of names needs.
template <class Request>
auto Ask(TName& names, Request request) {
  return TEngineAccess::Ask(names, request);
}

}  // namespace systemnames
