// TName: names, values and attributes.
#include <algorithm>
#include <array>
#include <limits>

#include "NQ_EIncompatibleType.h"
#include "NQ_ENoSuchKey.h"
#include "NQ_ENotAnInt32.h"
#include "NQ_TBoxed.h"
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/NameStore.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;

namespace {

struct TTypeDefaults {
  TName::TName_Type type;
  NQ_TAny format;
  NQ_TAny category;
  NQ_TAny number = static_cast<int>(type);
};

/// What names of a type start with; null for what is no type. Made once: a name's variants share it until it is
/// changed.
const TTypeDefaults* DefaultsOf(TName::TName_Type type) {
  static const auto& all = *new std::array<TTypeDefaults, 5>{{
      {TName::TName_TypeString, "%s", "misc"},
      {TName::TName_TypeURL, "%s", "misc"},
      {TName::TName_TypeNumber, "%d", "misc"},
      {TName::TName_TypeTime, "%X", "date"},
      {TName::TName_TypeAutoNumber, "%d", "misc"},
  }};
  const auto* const found = std::ranges::find(all, type, &TTypeDefaults::type);
  return found == all.end() ? nullptr : found;
}

}  // namespace

TEntry& TName::FindEntry(const NQ_TString& key) const {
  TEntry* const entry = names_->Find(key);
  if (entry == nullptr) nq::Throw(NQ_ENoSuchKey(key));
  return *entry;
}

// ---- defining and removing

bool TName::Define(const NQ_TString& key, TName_Type type, TName_Lookup lookup) {
  try {
    if (Logs(2)) {
      Log(2, "TName::Define: Key = \"", key, "\", type = ", static_cast<int>(type),
          ", lookup = ", static_cast<int>(lookup));
    }
    const std::lock_guard guard(lock_);
    const NQ_TString name = key;  // the caller's string may be one that goes with the old entry
    names_->Remove(name);
    const TTypeDefaults* const defaults = DefaultsOf(type);
    if (defaults == nullptr) return true;
    names_->Add(name)
        .Add(Keys().format, NQ_TAny(defaults->format))
        .Add(Keys().category, NQ_TAny(defaults->category))
        .Add(Keys().type, NQ_TAny(defaults->number));
    const bool isText = type == TName_TypeString || type == TName_TypeURL;
    const bool isTime = type == TName_TypeTime;
    SetTypeHandler(name, isText ? &StringTypeHandler : isTime ? &TimeTypeHandler : &IntegerTypeHandler);
    DefineLookup(name, type, lookup);
    return true;
  } catch (...) {
    return false;
  }
}

void TName::DefineLookup(const NQ_TString& key, TName_Type type, TName_Lookup lookup) {
  if (type == TName_TypeTime) {
    SetLookupHandler(key, &TimeLookupHandler, false);
    return;
  }
  switch (lookup) {
    case TName_LookupValue:
      if (type == TName_TypeString) {
        SetValue(key, NQ_TString::sEmpty);
      } else if (type == TName_TypeURL) {
        SetValue(key, NQ_TURL("file://localhost/Temp/unknown.txt"));
      } else {
        SetValue(key, 0);
      }
      break;
    case TName_LookupServerQuery:
    case TName_LookupServerQueryNoCache:
      SetServerQuery(key, {}, "#8088", "GetBuildNumber", {});
      break;
    case TName_LookupSQLQuery:
      break;
    default:
      return;
  }
  SetLookupHandler(key, BuiltInLookup(lookup), false);
}

