// TName: names, values and attributes.
#include <algorithm>
#include <array>
#include <initializer_list>
#include <limits>

#include "NQ_EIncompatibleType.h"
#include "NQ_ENotAnInt32.h"
#include "NQ_TBoxed.h"
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/BuiltIns.h"
#include "engine/Engine.h"
#include "engine/StringAttributes.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEngine;
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

// The value and the lookup that a new name begins with.
void DefineLookup(TName& names, const NQ_TString& key, TName::TName_Type type, TName::TName_Lookup lookup) {
  if (type == TName::TName_TypeTime) {
    names.SetLookupHandler(key, &templatenames::TimeLookupHandler, false);
    return;
  }
  switch (lookup) {
    case TName::TName_LookupValue:
      if (type == TName::TName_TypeString) {
        names.SetValue(key, NQ_TString::sEmpty);
      } else if (type == TName::TName_TypeURL) {
        names.SetValue(key, NQ_TURL("file://localhost/Temp/unknown.txt"));
      } else {
        names.SetValue(key, 0);
      }
      break;
    case TName::TName_LookupServerQuery:
    case TName::TName_LookupServerQueryNoCache:
      names.SetServerQuery(key, {}, "#8088", "GetBuildNumber", {});
      break;
    case TName::TName_LookupSQLQuery:
      break;
    default:
      return;
  }
  names.SetLookupHandler(key, templatenames::BuiltInLookup(lookup), false);
}

void StoreValue(TEngine& engine, const NQ_TString& key, NQ_TAny value, std::initializer_list<TName::TName_Type> types) {
  const std::lock_guard guard(engine.lock);
  TEntry& entry = engine.EntryOf(key);
  if (std::ranges::find(types, engine.names.GetType(key)) == types.end()) nq::Throw(NQ_EIncompatibleType(key));
  entry.Remove(Keys().cacheFilled);  // what a caller sets is no reply that was kept
  entry.Add(Keys().value, std::move(value));
}

int Count(TEngine& engine, const NQ_TString& key, int step) {
  const std::lock_guard guard(engine.lock);
  std::int64_t counted = 0;
  try {
    counted = std::int64_t{engine.names.GetValue(key).AsInt32()} + step;
  } catch (const NQ_EIllegalCastFromAny&) {
    nq::Throw(NQ_ENotAnInt32(key));
  }
  if (counted != static_cast<int>(counted)) nq::Throw(NQ_ENotAnInt32(key));
  engine.names.SetValue(key, static_cast<int>(counted));
  return static_cast<int>(counted);
}

}  // namespace

// ---- defining and removing

bool TName::Define(const NQ_TString& key, TName_Type type, TName_Lookup lookup) {
  try {
    if (engine_->Logs(2)) {
      Log(2, "TName::Define: Key = \"", key, "\", type = ", static_cast<int>(type),
          ", lookup = ", static_cast<int>(lookup));
    }
    const std::lock_guard guard(engine_->lock);
    const NQ_TString name = key;  // the caller's string may be one that goes with the old entry
    engine_->store.Remove(name);
    const TTypeDefaults* const defaults = DefaultsOf(type);
    if (defaults == nullptr) return true;
    engine_->store.Add(name)
        .Add(Keys().format, NQ_TAny(defaults->format))
        .Add(Keys().category, NQ_TAny(defaults->category))
        .Add(Keys().type, NQ_TAny(defaults->number));
    const bool isText = type == TName_TypeString || type == TName_TypeURL;
    const bool isTime = type == TName_TypeTime;
    SetTypeHandler(name, isText   ? &templatenames::StringTypeHandler
                         : isTime ? &templatenames::TimeTypeHandler
                                  : &templatenames::IntegerTypeHandler);
    DefineLookup(*this, name, type, lookup);
    return true;
  } catch (...) {
    return false;
  }
}

