#include "formatting/OptionValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TDict.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

// ---- kinds

enum class TKind : std::uint8_t { Text, Flag, Whole, List, Fraction, Dictionary, Nothing, Other };

struct TKindRow {
  TKind kind;
  std::u16string_view name;
  bool (*holds)(const NQ_TAny& value);
};

template <class T>
bool Holds(const NQ_TAny& value) {
  return value.As<T>() != nullptr;
}

constexpr TKindRow kKinds[] = {
    {TKind::Text, u"a text", &Holds<NQ_TString>},
    {TKind::Flag, u"true or false", &Holds<NQ_TBool>},
    {TKind::Whole, u"a whole number", &Holds<NQ_TInt32>},
    {TKind::List, u"a list of dictionaries", &Holds<NQ_TArray>},
    {TKind::Fraction, u"a decimal number", &Holds<NQ_TDouble>},
    {TKind::Dictionary, u"a dictionary", &Holds<NQ_TDict>},
    {TKind::Nothing, u"nothing", [](const NQ_TAny& value) { return value.IsNull() || value.IsIllegal(); }},
    {TKind::Other, u"something else", [](const NQ_TAny&) { return true; }},
};

const TKindRow& RowOf(const NQ_TAny& value) {
  return *std::find_if(std::begin(kKinds), std::end(kKinds), [&](const TKindRow& row) { return row.holds(value); });
}

TKind KindFor(TOptionForm form) {
  if (form < TOptionForm::Flag) return TKind::Text;
  if (form == TOptionForm::Flag) return TKind::Flag;
  return form == TOptionForm::Count ? TKind::Whole : TKind::List;
}

// ---- the same value as another kind

std::optional<std::int64_t> WholeNumber(const NQ_TAny& value) {
  if (const auto* const number = value.As<NQ_TInt32>()) return number->Value();
  if (const auto* const number = value.As<NQ_TDouble>()) {
    const bool whole = std::trunc(number->Value()) == number->Value() && std::abs(number->Value()) < 1e9;
    return whole ? std::optional(static_cast<std::int64_t>(number->Value())) : std::nullopt;
  }
  const auto* const text = value.As<NQ_TString>();
  const std::string_view digits = text == nullptr ? std::string_view() : text->Narrow();
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool all = error == std::errc() && end == digits.data() + digits.size();
  return all ? std::optional<std::int64_t>(number) : std::nullopt;
}

NQ_TString AsFlag(const NQ_TAny& value) {
  constexpr std::u16string_view kTrue[] = {u"true", u"yes", u"on"};
  constexpr std::u16string_view kFalse[] = {u"false", u"no", u"off"};
  const auto number = WholeNumber(value);
  const auto* const text = value.As<NQ_TString>();
  const NQ_TString word = text == nullptr ? NQ_TString() : text->Lowered();
  const auto isOneOf = [&](std::span<const std::u16string_view> words) {
    return std::find(words.begin(), words.end(), word.StringView()) != words.end();
  };
  if (number == 1 || isOneOf(kTrue)) return u"true";
  return number == 0 || isOneOf(kFalse) ? NQ_TString(u"false") : NQ_TString();
}

}  // namespace

bool IsOfKind(const NQ_TAny& value, TOptionForm form) { return RowOf(value).kind == KindFor(form); }

std::u16string_view WantedKind(TOptionForm form) {
  const TKind kind = KindFor(form);
  return std::find_if(std::begin(kKinds), std::end(kKinds), [&](const TKindRow& row) { return row.kind == kind; })
      ->name;
}

NQ_TString KindOf(const NQ_TAny& value) {
  if (const auto* const text = value.As<NQ_TString>()) return Sentence(u"the text ", Quoted(text->StringView()));
  if (const auto* const number = value.As<NQ_TInt32>()) return Sentence(u"the number ", NumberText(number->Value()));
  if (const auto* const flag = value.As<NQ_TBool>()) return flag->Value() ? u"true" : u"false";
  if (value.As<NQ_TArray>() != nullptr) return u"a list";
  return NQ_TString(RowOf(value).name);
}

NQ_TString AsKind(const NQ_TAny& value, TOptionForm form) {
  const TKind kind = KindFor(form);
  if (kind == TKind::Flag) return AsFlag(value);
  const auto number = WholeNumber(value);
  if (!number || kind == TKind::List) return {};
  return kind == TKind::Whole ? NumberText(*number) : Quoted(NumberText(*number).StringView());
}

}  // namespace templatenames
