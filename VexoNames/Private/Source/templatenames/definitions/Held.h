// Records, and what a configuration server replies, come from outside: their values may be of any class. What is of
// another class than it should be is told in words:
//
//   "Value" holds the number 5, where a text belongs
//
// Any thread.
#pragma once

#include "NQ_EException.h"
#include "NQ_TBoxed.h"
#include "NQ_TDict.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"

namespace templatenames {

/// A text in quotes, for sentences; a long one is cut.
NQ_TString Quoted(const NQ_TString& text);

/// A value in a sentence: the text "x", the number 5, a dictionary, nothing. Long texts are cut.
NQ_TString Shown(const NQ_TAny& value);

/// What belongs where a T is read.
template <class T>
inline constexpr const char* kNoun = nullptr;
template <>
inline constexpr const char* kNoun<NQ_TString> = "a text";
template <>
inline constexpr const char* kNoun<NQ_TInt32> = "a whole number";
template <>
inline constexpr const char* kNoun<NQ_TBool> = "true or false";
template <>
inline constexpr const char* kNoun<NQ_TTime> = "a time";
template <>
inline constexpr const char* kNoun<NQ_TURL> = "a URL";
template <>
inline constexpr const char* kNoun<NQ_TDict> = "a dictionary";

/// The content of a value when it is a T. Else throws NQ_EIllegalCastFromAny with the value; its message says what
/// stands at the place, and what belongs there.
template <class T>
const T& Held(const NQ_TAny& value, const NQ_TString& place, const char* belongs = kNoun<T>) {
  if (const auto* const held = value.As<T>()) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(place + " holds " + Shown(value) + ", where " + belongs + " belongs", value));
}

}  // namespace templatenames
