// TName: how the value of one token is produced. The steps: warn hook, registry, lookup (the user's hook first), nested
// resolution of a string value, type handler, the stages elem, extract and regex, formatting options.
//
// Most tokens need none of that: StoredValues.cpp.
#include <algorithm>

#include "NQ_TBoxed.h"
#include "TName.h"
#include "engine/HandlerPointers.h"
#include "engine/NameStore.h"
#include "engine/Token.h"
#include "text/Log.h"

using templatenames::Log;
using templatenames::LookupFunctionIn;
using templatenames::LookupObjectIn;
using templatenames::TEntry;
using templatenames::TToken;
using templatenames::TypeFunctionIn;

namespace {

constexpr const char* kTooManyCharacters = " More characters than the limit allows";

/// Keeps the entry in hand alive while handlers run.
class TPin {
 public:
  TPin(templatenames::TNameStore& names, TEntry& entry) : names_(names), entry_(entry) { names_.Pin(entry_); }
  TPin(const TPin&) = delete;
  TPin& operator=(const TPin&) = delete;
  ~TPin() { names_.Unpin(entry_); }

 private:
  templatenames::TNameStore& names_;
  TEntry& entry_;
};

}  // namespace

void TName::LogToken(const NQ_TString& key, std::string_view what) const {
  if (Logs(2)) Log(2, "TName::ResolveTokenEx: \tKey: \"", key, '"', what);
}

// The limit that the resolution in hand has reached, or null.
const char* TName::ExceededLimit() const {
  if (budget_.depth - 1 > limits_.nestedDepth)  // the outermost template is not nested
    return " Nested deeper than the limit allows";
  if (budget_.tokens <= 0) return " More tokens than the limit allows";
  if (budget_.characters < 0) return kTooManyCharacters;
  return nullptr;
}

bool TName::ProduceValue(TToken& token, NQ_TString& result, int& count) {
  const NQ_TString key(token.parts.key);
  if (const char* limit = ExceededLimit()) return LogToken(key, limit), false;
  --budget_.tokens;
  budget_.PauseRegex();
  if (warnObject_ != nullptr) {
    warnObject_->WarnLookup(key, this);
  } else if (warnFunction_ != nullptr) {
    warnFunction_(key, this);
  }
  TEntry* const entry = FindEntry(token);
  if (entry == nullptr) return LogToken(key, " not present"), false;
  const TPin pin(*names_, *entry);
  const templatenames::TCategoryIndex::THandedOut handedOut(names_->Categories(), *entry);
  NQ_TAny value;
  if (!LookUp(key, *entry, value)) return false;
  const std::int64_t before = budget_.characters;
  // A value counts once, by the longest text on its way: handlers may leave little of much.
  const auto charge = [&](const NQ_TString& text) {
    budget_.characters = std::min(budget_.characters, before - static_cast<std::int64_t>(text.Length()));
  };
  ResolveNested(value, count);
  if (const auto* text = std::as_const(value).As<NQ_TString>()) charge(*text);
  const TTypeFunction toText = TypeFunctionIn(entry->Slots().typeHandler);
  if (toText == nullptr) return LogToken(key, " No type handler defined"), false;
  if (!toText(key, value, NQ_TString(token.parts.format), entry, this, result)) return false;
  charge(result);
  if (!RunStages(key, token, *entry, result)) return false;
  const bool formatted = ApplyFormattingOptions(key, *entry, result);
  charge(result);
  if (budget_.characters < 0) return LogToken(key, kTooManyCharacters), false;
  return formatted;
}

// The name's own lookup must exist even where the user's hook answers.
bool TName::LookUp(const NQ_TString& key, TEntry& entry, NQ_TAny& value) {
  const bool hasObject = entry.Slots().lookupHandler2 != nullptr;
  const TNameLookupHandler* const object = LookupObjectIn(entry.Slots().lookupHandler2);
  const TLookupFunction function = LookupFunctionIn(entry.Slots().lookupHandler);
  if (hasObject ? object == nullptr : function == nullptr) return LogToken(key, " No lookup handler defined"), false;
  if (userLookup_ != nullptr && userLookup_(key, &entry, this, value)) return true;
  value = NQ_TAny();
  const bool found = hasObject ? object->Lookup(key, &entry, this, value) : function(key, &entry, this, value);
  if (!found) LogToken(key, " Lookup function failed");
  return found;
}

void TName::ResolveNested(NQ_TAny& value, int& count) {
  const auto* const text = std::as_const(value).As<NQ_TString>();
  if (text == nullptr || (!templatenames::NeedsResolving(text->StringView()) && !Logs(1))) return;
  const NQ_TString source = *text;
  NQ_TString resolved;
  Resolve(source, resolved, count);
  value = std::move(resolved);
}

bool TName::RunStages(const NQ_TString& key, const TToken& token, TEntry& entry, NQ_TString& result) {
  const auto run = [&](TStageFunction stage, std::u16string_view attribute) {
    const NQ_TString input = result;
    return stage(key, input, NQ_TString(attribute), &entry, this, result);
  };
  if (elemHandler_ == nullptr) return true;
  if (!run(elemHandler_, token.parts.elem)) return false;
  if (extractHandler_ == nullptr) return true;
  if (!run(extractHandler_, token.parts.extract)) return false;
  if (regexHandler_ == nullptr) return true;
  return run(regexHandler_, token.parts.regex);
}