void TName::UnDefine(const NQ_TString& key) {
  if (Logs(2)) Log(2, "TName::UnDefine: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  names_->Remove(NQ_TString(key));
}

void TName::UnDefine() {
  const std::lock_guard guard(lock_);
  names_->RemoveAll();
}

bool TName::IsDefined(const NQ_TString& key) const {
  try {
    if (Logs(2)) Log(2, "TName::IsDefined: Key = \"", key, '"');
    const std::lock_guard guard(lock_);
    return names_->Find(key) != nullptr;
  } catch (...) {
    return false;
  }
}

TName::TName_Type TName::GetType(const NQ_TString& key) const {
  const std::lock_guard guard(lock_);
  const auto* const type = std::as_const(FindEntry(key)).Get<NQ_TInt32>(Keys().type);
  return type == nullptr ? TName_TypeString : static_cast<TName_Type>(type->Value());
}

NQ_TList TName::GetTNames() const {
  if (Logs(2)) Log(2, "TName::GetTNames: method called");
  const std::lock_guard guard(lock_);
  NQ_TList list;
  for (NQ_TConstIterator i(names_->Names()); !i.IsDone(); i.Next()) list.Add(NQ_TAny(i.Key()));
  return list;
}

// ---- values

void TName::StoreValue(const NQ_TString& key, NQ_TAny value, std::initializer_list<TName_Type> types) {
  const std::lock_guard guard(lock_);
  TEntry& entry = FindEntry(key);
  if (std::ranges::find(types, GetType(key)) == types.end()) nq::Throw(NQ_EIncompatibleType(key));
  entry.Remove(Keys().cacheFilled);  // what a caller sets is no reply that was kept
  entry.Add(Keys().value, std::move(value));
}

void TName::SetValue(const NQ_TString& key, const NQ_TString& value) {
  if (Logs(2)) Log(2, "TName::SetValue: (string) Key = \"", key, "\"; Value = \"", value, '"');
  StoreValue(key, value, {TName_TypeString});
}

void TName::SetValue(const NQ_TString& key, const int& value) {
  if (Logs(2)) Log(2, "TName::SetValue: (int) Key = \"", key, "\"; Value = \"", value, '"');
  StoreValue(key, value, {TName_TypeNumber, TName_TypeAutoNumber});
}

void TName::SetValue(const NQ_TString& key, const NQ_TTime& value) {
  if (Logs(2)) Log(2, "TName::SetValue: (time) Key = \"", key, "\"; Value = \"", value, '"');
  StoreValue(key, value, {TName_TypeTime});
}

void TName::SetValue(const NQ_TString& key, const NQ_TURL& value) {
  if (Logs(2)) Log(2, "TName::SetValue: (url) Key = \"", key, "\"; Value = \"", value.Text(), '"');
  StoreValue(key, value, {TName_TypeURL});
}

NQ_TAny TName::GetValue(const NQ_TString& key) const {
  const std::lock_guard guard(lock_);
  const NQ_TAny* const value = std::as_const(FindEntry(key)).ValueOfKey(Keys().value);
  return value == nullptr ? NQ_TAny::Illegal() : *value;
}

bool TName::HasValue(const NQ_TString& key) const {
  const std::lock_guard guard(lock_);
  return FindEntry(key).HasKey(Keys().value);
}

void TName::RemValue(const NQ_TString& key) {
  if (Logs(2)) Log(2, "TName::RemValue: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  TEntry& entry = FindEntry(key);
  entry.Remove(Keys().value);
  entry.Remove(Keys().cacheFilled);
}

int TName::Increment(const NQ_TString& key) { return Count(key, 1); }

int TName::Decrement(const NQ_TString& key) { return Count(key, -1); }

int TName::Count(const NQ_TString& key, int step) {
  const std::lock_guard guard(lock_);
  std::int64_t counted = 0;
  try {
    counted = std::int64_t{GetValue(key).AsInt32()} + step;
  } catch (const NQ_EIllegalCastFromAny&) {
    nq::Throw(NQ_ENotAnInt32(key));
  }
  if (counted != static_cast<int>(counted)) nq::Throw(NQ_ENotAnInt32(key));
  SetValue(key, static_cast<int>(counted));
  return static_cast<int>(counted);
}

void TName::SetRawData(const NQ_TString& key, const NQ_TAny& value) {
  if (Logs(2)) Log(2, "TName::SetRawData: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(Keys().rawData, NQ_TAny(value));
}

NQ_TAny TName::GetRawData(const NQ_TString& key) const {
  const std::lock_guard guard(lock_);
  const NQ_TAny* const data = std::as_const(FindEntry(key)).ValueOfKey(Keys().rawData);
  return data == nullptr ? NQ_TAny::Illegal() : *data;
}

void TName::SetUserDefined(const NQ_TString& key, bool userDefined) {
  if (Logs(2)) Log(2, "TName::SetUserDefined: Key = \"", key, "\"; UserDefined = \"", userDefined, '"');
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(Keys().userDefined, userDefined);
}

bool TName::IsUserDefined(const NQ_TString& key) const {
  const std::lock_guard guard(lock_);
  const auto* const userDefined = std::as_const(FindEntry(key)).Get<NQ_TBool>(Keys().userDefined);
  return userDefined != nullptr && userDefined->Value();
}

// ---- string attributes

const NQ_TString& TName::GetStringAttribute(const NQ_TString& key, const NQ_TString& attribute) const {
  const std::lock_guard guard(lock_);
  const auto* const text = std::as_const(FindEntry(key)).Get<NQ_TString>(attribute);
  return text == nullptr ? NQ_TString::sEmpty : *text;
}

void TName::SetStringAttribute(std::string_view operation, std::string_view label, const NQ_TString& key,
                               const NQ_TString& attribute, const NQ_TString& value) {
  if (!operation.empty() && Logs(2)) {
    Log(2, "TName::", operation, ": Key = \"", key, "\"; ", label, " = \"", value, '"');
  }
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(attribute, value);
}

void TName::SetCategory(const NQ_TString& key, const NQ_TString& value) {
  const std::lock_guard guard(lock_);
  SetStringAttribute("SetCategory", "Category", key, Keys().category, value);
  names_->Categories().LookAt(FindEntry(key));
}

const NQ_TString& TName::GetCategory(const NQ_TString& key) const { return GetStringAttribute(key, Keys().category); }

void TName::SetDescription(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetDescription", "Description", key, Keys().description, value);
}

const NQ_TString& TName::GetDescription(const NQ_TString& key) const {
  return GetStringAttribute(key, Keys().description);
}

void TName::SetUserDescription(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetUserDescription", "UserDescription", key, Keys().userDescription, value);
}

const NQ_TString& TName::GetUserDescription(const NQ_TString& key) const {
  return GetStringAttribute(key, Keys().userDescription);
}

void TName::SetUserInfo(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetUserInfo", "Name", key, Keys().userInfo, value);
}

const NQ_TString& TName::GetUserInfo(const NQ_TString& key) const { return GetStringAttribute(key, Keys().userInfo); }

void TName::SetVisibility(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("", "", key, Keys().visibility, value);
}

const NQ_TString& TName::GetVisibility(const NQ_TString& key) const {
  return GetStringAttribute(key, Keys().visibility);
}

void TName::SetLocalization(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetLocalization", "Localization", key, Keys().info, value);
}

const NQ_TString& TName::GetLocalization(const NQ_TString& key) const { return GetStringAttribute(key, Keys().info); }

void TName::SetFormat(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetFormat", "Format", key, Keys().format, value);
}

void TName::SetElemValue(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetElemValue", "Value", key, Keys().elem, value);
}

void TName::SetExtractValue(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetExtractValue", "Value", key, Keys().extract, value);
}

void TName::SetRegExValue(const NQ_TString& key, const NQ_TString& value) {
  SetStringAttribute("SetRegExValue", "Value", key, Keys().regex, value);
}
