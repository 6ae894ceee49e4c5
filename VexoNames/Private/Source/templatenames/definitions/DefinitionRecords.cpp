// TName: definitions from records, small trees that say all about one name.
//
//   {Type = Name, Value = Acme, Category = customer, Description = Who ordered}
//   {Type = Name, Server = #8088, Method = GetCustomer, P1 = 4711, Cached = true}
//
// Records come from outside. A value of another class than its key takes is a failed definition: the name stays as far
// as it got, and standard error says so.
#include <sstream>

#include "TName.h"
#include "definitions/ConfigurationServer.h"
#include "definitions/Definitions.h"
#include "definitions/Held.h"
#include "engine/AttributeKeys.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Quoted;
using templatenames::TAttributeKeys;
using templatenames::TDefinitionOutcome;

namespace {

using TKey = const NQ_TString TAttributeKeys::*;

/// What a record holds under a key.
template <class T>
const T& Checked(TKey key, const NQ_TAny& value) {
  if (const auto* held = value.As<T>()) return *held;
  return templatenames::Held<T>(value, Quoted(Keys().*key));
}

/// The same; null when the record has no such key.
template <class T>
const T* Found(const NQ_TTree& record, TKey key) {
  const NQ_TAny* const value = record.ValueOfKey(Keys().*key);
  return value == nullptr ? nullptr : &Checked<T>(key, *value);
}

template <class T>
T FoundOr(const NQ_TTree& record, TKey key, const T& fallback) {
  const T* const found = Found<T>(record, key);
  return found == nullptr ? fallback : *found;
}

// ---- types

template <class T>
void SetValue(TName& names, const NQ_TString& name, TKey key, const NQ_TAny& value) {
  names.SetValue(name, Checked<T>(key, value));
}

void SetNumber(TName& names, const NQ_TString& name, TKey key, const NQ_TAny& value) {
  names.SetValue(name, Checked<NQ_TInt32>(key, value).Value());
}

struct TTypeRow {
  const char16_t* word;
  TName::TName_Type type;
  TKey valueKey;
  void (*setValue)(TName& names, const NQ_TString& name, TKey key, const NQ_TAny& value);
  bool readsFormat;
};

constexpr TTypeRow kTypes[] = {
    {u"Name", TName::TName_TypeString, &TAttributeKeys::value, &SetValue<NQ_TString>, true},
    {u"URL", TName::TName_TypeURL, &TAttributeKeys::urlValue, &SetValue<NQ_TURL>, false},
    {u"Time", TName::TName_TypeTime, &TAttributeKeys::value, &SetValue<NQ_TTime>, true},
    {u"Number", TName::TName_TypeNumber, &TAttributeKeys::value, &SetNumber, true},
    {u"AutoNumber", TName::TName_TypeAutoNumber, &TAttributeKeys::value, &SetNumber, true},
};

const TTypeRow* FindType(const NQ_TString& word) {
  for (const TTypeRow& row : kTypes) {
    if (word == row.word) return &row;
  }
  return nullptr;
}

// ---- attributes

template <void (TName::*Set)(const NQ_TString& name, const NQ_TString& text)>
void SetText(TName& names, const NQ_TString& name, TKey key, const NQ_TAny& value) {
  (names.*Set)(name, Checked<NQ_TString>(key, value));
}

void SetOptions(TName& names, const NQ_TString& name, TKey key, const NQ_TAny& value) {
  names.SetFormattingOptions(name, Checked<NQ_TDict>(key, value));
}

/// What is set when the record has the key, in this order.
constexpr struct {
  TKey key;
  void (*set)(TName& names, const NQ_TString& name, TKey key, const NQ_TAny& value);
} kAttributes[] = {
    {&TAttributeKeys::elem, &SetText<&TName::SetElemValue>},
    {&TAttributeKeys::extract, &SetText<&TName::SetExtractValue>},
    {&TAttributeKeys::regex, &SetText<&TName::SetRegExValue>},
    {&TAttributeKeys::info, &SetText<&TName::SetLocalization>},
    {&TAttributeKeys::formattingOptions, &SetOptions},
    {&TAttributeKeys::userInfo, &SetText<&TName::SetUserInfo>},
    {&TAttributeKeys::description, &SetText<&TName::SetDescription>},
    {&TAttributeKeys::userDescription, &SetText<&TName::SetUserDescription>},
};

// ---- server queries

void AddParameter(NQ_TDict& params, const NQ_TTree& record, TKey key) {
  if (const NQ_TAny* const value = record.ValueOfKey(Keys().*key)) params.Add(Keys().*key, NQ_TAny(*value));
}

NQ_TDict ReadParameters(const NQ_TTree& record) {
  auto params = FoundOr<NQ_TDict>(record, &TAttributeKeys::params, {});
  for (const TKey key : {&TAttributeKeys::p1, &TAttributeKeys::p2, &TAttributeKeys::p3, &TAttributeKeys::p4}) {
    if (!record.HasKey(Keys().*key)) break;  // they are positions: a gap ends them
    AddParameter(params, record, key);
  }
  AddParameter(params, record, &TAttributeKeys::definition);
  AddParameter(params, record, &TAttributeKeys::dependencies);
  return params;
}

void SetQuery(TName& names, const NQ_TString& name, const NQ_TTree& record) {
  const auto* const server = Found<NQ_TString>(record, &TAttributeKeys::server);
  const auto* const method = Found<NQ_TString>(record, &TAttributeKeys::method);
  if (server == nullptr || method == nullptr) return;
  names.RemValue(name);
  const auto host = FoundOr<NQ_TString>(record, &TAttributeKeys::host, {});
  names.SetServerQuery(name, host, *server, *method, ReadParameters(record));
  const bool cached = FoundOr<NQ_TBool>(record, &TAttributeKeys::cached, {}).Value();
  names.SetLookupHandler(name, cached ? TName::TName_LookupServerQuery : TName::TName_LookupServerQueryNoCache);
}

// In one piece, so that nothing another thread writes stands between the lines.
void Report(const NQ_TString& name, const NQ_EException& error) {
  std::ostringstream text;
  text << "Defining VexoName " << name << " failed\n" << error;
  templatenames::WriteError(0, text.str());
}

// ---- failures

TDefinitionOutcome AlreadyDefined(const NQ_TString& name) {
  return {TName::TName_ErrorAlreadyDefined,
          NQ_TString("there is a name ") + Quoted(name) + " already; it stays as it is, unless it is undefined first"};
}

/// A record without a type (null), or with a word that is none.
TDefinitionOutcome WithoutType(const NQ_TString& name, const NQ_TString* word) {
  NQ_TString reason = NQ_TString("the record of ") + Quoted(name) + " has ";
  reason = reason + (word == nullptr ? NQ_TString("no \"Type\"") : NQ_TString("an unknown \"Type\", ") + Quoted(*word));
  reason = reason + "; the types are";
  for (const TTypeRow& row : kTypes) reason = reason + (&row == kTypes ? " " : ", ") + row.word;
  return {word == nullptr ? TName::TName_ErrorNoType : TName::TName_ErrorUnknownType, reason};
}

TDefinitionOutcome Unusable(const NQ_TString& name, const NQ_EException& error) {
  Report(name, error);
  return {TName::TName_ErrorNone,
          NQ_TString("the record of ") + Quoted(name) + " cannot be used: " + templatenames::ReasonInHand()};
}

}  // namespace

