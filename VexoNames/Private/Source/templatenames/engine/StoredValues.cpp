// TName: tokens whose values no handler of the caller's has a part in, which is most of them. What the attributes of a
// name come to is planned once (TPlan), and the value is written from the plan straight to the result: no lookup, no
// variant, no text of its own. Whatever is not planned, and whatever has something to report, goes the long way through
// ProduceValue, which gives the same result.
#include <algorithm>
#include <cstring>
#include <functional>

#include "NQ_TBoxed.h"
#include "TName.h"
#include "engine/Attributes.h"
#include "engine/BudgetClock.h"
#include "engine/HandlerPointers.h"
#include "engine/NameStore.h"
#include "engine/Token.h"
#include "text/PrintfFormat.h"
#include "text/Stages.h"

using templatenames::LookupFunctionIn;
using templatenames::TEntry;
using templatenames::TEntrySlots;
using templatenames::TextIn;
using templatenames::TPlan;
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

/// Whether the attribute, if there is one, can change only by being set anew.
bool IsSteady(const NQ_TAny* attribute) { return attribute == nullptr || attribute->IsSteady(); }

template <std::size_t kUnits>
void CopyBlock(const char16_t* from, char16_t* to) {
  std::memcpy(to, from, kUnits * sizeof(char16_t));
}

/// Copies a text of at least so many units and at most twice as many: two blocks, which may overlap.
template <std::size_t kUnits>
void CopyTwoBlocks(std::u16string_view text, char16_t* to) {
  const std::size_t last = text.size() - kUnits;
  CopyBlock<kUnits>(text.data(), to);
  CopyBlock<kUnits>(text.data() + last, to + last);
}

/// Most pieces are so short that a call would take longer than to copy them.
inline void Copy(std::u16string_view text, char16_t* to) {
  const std::size_t length = text.size();
  if (length > 32) {
    std::memcpy(to, text.data(), length * sizeof(char16_t));
  } else if (length >= 16) {
    CopyTwoBlocks<16>(text, to);
  } else if (length >= 8) {
    CopyTwoBlocks<8>(text, to);
  } else if (length >= 4) {
    CopyTwoBlocks<4>(text, to);
  } else {
    for (std::size_t i = 0; i < length; ++i) to[i] = text[i];
  }
}

const TPrintfFormat& PlainFormat(TPrintfFormat::TKind kind) {
  static const auto text = *TPrintfFormat::Parse(u"%s", TPrintfFormat::TKind::Text);
  static const auto integer = *TPrintfFormat::Parse(u"%d", TPrintfFormat::TKind::Integer);
  return kind == TPrintfFormat::TKind::Text ? text : integer;
}

/// The entry's format, else the type's; null when it is refused.
const TPrintfFormat* PlanFormat(TEntry& entry, const NQ_TAny* own, TPrintfFormat::TKind kind) {
  const NQ_TString* const text = TextIn(own);
  const bool plain = text == nullptr || *text == (kind == TPrintfFormat::TKind::Text ? u"%s" : u"%d");
  return plain ? &PlainFormat(kind) : entry.KeepFormat(TPrintfFormat::Parse(text->StringView(), kind));
}

/// Whether FindGroup can search the planned text.
bool Searchable(const TToken& token, const TPlan& plan) {
  return plan.units.size() <= kLongSubject && token.entry->Ascii() != nullptr;
}

/// What a stage is to do: the token's attribute, else the name's own; nothing when that is no text.
std::u16string_view StageOf(std::u16string_view attribute, const NQ_TAny* own) {
  if (!attribute.empty()) return attribute;
  const auto* const text = TextIn(own);
  return text == nullptr ? std::u16string_view() : text->StringView();
}

/// Cuts the text by the stages before the regular expression; false when one of them has something to report.
bool Cut(const TToken& token, const TEntrySlots& slots, std::u16string_view& text) {
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
  return true;
}

/// Whether the text is one that goes when the other grows: a caller may have the result written to a stored value.
bool LiesIn(std::u16string_view text, const NQ_TString& out) {
  const std::u16string_view units = out.StringView();
  return std::less_equal<>()(units.data(), text.data()) && std::less<>()(text.data(), units.data() + units.size());
}

/// Drops the units from begin up to rest; what follows them moves there.
void DropBetween(unsigned int begin, unsigned int rest, NQ_TString& out) {
  if (begin == rest) return;
  const unsigned int left = out.Length() - rest;
  char16_t* const end = out.AppendUninitialized(0);
  std::memmove(end - left - (rest - begin), end - left, left * sizeof(char16_t));
  out.Truncate(begin + left);
}

}  // namespace

// ---- the usual token: a name whose value is a text as it is, or a part of that

TEntry* TName::FindEntry(TToken& token) const {
  if (token.entryVersion != names_->Version()) {
    token.entry = names_->Find(token.parts.key, token.keyHash);
    token.entryVersion = names_->Version();
  }
  return token.entry;
}

