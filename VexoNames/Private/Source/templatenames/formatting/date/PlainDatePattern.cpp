#include "formatting/date/PlainDatePattern.h"

#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>

#include <algorithm>
#include <cstring>
#include <typeinfo>

#include "formatting/date/DatePatternParts.h"
#include "formatting/date/IcuText.h"

namespace templatenames {
namespace {

// What is kept of a pattern takes more memory than its text; its parts are counted in 16 bits.
constexpr std::size_t kMaxPlain = 256;

// Literal text that no number takes for a part of its own, and that is matched character by character.
constexpr std::u16string_view kReadableLiterals = u" -/.,:_T";

bool HasPlainDigits(const icu::NumberFormat* format) {
  const auto* const decimal = dynamic_cast<const icu::DecimalFormat*>(format);
  if (decimal == nullptr) return false;
  using TSymbols = icu::DecimalFormatSymbols;
  const TSymbols* const symbols = decimal->getDecimalFormatSymbols();
  if (symbols == nullptr || symbols->getConstSymbol(TSymbols::kZeroDigitSymbol) != icu::UnicodeString(u'0'))
    return false;
  icu::UnicodeString affix;
  return decimal->getPositivePrefix(affix).isEmpty() && decimal->getPositiveSuffix(affix).isEmpty() &&
         decimal->getNegativeSuffix(affix).isEmpty();
}

bool IsPlain(const icu::SimpleDateFormat& format) {
  const icu::Calendar* const calendar = format.getCalendar();
  return calendar != nullptr && typeid(*calendar) == typeid(icu::GregorianCalendar) &&
         std::strcmp(calendar->getType(), "gregorian") == 0 && HasPlainDigits(format.getNumberFormat());
}

// The names that a field of so many letters chooses from; null when there are not as many as there should be.
struct TNames {
  const icu::UnicodeString* first;
  std::int32_t count;
};
TNames NamesOf(char16_t letter, std::uint8_t letters, const icu::DateFormatSymbols& symbols) {
  using TSymbols = icu::DateFormatSymbols;
  const auto width = letters == 6   ? TSymbols::SHORT
                     : letters == 5 ? TSymbols::NARROW
                     : letters == 4 ? TSymbols::WIDE
                                    : TSymbols::ABBREVIATED;
  std::int32_t count = 0;
  const icu::UnicodeString* names = nullptr;
  if (letter == u'a') {
    names = symbols.getAmPmStrings(count);
    return {count == 2 ? names : nullptr, 2};
  }
  if (letter == u'E') {
    names = symbols.getWeekdays(count, TSymbols::FORMAT, width);
    return {count == 8 ? names + 1 : nullptr, 7};  // Sunday is 1
  }
  names = symbols.getMonths(count, letter == u'L' ? TSymbols::STANDALONE : TSymbols::FORMAT, width);
  return {count == 12 ? names : nullptr, 12};
}

}  // namespace

/// A letter, from so many of it to so many, and what that makes.
struct TPlainDatePattern::TForm {
  char16_t letter;
  std::uint8_t from, to;
  TKind kind;
  TPart part;
};

const TPlainDatePattern::TForm TPlainDatePattern::kForms[] = {
    {u'y', 1, 1, TKind::Number, kYear},
    {u'y', 2, 2, TKind::Number, kYearOfCentury},
    {u'y', 3, 4, TKind::Number, kYear},
    {u'M', 1, 2, TKind::Number, kMonth},
    {u'M', 3, 5, TKind::Name, kMonth},
    {u'L', 1, 2, TKind::Number, kMonth},
    {u'L', 3, 5, TKind::Name, kMonth},
    {u'd', 1, 2, TKind::Number, kDay},
    {u'H', 1, 2, TKind::Number, kHour},
    {u'h', 1, 2, TKind::Number, kHourOfHalf},
    {u'm', 1, 2, TKind::Number, kMinute},
    {u's', 1, 2, TKind::Number, kSecond},
    {u'S', 1, 6, TKind::Fraction, kMillisecond},
    {u'E', 1, 6, TKind::Name, kWeekday},
    {u'a', 1, 4, TKind::Name, kHalf},
    {u'X', 3, 3, TKind::Offset, kParts},
};

TPlainDatePattern::TPlainDatePattern(std::u16string_view pattern, const icu::SimpleDateFormat& format) {
  if (pattern.size() > kMaxPlain || !IsPlain(format) || !Scan(pattern)) return;
  const icu::DateFormatSymbols* const symbols = format.getDateFormatSymbols();
  writes_ = symbols != nullptr && FindNames(*symbols);
  if (writes_) MeasureLongest();
  SetWidths();
  reads_ = CanRead();
}

bool TPlainDatePattern::Scan(std::u16string_view pattern) {
  return ForEachDatePart(
      pattern, [this](char16_t letter, std::size_t count) { return AddField(letter, count); },
      [this](char16_t unit) { AddLiteral(unit); });
}

void TPlainDatePattern::AddLiteral(char16_t unit) {
  if (steps_.empty() || steps_.back().kind != TKind::Literal) {
    TStep& step = steps_.emplace_back();
    step.begin = static_cast<std::uint16_t>(literals_.size());
  }
  ++steps_.back().length;
  literals_ += unit;
}

bool TPlainDatePattern::AddField(char16_t letter, std::size_t count) {
  const auto* const form = std::find_if(std::begin(kForms), std::end(kForms), [&](const TForm& f) {
    return f.letter == letter && count >= f.from && count <= f.to;
  });
  if (form == std::end(kForms)) return false;
  TStep step;
  step.kind = form->kind;
  step.part = form->part;
  step.letter = letter;
  step.count = static_cast<std::uint8_t>(count);
  steps_.push_back(step);
  return true;
}

// Numbers without anything between them are told apart by their widths.
void TPlainDatePattern::SetWidths() {
  const auto isNumber = [](const TStep& step) { return step.kind == TKind::Number || step.kind == TKind::Fraction; };
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    TStep& step = steps_[i];
    const bool exact = (i > 0 && isNumber(steps_[i - 1])) || (i + 1 < steps_.size() && isNumber(steps_[i + 1]));
    step.least = exact ? step.count : step.part == kYear ? 4 : 1;
    step.most = exact ? step.count : step.part == kYear ? 4 : step.kind == TKind::Fraction ? 9 : 2;
  }
}

