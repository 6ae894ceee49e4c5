#include "formatting/PlainDatePattern.h"

#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>

#include <algorithm>
#include <cstring>
#include <typeinfo>

#include "formatting/IcuText.h"

namespace templatenames {
namespace {

// Its parts are counted in 16 bits.
constexpr std::size_t kMaxPlain = 1024;

struct TPlainLetter {
  char16_t letter;
  std::uint8_t numbers;  // up to so many of them make a number,
  std::uint8_t most;     // and up to so many a name or an offset
};
constexpr TPlainLetter kPlainLetters[] = {
    {u'y', 4, 4}, {u'M', 2, 5}, {u'L', 2, 5}, {u'd', 2, 2}, {u'H', 2, 2}, {u'h', 2, 2},
    {u'm', 2, 2}, {u's', 2, 2}, {u'S', 6, 6}, {u'E', 0, 6}, {u'a', 0, 4}, {u'X', 0, 3},
};

// Literal text that no number takes for a part of its own, and that is matched character by character.
constexpr std::u16string_view kReadableLiterals = u" -/.,:_T";

constexpr std::u16string_view kDate = u"yMd";

bool IsLetter(char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); }

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

TPlainDatePattern::TPlainDatePattern(std::u16string_view pattern, const icu::SimpleDateFormat& format) {
  if (pattern.size() > kMaxPlain || !IsPlain(format) || !Scan(pattern)) return;
  const icu::DateFormatSymbols* const symbols = format.getDateFormatSymbols();
  writes_ = symbols != nullptr && FindNames(*symbols);
  if (writes_) MeasureLongest();
  reads_ = CanRead();
}

// pattern = { letter { the same letter } | "''" | "'" { literal | "''" } "'" | literal }
bool TPlainDatePattern::Scan(std::u16string_view pattern) {
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size();) {
    const char16_t unit = pattern[i];
    const std::size_t next = std::min(pattern.find_first_not_of(unit, i), pattern.size());
    if (unit == u'\'' && next - i == 1) {
      quoted = !quoted;
      ++i;
    } else if (unit == u'\'') {
      AddLiteral(unit);
      i += 2;
    } else if (quoted || !IsLetter(unit)) {
      AddLiteral(unit);
      ++i;
    } else {
      if (!AddField(unit, next - i)) return false;
      i = next;
    }
  }
  return true;
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
  const auto known = std::find_if(std::begin(kPlainLetters), std::end(kPlainLetters),
                                  [letter](const TPlainLetter& plain) { return plain.letter == letter; });
  if (known == std::end(kPlainLetters) || count > known->most || (letter == u'X' && count != 3)) return false;
  TStep step;
  step.kind = count <= known->numbers ? TKind::Number : letter == u'X' ? TKind::Offset : TKind::Name;
  step.letter = letter;
  step.count = static_cast<std::uint8_t>(count);
  // Numbers without anything between them are told apart by their widths.
  if (step.kind == TKind::Number && !steps_.empty() && steps_.back().kind == TKind::Number)
    step.exact = steps_.back().exact = true;
  steps_.push_back(step);
  return true;
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
  constexpr unsigned int kLongestNumber = 6, kOffset = 6;
  for (const TStep& step : steps_) {
    std::size_t most = 0;
    if (step.kind == TKind::Literal) most = step.length;
    if (step.kind == TKind::Number) most = kLongestNumber;
    if (step.kind == TKind::Offset) most = kOffset;
    if (step.kind == TKind::Name) {
      for (unsigned int i = 0; i < step.length; ++i) most = std::max(most, names_[step.begin + i].size());
    }
    longest_ += static_cast<unsigned int>(most);
  }
}

// Numbers that make a whole date, with simple text between them, and the offset last.
bool TPlainDatePattern::CanRead() const {
  std::u16string letters;
  for (const TStep& step : steps_) {
    if (step.kind == TKind::Name || step.letter == u'h') return false;
    if (step.kind == TKind::Offset && &step != &steps_.back()) return false;
    if (step.letter == u'y' && step.exact && step.count != 4) return false;
    if (Literal(step).find_first_not_of(kReadableLiterals) != std::u16string_view::npos) return false;
    letters += step.letter;
  }
  return std::all_of(kDate.begin(), kDate.end(), [&](char16_t letter) { return letters.find(letter) != letters.npos; });
}

}  // namespace templatenames