// Null when there are handlers of the caller's, something to log, or no such name.
inline const TPlan* TName::PlanFor(TToken& token) {
  if (!ownHandlers_ || Logs(1) || budget_.depth - 1 > limits_.nestedDepth) return nullptr;
  TEntry* const entry = FindEntry(token);
  if (entry == nullptr) return nullptr;
  const TPlan* const plan = entry->Plan();
  return plan != nullptr ? plan : &MakePlan(*entry);
}

// Makes the planned text of a token the first group of the token's regular expression; false, with nothing changed,
// when the text is not ASCII or there is something to report.
inline bool TName::FindGroup(TToken& token, std::u16string_view& text) {
  const char* const ascii = text.size() <= kLongSubject ? token.entry->Ascii() : nullptr;
  if (ascii == nullptr || budget_.RegexSpent()) return false;
  budget_.BeginRegex();
  std::string_view group;
  templatenames::TBudgetClock clock(budget_);
  const TRegexLimits limits{limits_.regexMatch, limits_.regexRecursion, &clock};
  if (!token.Regex().FindFirstGroup({ascii, text.size()}, limits, group)) return false;
  text =
      group.empty() ? std::u16string_view() : text.substr(static_cast<std::size_t>(group.data() - ascii), group.size());
  return true;
}

// Both at once, the second one a value that counts as that many characters, when neither can exceed a limit.
inline bool TName::AppendAsIs(std::u16string_view literal, std::u16string_view value, std::size_t counts,
                              NQ_TString& out) {
  if (budget_.tokens <= 0 || budget_.characters < static_cast<std::int64_t>(counts)) return false;
  --budget_.tokens;
  budget_.characters -= static_cast<std::int64_t>(counts);
  char16_t* const end = out.AppendUninitialized(static_cast<unsigned int>(literal.size() + value.size()));
  Copy(literal, end);
  Copy(value, end + literal.size());
  return true;
}

// ---- a token and the text before it

// False when the token failed; it is counted, and nothing is appended for it.
bool TName::AppendPiece(std::u16string_view literal, std::u16string_view tokenText, NQ_TString& out, int& count) {
  if (const auto kept = names_->Tokens().Find(tokenText)) return AppendPiece(literal, kept->token, out, count);
  TToken token(tokenText);
  return AppendPiece(literal, token, out, count);
}

bool TName::AppendPiece(std::u16string_view literal, TToken& token, NQ_TString& out, int& count) {
  const TPlan* plan = token.text.empty() ? nullptr : PlanFor(token);
  if (plan != nullptr && LiesIn(plan->units, out)) plan = nullptr;
  if (plan != nullptr && plan->asIs && token.shape != TToken::TShape::Other) {
    std::u16string_view value = plan->units;
    const bool found = token.shape == TToken::TShape::Bare || FindGroup(token, value);
    if (found && AppendAsIs(literal, value, plan->units.size(), out)) return true;
    if (token.shape == TToken::TShape::Regex && Searchable(token, *plan)) plan = nullptr;  // once is enough
  }
  AppendUnits(literal, out);
  return AppendValue(token, plan, out, count);
}

bool TName::AppendValue(TToken& token, const TPlan* plan, NQ_TString& out, int& count) {
  if (token.text.empty()) return ResolveEmptyToken(count);
  const unsigned int begin = out.Length();
  if (plan != nullptr && AppendPlanned(token, *plan, out, count)) {
    if (budget_.characters >= 0) return true;
    out.Truncate(begin);
    ++count;
    return false;
  }
  NQ_TString value;
  if (!ResolveTokenEx(token, value, count)) return false;
  AppendUnits(value.StringView(), out);
  return true;
}

void TName::AppendUnits(std::u16string_view text, NQ_TString& out) {
  if (!text.empty()) Copy(text, out.AppendUninitialized(static_cast<unsigned int>(text.size())));
}

// ---- plans

// Whether a lookup gives the stored value when there is one. Queries do: it is the reply that was kept.
bool TName::TakesStoredValue(TLookupFunction lookup) {
  return lookup == &LookupHandler || lookup == &ServerQueryHandler || lookup == &ServerQueryHandlerNoCache;
}

const TPlan& TName::MakePlan(TEntry& entry) {
  TPlan plan;
  const TEntrySlots& slots = entry.Slots();
  const bool stored = slots.value != nullptr && slots.lookupHandler2 == nullptr &&
                      TakesStoredValue(LookupFunctionIn(slots.lookupHandler));
  if (stored) {
    const TTypeFunction toText = TypeFunctionIn(slots.typeHandler);
    if (toText == &StringTypeHandler) PlanText(entry, slots, plan);
    if (toText == &IntegerTypeHandler) PlanNumber(entry, slots, plan);
    plan.stages = slots.HasStages();
    plan.options = slots.formattingOptions != nullptr;
    plan.asIs = plan.kind == TPlan::TKind::Text && plan.plain && !plan.stages && !plan.options &&
                plan.format != nullptr && plan.format->IsPlain();
  }
  const bool steady = IsSteady(slots.value) && IsSteady(slots.format) && IsSteady(slots.type) &&
                      IsSteady(slots.lookupHandler) && IsSteady(slots.typeHandler);
  return entry.SetPlan(plan, steady);
}

