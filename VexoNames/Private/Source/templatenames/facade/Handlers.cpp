// TName: which handlers produce the values of names.
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/BuiltIns.h"
#include "engine/Engine.h"
#include "engine/HandlerPointers.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;

void TName::SetLookupHandler(const NQ_TString& key, TLookupFunction function, bool clear) {
  if (engine_->Logs(2)) Log(2, "TName::SetLookupHandler: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  TEntry& entry = engine_->EntryOf(key);
  entry.Add(Keys().lookupHandler, templatenames::AsAny(function));
  entry.Remove(Keys().lookupHandler2);
  if (clear) entry.Remove(Keys().value);
}

void TName::SetLookupHandler(const NQ_TString& key, const TNameLookupHandler* handler, bool clear) {
  if (engine_->Logs(2)) Log(2, "TName::SetLookupHandler: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  TEntry& entry = engine_->EntryOf(key);
  entry.Add(Keys().lookupHandler2, templatenames::AsAny(handler));
  entry.Remove(Keys().lookupHandler);
  if (clear) entry.Remove(Keys().value);
}

void TName::SetLookupHandler(const NQ_TString& key, TName_Lookup lookup) {
  if (engine_->Logs(2)) Log(2, "TName::SetLookupHandler: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->EntryOf(key);
  if (lookup < TName_LookupValue || lookup > TName_LookupTime) return;
  SetLookupHandler(key, templatenames::BuiltInLookup(lookup), lookup == TName_LookupServerQuery);
}

void TName::SetTypeHandler(const NQ_TString& key, TTypeFunction function) {
  if (engine_->Logs(2)) Log(2, "TName::SetTypeHandler: Key = \"", key, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->EntryOf(key).Add(Keys().typeHandler, templatenames::AsAny(function));
}

void TName::SetUserLookupHandler(TLookupFunction function) {
  if (engine_->Logs(2)) Log(2, "TName::SetUserLookupHandler: method called");
  const std::lock_guard guard(engine_->lock);
  engine_->hooks.userLookup = function;
  engine_->hooks.Note();
}

void TName::SetWarnLookupHandler(TWarnFunction function) {
  if (engine_->Logs(2)) Log(2, "TName::SetWarnLookupHandler: method called");
  const std::lock_guard guard(engine_->lock);
  engine_->hooks.warnFunction = function;
  engine_->hooks.warnObject = nullptr;
  engine_->hooks.Note();
}

void TName::SetWarnLookupHandler(TNameWarnLookupHandler* handler) {
  if (engine_->Logs(2)) Log(2, "TName::SetWarnLookupHandler: method called");
  const std::lock_guard guard(engine_->lock);
  engine_->hooks.warnObject = handler;
  engine_->hooks.warnFunction = nullptr;
  engine_->hooks.Note();
}

void TName::SetElemHandler(TStageFunction function) {
  if (engine_->Logs(2)) Log(2, "TName::SetElemHandler: method called");
  const std::lock_guard guard(engine_->lock);
  engine_->hooks.elem = function;
  engine_->hooks.Note();
}

void TName::SetExtractHandler(TStageFunction function) {
  if (engine_->Logs(2)) Log(2, "TName::SetExtractHandler: method called");
  const std::lock_guard guard(engine_->lock);
  engine_->hooks.extract = function;
  engine_->hooks.Note();
}

void TName::SetRegExHandler(TStageFunction function) {
  if (engine_->Logs(2)) Log(2, "TName::SetRegExHandler: method called");
  const std::lock_guard guard(engine_->lock);
  engine_->hooks.regex = function;
  engine_->hooks.Note();
}

TNameWarnLookupHandler* TName::GetWarnLookupHandler() const {
  const std::lock_guard guard(engine_->lock);
  return engine_->hooks.warnObject;
}
