// What the groups of system names share.
#pragma once

#include "Reading.h"
#include "TName.h"

namespace systemnames {

/// The body of every lookup: the name's value, which `fill` is to set first when there is none. False when anything
/// threw: then the token fails.
template <class Fill>
bool ValueOf(const NQ_TString& key, const TName& names, NQ_TAny& value, Fill fill) {
  try {
    if (!names.HasValue(key)) fill();
    value = names.GetValue(key);
    return true;
  } catch (...) {
    return false;
  }
}

/// Does it when the name is defined; what it throws is passed over.
template <class Action>
void AttemptIfDefined(const TName& names, const NQ_TString& key, Action action) {
  if (names.IsDefined(key)) Attempt([&] { action(key); });
}

/// Sets the value of a name that is defined.
template <class Value>
void SetIfDefined(TName& names, const NQ_TString& key, const Value& value) {
  if (names.IsDefined(key)) names.SetValue(key, value);
}

/// Gives the handler to those of the names that are defined, and clears their values.
void Install(TName& names, const NQ_TString& key, const TNameLookupHandler& handler);
template <class Keys>
void InstallAll(TName& names, const Keys& keys, const TNameLookupHandler& handler) {
  for (const auto& key : keys) Install(names, key, handler);
}

void UndefineCategory(TName& names, const NQ_TString& category);

}  // namespace systemnames