// A URL is planned as its text, which no format changes.
void TName::PlanText(TEntry& entry, const TEntrySlots& slots, TPlan& plan) {
  const auto* const url = slots.value->As<NQ_TURL>();
  plan.text = url == nullptr ? TextIn(slots.value) : &entry.KeepText(templatenames::FileText(*url));
  if (plan.text == nullptr) return;
  plan.kind = TPlan::TKind::Text;
  plan.units = plan.text->StringView();
  plan.plain = url != nullptr || entry.ValueIsPlain(*plan.text);
  plan.anyFormat = url != nullptr;
  plan.format = PlanFormat(entry, url == nullptr ? slots.format : nullptr, TPrintfFormat::TKind::Text);
}

void TName::PlanNumber(TEntry& entry, const TEntrySlots& slots, TPlan& plan) {
  const auto* const number = slots.value->As<NQ_TInt32>();
  const auto* const type = slots.type == nullptr ? nullptr : slots.type->As<NQ_TInt32>();
  if (number == nullptr || type == nullptr || type->Value() != TName_TypeNumber) return;
  plan.kind = TPlan::TKind::Number;
  plan.number = number->Value();
  plan.format = PlanFormat(entry, slots.format, TPrintfFormat::TKind::Integer);
}

// ---- values from plans

// Appends the value of a token. False, with nothing changed, when the plan is no way to it.
bool TName::AppendPlanned(TToken& token, const TPlan& plan, NQ_TString& out, int& count) {
  if (budget_.tokens <= 0 || budget_.characters < 0 || plan.kind == TPlan::TKind::Handlers) return false;
  return plan.options ? AppendFormatted(token, plan, out, count) : AppendUnformatted(token, plan, out, count);
}

bool TName::AppendUnformatted(TToken& token, const TPlan& plan, NQ_TString& out, int& count) {
  const bool isText = plan.kind == TPlan::TKind::Text;
  const TPrintfFormat* format = plan.format;
  if (!token.parts.format.empty() && !plan.anyFormat)
    format = token.Format(isText ? TPrintfFormat::TKind::Text : TPrintfFormat::TKind::Integer);
  if (format == nullptr) return false;
  const bool stages = plan.stages || token.parts.HasStages();
  const bool asItIs = isText && format->IsPlain();
  if (isText && !plan.plain) return asItIs && !stages && AppendNested(plan, out, count);

  const unsigned int begin = out.Length();
  std::u16string_view text = plan.units;
  if (!asItIs) {
    isText ? format->AppendText(plan.units, out) : format->AppendInteger(plan.number, out);
    text = out.StringView().substr(begin);
  } else if (!stages) {
    AppendUnits(text, out);
  }
  // Formats and stages may leave little of much.
  const auto counted = static_cast<std::int64_t>(std::max(plan.units.size(), text.size()));
  if (stages && !AppendStages(token, begin, text, out)) {
    out.Truncate(begin);
    return false;
  }
  budget_.characters -= counted;
  --budget_.tokens;
  return true;
}

bool TName::AppendNested(const TPlan& plan, NQ_TString& out, int& count) {
  --budget_.tokens;
  const TDeeper deeper(budget_.depth);
  AppendResolved(*plan.text, out, count);
  return true;
}

// Appends what the stages leave of a text, which may lie in out from begin on, and then goes; false when a stage has
// something to report.
bool TName::AppendStages(TToken& token, unsigned int begin, std::u16string_view text, NQ_TString& out) {
  const TEntrySlots& slots = token.entry->Slots();
  const unsigned int end = out.Length();
  if (!Cut(token, slots, text)) return false;
  if (token.parts.regex.empty() && slots.regex == nullptr) {
    out.Append(text);
  } else if (!AppendGroup(token, text, out)) {
    return false;
  }
  DropBetween(begin, end, out);
  return true;
}

bool TName::AppendGroup(TToken& token, std::u16string_view text, NQ_TString& out) {
  if (text.size() > kLongSubject || budget_.RegexSpent()) return false;
  const auto* const own = token.parts.regex.empty() ? TextIn(token.entry->Slots().regex) : nullptr;
  if (token.parts.regex.empty() && own == nullptr) return false;
  budget_.BeginRegex();
  const TRegex& regex = own == nullptr ? token.Regex() : templatenames::KeptRegex(*own);
  templatenames::TBudgetClock clock(budget_);
  const TRegexLimits limits{limits_.regexMatch, limits_.regexRecursion, &clock};
  return regex.AppendFirstGroup(text, limits, out).kind == TRegexResult::TKind::Matched;
}
