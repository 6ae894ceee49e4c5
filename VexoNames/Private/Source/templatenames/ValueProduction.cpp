// TName: how the value of one token is produced. The steps: warn hook, registry, lookup (the user's hook first), nested
// resolution of a string value, type handler, the stages elem, extract and regex, formatting options.
//
// Most tokens are names with a stored value and the library's own handlers; AppendStoredValue writes those without
// making a value of its own, and leaves everything else, failures included, to ProduceValue.
#include <algorithm>

#include "HandlerPointers.h"
#include "NQ_TBoxed.h"
#include "NameStore.h"
#include "TName.h"
#include "Token.h"
#include "text/Log.h"
#include "text/PrintfFormat.h"
#include "text/Stages.h"

using templatenames::Log;
using templatenames::LookupFunctionIn;
using templatenames::LookupObjectIn;
using templatenames::TEntry;
using templatenames::TEntrySlots;
using templatenames::TPrintfFormat;
using templatenames::TRegex;
using templatenames::TRegexLimits;
using templatenames::TRegexResult;
using templatenames::TStageError;
using templatenames::TToken;
using templatenames::TypeFunctionIn;

namespace {

// In longer texts a search may take long, and one that fails would be made a second time, to be reported.
constexpr std::size_t kLongSubject = 4096;
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

/// One level of nesting, while it lives.
class TDeeper {
 public:
  explicit TDeeper(int& depth) : depth_(depth) { ++depth_; }
  TDeeper(const TDeeper&) = delete;
  TDeeper& operator=(const TDeeper&) = delete;
  ~TDeeper() { --depth_; }

 private:
  int& depth_;
};

bool HasStages(const TToken& token, const TEntrySlots& slots) {
  return token.parts.HasStages() || slots.elem != nullptr || slots.extract != nullptr || slots.regex != nullptr;
}

/// What a stage is to do: the token's attribute, else the name's own. The name's may be of another class.
std::u16string_view StageOf(std::u16string_view attribute, const NQ_TAny* own) {
  if (!attribute.empty()) return attribute;
  const auto* const text = own->As<NQ_TString>();
  return text == nullptr ? std::u16string_view() : text->StringView();
}

/// The format of the name; empty when it has none.
std::u16string_view FormatOf(const TEntrySlots& slots) {
  const auto* const text = slots.format == nullptr ? nullptr : std::as_const(*slots.format).As<NQ_TString>();
  return text == nullptr ? std::u16string_view() : text->StringView();
}

/// The token's format, else the name's if it is the type's own; null when it is another one, or refused.
const TPrintfFormat* IntegerFormatOf(TToken& token, const TEntrySlots& slots) {
  static const std::optional<TPrintfFormat> plain = TPrintfFormat::Parse(u"%d", TPrintfFormat::TKind::Integer);
  if (!token.parts.format.empty()) return token.IntegerFormat();
  return FormatOf(slots) == u"%d" ? &*plain : nullptr;
}

}  // namespace

void TName::LogToken(const NQ_TString& key, std::string_view what) const {
  if (Logs(2)) Log("TName::ResolveTokenEx: \tKey: \"", key, '"', what);
}

TEntry* TName::FindEntry(TToken& token) const {
  if (token.entryVersion != names_->Version()) {
    token.entry = names_->Find(token.parts.key, token.keyHash);
    token.entryVersion = names_->Version();
  }
  return token.entry;
}

// The limit that the resolution in hand has reached, or null.
const char* TName::ExceededLimit() const {
  if (budget_.depth - 1 > limits_.nestedDepth)  // the outermost template is not nested
    return " Nested deeper than the limit allows";
  if (budget_.tokens <= 0) return " More tokens than the limit allows";
  if (budget_.characters < 0) return kTooManyCharacters;
  return nullptr;
}

// Whether a lookup gives the stored value when there is one. Queries do: it is the reply that was kept.
bool TName::TakesStoredValue(TLookupFunction lookup) {
  return lookup == &LookupHandler || lookup == &ServerQueryHandler || lookup == &ServerQueryHandlerNoCache;
}

// Appends the value of a token whose name has a stored value and the library's own handlers. False, with nothing
// changed, when it is anything else.
bool TName::AppendStoredValue(TToken& token, NQ_TString& out, int& count) {
  const bool hooked = warnObject_ != nullptr || warnFunction_ != nullptr || userLookup_ != nullptr;
  const bool ownStages = elemHandler_ == &TNameElemHandler && extractHandler_ == &TNameExtractHandler &&
                         regexHandler_ == &TNameRegexHandler;
  if (hooked || !ownStages || Logs(1) || ExceededLimit() != nullptr) return false;
  TEntry* const entry = FindEntry(token);
  if (entry == nullptr) return false;
  const TEntrySlots& slots = entry->Slots();
  if (slots.value == nullptr || slots.lookupHandler2 != nullptr ||
      !TakesStoredValue(LookupFunctionIn(slots.lookupHandler))) {
    return false;
  }
  return slots.formattingOptions == nullptr ? AppendUnformatted(token, *entry, out, count)
                                            : AppendFormatted(token, *entry, out, count);
}

