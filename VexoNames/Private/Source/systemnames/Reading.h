// Reading what services, tickets and callers hand over: any of it may be missing or of another kind.
#pragma once

#include "NQ_EException.h"
#include "NQ_TAny.h"
#include "NQ_TDict.h"
#include "NQ_TString.h"

namespace systemnames {

/// The content of the value; throws NQ_EIllegalCastFromAny with the value when it is no T.
template <class T>
const T& Held(const NQ_TAny& value) {
  if (const auto* const held = value.As<T>(); held != nullptr) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(NQ_TString(T::NQ_ClassName()) + " expected", value));
}

/// The entry; throws NQ_EIllegalCastFromAny when it is something else, or absent.
template <class T>
const T& Entry(const NQ_TDict& content, const char* key) {
  return Held<T>(content.At(key));
}

/// The entry, empty when it is absent; throws NQ_EIllegalCastFromAny when it is something else.
inline NQ_TString TextOrEmpty(const NQ_TDict& content, const char* key) {
  const NQ_TAny* const value = content.ValueOfKey(key);
  return value == nullptr ? NQ_TString() : Held<NQ_TString>(*value);
}

/// Does it; false when it threw.
template <class Action>
bool Attempt(Action action) {
  try {
    action();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace systemnames
