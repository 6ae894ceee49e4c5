// TName: which handlers produce the values of names.
#include "NQ_EException.h"
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/HandlerPointers.h"
#include "engine/NameStore.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;

void TName::SetLookupHandler(const NQ_TString& key, TLookupFunction function, bool clear) {
  if (Logs(2)) Log(2, "TName::SetLookupHandler: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  TEntry& entry = FindEntry(key);
  entry.Add(Keys().lookupHandler, templatenames::AsAny(function));
  entry.Remove(Keys().lookupHandler2);
  if (clear) entry.Remove(Keys().value);
}

void TName::SetLookupHandler(const NQ_TString& key, const TNameLookupHandler* handler, bool clear) {
  if (Logs(2)) Log(2, "TName::SetLookupHandler: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  TEntry& entry = FindEntry(key);
  entry.Add(Keys().lookupHandler2, templatenames::AsAny(handler));
  entry.Remove(Keys().lookupHandler);
  if (clear) entry.Remove(Keys().value);
}

void TName::SetLookupHandler(const NQ_TString& key, TName_Lookup lookup) {
  if (Logs(2)) Log(2, "TName::SetLookupHandler: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  FindEntry(key);
  if (lookup < TName_LookupValue || lookup > TName_LookupTime) return;
  SetLookupHandler(key, BuiltInLookup(lookup), lookup == TName_LookupServerQuery);
}

void TName::SetTypeHandler(const NQ_TString& key, TTypeFunction function) {
  if (Logs(2)) Log(2, "TName::SetTypeHandler: Key = \"", key, '"');
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(Keys().typeHandler, templatenames::AsAny(function));
}

void TName::SetUserLookupHandler(TLookupFunction function) {
  if (Logs(2)) Log(2, "TName::SetUserLookupHandler: method called");
  const std::lock_guard guard(lock_);
  userLookup_ = function;
  NoteHandlers();
}

void TName::SetWarnLookupHandler(TWarnFunction function) {
  if (Logs(2)) Log(2, "TName::SetWarnLookupHandler: method called");
  const std::lock_guard guard(lock_);
  warnFunction_ = function;
  warnObject_ = nullptr;
  NoteHandlers();
}

void TName::SetWarnLookupHandler(TNameWarnLookupHandler* handler) {
  if (Logs(2)) Log(2, "TName::SetWarnLookupHandler: method called");
  const std::lock_guard guard(lock_);
  warnObject_ = handler;
  warnFunction_ = nullptr;
  NoteHandlers();
}

void TName::SetElemHandler(TStageFunction function) {
  if (Logs(2)) Log(2, "TName::SetElemHandler: method called");
  const std::lock_guard guard(lock_);
  elemHandler_ = function;
  NoteHandlers();
}

void TName::SetExtractHandler(TStageFunction function) {
  if (Logs(2)) Log(2, "TName::SetExtractHandler: method called");
  const std::lock_guard guard(lock_);
  extractHandler_ = function;
  NoteHandlers();
}

void TName::SetRegExHandler(TStageFunction function) {
  if (Logs(2)) Log(2, "TName::SetRegExHandler: method called");
  const std::lock_guard guard(lock_);
  regexHandler_ = function;
  NoteHandlers();
}

// Asked for every token, therefore known beforehand.
void TName::NoteHandlers() {
  const bool hooked = warnObject_ != nullptr || warnFunction_ != nullptr || userLookup_ != nullptr;
  ownHandlers_ = !hooked && elemHandler_ == &TNameElemHandler && extractHandler_ == &TNameExtractHandler &&
                 regexHandler_ == &TNameRegexHandler;
}