bool TPlainDatePattern::FindNames(const icu::DateFormatSymbols& symbols) {
  for (TStep& step : steps_) {
    if (step.kind != TKind::Name) continue;
    const TNames names = NamesOf(step.letter, step.count, symbols);
    if (names.first == nullptr) return false;
    step.begin = static_cast<std::uint16_t>(names_.size());
    for (std::int32_t i = 0; i < names.count; ++i) names_.emplace_back(FromIcu(names.first[i]));
    step.length = static_cast<std::uint16_t>(names.count);
  }
  return true;
}

void TPlainDatePattern::MeasureLongest() {
  constexpr std::size_t kLongestNumber = 6;  // or offset
  for (const TStep& step : steps_) {
    std::size_t most = step.kind == TKind::Literal ? step.length : kLongestNumber;
    if (step.kind == TKind::Name) {
      for (unsigned int i = 0; i < step.length; ++i) most = std::max(most, names_[step.begin + i].size());
    }
    longest_ += static_cast<unsigned int>(most);
  }
}

// Numbers that make a whole date, with simple text between them, and the offset last.
bool TPlainDatePattern::CanRead() const {
  unsigned int parts = 0;
  for (const TStep& step : steps_) {
    if (step.kind == TKind::Name) return false;
    if (step.kind == TKind::Offset) {
      if (&step != &steps_.back()) return false;
    } else if (step.kind == TKind::Literal) {
      if (Literal(step).find_first_not_of(kReadableLiterals) != std::u16string_view::npos) return false;
    } else {
      if (step.part >= kYearOfCentury) return false;
      parts |= 1U << step.part;
    }
  }
  constexpr unsigned int kDate = 1U << kYear | 1U << kMonth | 1U << kDay;
  return (parts & kDate) == kDate;
}

}  // namespace templatenames