bool TName::AppendUnformatted(TToken& token, TEntry& entry, NQ_TString& out, int& count) {
  const TEntrySlots& slots = entry.Slots();
  const TTypeFunction toText = TypeFunctionIn(slots.typeHandler);
  if (toText == &StringTypeHandler) return AppendStoredText(token, entry, slots, out, count);
  return toText == &IntegerTypeHandler && !HasStages(token, slots) && AppendStoredNumber(token, slots, out);
}

bool TName::AppendStoredText(TToken& token, TEntry& entry, const TEntrySlots& slots, NQ_TString& out, int& count) {
  const auto* const text = std::as_const(*slots.value).As<NQ_TString>();
  if (text == nullptr || (token.parts.format.empty() ? FormatOf(slots) : token.parts.format) != u"%s") return false;
  const bool plain = entry.ValueIsPlain(*text);
  if (HasStages(token, slots)) return plain && AppendStages(token, slots, text->StringView(), out);
  --budget_.tokens;
  if (plain) {
    AppendText(text->StringView(), out);
  } else {
    const NQ_TString source = *text;  // a handler may change the value
    const TDeeper deeper(budget_.depth);
    AppendResolved(source, out, count);
  }
  return true;
}

// Appends what the stages leave of the text; false, with nothing changed, when one of them has something to report.
bool TName::AppendStages(TToken& token, const TEntrySlots& slots, std::u16string_view text, NQ_TString& out) {
  const auto whole = static_cast<std::int64_t>(text.size());
  if (!token.parts.elem.empty() || slots.elem != nullptr) {
    std::u16string_view separator;
    int index = 0;
    const TStageError error = templatenames::ParseElem(StageOf(token.parts.elem, slots.elem), separator, index);
    if (error != TStageError::None) return false;
    text = templatenames::Element(text, separator, index);
  }
  if (!token.parts.extract.empty() || slots.extract != nullptr) {
    int start = 0;
    int length = 0;
    const TStageError error = templatenames::ParseExtract(StageOf(token.parts.extract, slots.extract), start, length);
    if (error != TStageError::None) return false;
    text = templatenames::Extract(text, start, length);
  }
  if (token.parts.regex.empty() && slots.regex == nullptr) {
    AppendFree(text, out);
  } else if (!AppendGroup(token, slots, text, out)) {
    return false;
  }
  budget_.characters -= whole;  // the stages may leave little of much
  --budget_.tokens;
  return true;
}

bool TName::AppendGroup(TToken& token, const TEntrySlots& slots, std::u16string_view text, NQ_TString& out) const {
  if (text.size() > kLongSubject) return false;
  const TRegexLimits limits{limits_.regexMatch, limits_.regexRecursion};
  const auto* const own = token.parts.regex.empty() ? std::as_const(*slots.regex).As<NQ_TString>() : nullptr;
  if (token.parts.regex.empty() && own == nullptr) return false;
  const TRegex& regex = own == nullptr ? token.Regex() : templatenames::KeptRegex(*own);
  return regex.AppendFirstGroup(text, limits, out).kind == TRegexResult::TKind::Matched;
}

bool TName::AppendStoredNumber(TToken& token, const TEntrySlots& slots, NQ_TString& out) {
  const auto* const number = std::as_const(*slots.value).As<NQ_TInt32>();
  const auto* const type = slots.type == nullptr ? nullptr : std::as_const(*slots.type).As<NQ_TInt32>();
  if (number == nullptr || type == nullptr || type->Value() != TName_TypeNumber) return false;
  const TPrintfFormat* const format = IntegerFormatOf(token, slots);
  if (format == nullptr) return false;
  --budget_.tokens;
  const unsigned int begin = out.Length();
  format->AppendInteger(number->Value(), out);
  budget_.characters -= out.Length() - begin;
  return true;
}

bool TName::ProduceValue(TToken& token, NQ_TString& result, int& count) {
  const NQ_TString key(token.parts.key);
  if (const char* limit = ExceededLimit()) return LogToken(key, limit), false;
  --budget_.tokens;
  if (warnObject_ != nullptr) {
    warnObject_->WarnLookup(key, this);
  } else if (warnFunction_ != nullptr) {
    warnFunction_(key, this);
  }
  TEntry* const entry = FindEntry(token);
  if (entry == nullptr) return LogToken(key, " not present"), false;
  const TPin pin(*names_, *entry);
  NQ_TAny value;
  if (!LookUp(key, *entry, value)) return false;
  const std::int64_t before = budget_.characters;
  ResolveNested(value, count);
  const TTypeFunction toText = TypeFunctionIn(entry->Slots().typeHandler);
  if (toText == nullptr) return LogToken(key, " No type handler defined"), false;
  if (!toText(key, value, NQ_TString(token.parts.format), entry, this, result)) return false;
  // A value counts once, by the longest text on its way: stages may leave little of much.
  const auto charge = [&] { budget_.characters = std::min(budget_.characters, before - result.Length()); };
  charge();
  if (!RunStages(key, token, *entry, result)) return false;
  const bool formatted = ApplyFormattingOptions(key, *entry, result);
  charge();
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