bool TName::Define(const NQ_TString& name, const NQ_TTree& definition, bool userDefined) {
  return NoteOutcome(*engine_, templatenames::DefineRecord(*engine_, name, definition, userDefined));
}

NQ_TString TName::GetErrorReason() const {
  const std::lock_guard guard(engine_->lock);
  return engine_->errorReason;
}

namespace templatenames {

TDefinitionOutcome DefineRecord(TEngine& engine, const NQ_TString& name, const NQ_TTree& definition, bool userDefined) {
  const std::lock_guard guard(engine.lock);
  TName& names = engine.names;
  if (names.IsDefined(name)) return AlreadyDefined(name);
  try {
    const auto* const word = Found<NQ_TString>(definition, &TAttributeKeys::type);
    const TTypeRow* const type = word == nullptr ? nullptr : FindType(*word);
    if (type == nullptr) return WithoutType(name, word);
    if (!names.Define(name, type->type, TName::TName_LookupValue))
      nq::Throw(NQ_EException("the name cannot be defined", name));
    if (const NQ_TAny* const value = definition.ValueOfKey(Keys().*type->valueKey))
      type->setValue(names, name, type->valueKey, *value);
    const auto* const format = type->readsFormat ? Found<NQ_TString>(definition, &TAttributeKeys::format) : nullptr;
    if (format != nullptr) names.SetFormat(name, *format);
    names.SetCategory(name, FoundOr<NQ_TString>(definition, &TAttributeKeys::category, "misc"));
    for (const auto& [key, set] : kAttributes) {
      if (const NQ_TAny* const value = definition.ValueOfKey(Keys().*key)) set(names, name, key, *value);
    }
    SetLocalizationFile(engine, name,
                        FoundOr(definition, &TAttributeKeys::localizationFile, engine.defaultLocalizationFile));
    names.SetUserDefined(name, userDefined);
    SetQuery(names, name, definition);
    return {};
  } catch (const NQ_EException& error) {
    return Unusable(name, error);
  }
}

bool DefineTree(TEngine& engine, const NQ_TTree& definitions, const NQ_TString& source, bool userDefined) {
  bool ok = true;
  int count = 0;
  for (NQ_TConstIterator i(definitions); ok && !i.IsDone(); i.Next()) {
    const NQ_TString name = i.Key();
    const auto* const record = i.Value().As<NQ_TTree>();
    if (record == nullptr) {
      Log(0, "Invalid VexoName definition found in CFS: ", source, '/', name, "\n\t", i.Value());
      continue;
    }
    const TDefinitionOutcome outcome = DefineRecord(engine, name, *record, userDefined);
    NoteOutcome(engine, outcome, source);
    const bool duplicate = outcome.code == TName::TName_ErrorAlreadyDefined;
    if (duplicate) Log(0, "Duplicate VexoName found: ", source, '/', name, '\n', *record);
    ok = outcome.Defined() || duplicate;
    if (ok) ++count;
  }
  if (engine.Logs(1)) Log(1, "Defined ", count, " VexoNames from ", source);
  return ok;
}

// The error code and the reason change together. A failure that no code stands for leaves the code as it was.
bool NoteOutcome(TEngine& engine, const TDefinitionOutcome& outcome, const NQ_TString& source) {
  if (outcome.Defined()) return true;
  const std::lock_guard guard(engine.lock);
  if (outcome.code != TName::TName_ErrorNone) engine.error = outcome.code;
  engine.errorReason = source.Empty() ? outcome.reason : source + ": " + outcome.reason;
  return false;
}

}  // namespace templatenames