void TName::UnDefine(const NQ_TString& key) {
  if (engine_->Logs(2)) Log(2, "TName::UnDefine: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->store.Remove(NQ_TString(key));
}

void TName::UnDefine() {
  const std::lock_guard guard(engine_->lock);
  engine_->store.RemoveAll();
}

bool TName::IsDefined(const NQ_TString& key) const {
  try {
    if (engine_->Logs(2)) Log(2, "TName::IsDefined: Key = \"", key, '"');
    const std::lock_guard guard(engine_->lock);
    return engine_->store.Find(key) != nullptr;
  } catch (...) {
    return false;
  }
}

TName::TName_Type TName::GetType(const NQ_TString& key) const {
  const std::lock_guard guard(engine_->lock);
  const auto* const type = std::as_const(engine_->EntryOf(key)).Get<NQ_TInt32>(Keys().type);
  return type == nullptr ? TName_TypeString : static_cast<TName_Type>(type->Value());
}

NQ_TList TName::GetTNames() const {
  if (engine_->Logs(2)) Log(2, "TName::GetTNames: method called");
  const std::lock_guard guard(engine_->lock);
  NQ_TList list;
  for (NQ_TConstIterator i(engine_->store.Names()); !i.IsDone(); i.Next()) list.Add(NQ_TAny(i.Key()));
  return list;
}

// ---- values

void TName::SetValue(const NQ_TString& key, const NQ_TString& value) {
  if (engine_->Logs(2)) Log(2, "TName::SetValue: (string) Key = \"", key, "\"; Value = \"", value, '"');
  StoreValue(*engine_, key, value, {TName_TypeString});
}

void TName::SetValue(const NQ_TString& key, const int& value) {
  if (engine_->Logs(2)) Log(2, "TName::SetValue: (int) Key = \"", key, "\"; Value = \"", value, '"');
  StoreValue(*engine_, key, value, {TName_TypeNumber, TName_TypeAutoNumber});
}

void TName::SetValue(const NQ_TString& key, const NQ_TTime& value) {
  if (engine_->Logs(2)) Log(2, "TName::SetValue: (time) Key = \"", key, "\"; Value = \"", value, '"');
  StoreValue(*engine_, key, value, {TName_TypeTime});
}

void TName::SetValue(const NQ_TString& key, const NQ_TURL& value) {
  if (engine_->Logs(2)) Log(2, "TName::SetValue: (url) Key = \"", key, "\"; Value = \"", value.Text(), '"');
  StoreValue(*engine_, key, value, {TName_TypeURL});
}

NQ_TAny TName::GetValue(const NQ_TString& key) const {
  const std::lock_guard guard(engine_->lock);
  const NQ_TAny* const value = std::as_const(engine_->EntryOf(key)).ValueOfKey(Keys().value);
  return value == nullptr ? NQ_TAny::Illegal() : *value;
}

bool TName::HasValue(const NQ_TString& key) const {
  const std::lock_guard guard(engine_->lock);
  return engine_->EntryOf(key).HasKey(Keys().value);
}

void TName::RemValue(const NQ_TString& key) {
  if (engine_->Logs(2)) Log(2, "TName::RemValue: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  TEntry& entry = engine_->EntryOf(key);
  entry.Remove(Keys().value);
  entry.Remove(Keys().cacheFilled);
}

int TName::Increment(const NQ_TString& key) { return Count(*engine_, key, 1); }

int TName::Decrement(const NQ_TString& key) { return Count(*engine_, key, -1); }

void TName::SetRawData(const NQ_TString& key, const NQ_TAny& value) {
  if (engine_->Logs(2)) Log(2, "TName::SetRawData: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->EntryOf(key).Add(Keys().rawData, NQ_TAny(value));
}

NQ_TAny TName::GetRawData(const NQ_TString& key) const {
  const std::lock_guard guard(engine_->lock);
  const NQ_TAny* const data = std::as_const(engine_->EntryOf(key)).ValueOfKey(Keys().rawData);
  return data == nullptr ? NQ_TAny::Illegal() : *data;
}

void TName::SetUserDefined(const NQ_TString& key, bool userDefined) {
  if (engine_->Logs(2)) Log(2, "TName::SetUserDefined: Key = \"", key, "\"; UserDefined = \"", userDefined, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->EntryOf(key).Add(Keys().userDefined, userDefined);
}

bool TName::IsUserDefined(const NQ_TString& key) const {
  const std::lock_guard guard(engine_->lock);
  const auto* const userDefined = std::as_const(engine_->EntryOf(key)).Get<NQ_TBool>(Keys().userDefined);
  return userDefined != nullptr && userDefined->Value();
}

// ---- string attributes

void TName::SetCategory(const NQ_TString& key, const NQ_TString& value) {
  const std::lock_guard guard(engine_->lock);
  templatenames::SetStringAttribute(*engine_, "SetCategory", "Category", key, Keys().category, value);
  engine_->store.Categories().LookAt(engine_->EntryOf(key));
}

const NQ_TString& TName::GetCategory(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().category);
}

void TName::SetDescription(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetDescription", "Description", key, Keys().description, value);
}

const NQ_TString& TName::GetDescription(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().description);
}

void TName::SetUserDescription(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetUserDescription", "UserDescription", key, Keys().userDescription,
                                    value);
}

const NQ_TString& TName::GetUserDescription(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().userDescription);
}

void TName::SetUserInfo(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetUserInfo", "Name", key, Keys().userInfo, value);
}

const NQ_TString& TName::GetUserInfo(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().userInfo);
}

void TName::SetVisibility(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "", "", key, Keys().visibility, value);
}

const NQ_TString& TName::GetVisibility(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().visibility);
}

void TName::SetLocalization(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetLocalization", "Localization", key, Keys().info, value);
}

const NQ_TString& TName::GetLocalization(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().info);
}

void TName::SetFormat(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetFormat", "Format", key, Keys().format, value);
}

void TName::SetElemValue(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetElemValue", "Value", key, Keys().elem, value);
}

void TName::SetExtractValue(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetExtractValue", "Value", key, Keys().extract, value);
}

void TName::SetRegExValue(const NQ_TString& key, const NQ_TString& value) {
  templatenames::SetStringAttribute(*engine_, "SetRegExValue", "Value", key, Keys().regex, value);
}
