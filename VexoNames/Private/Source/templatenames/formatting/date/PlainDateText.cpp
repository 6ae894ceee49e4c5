// Plain date patterns at work: writing a time, and reading one.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "formatting/date/PlainDatePattern.h"

namespace templatenames {
namespace {

constexpr std::int64_t kDayLength = 86'400'000;
constexpr std::int32_t kHourLength = 3'600'000;
constexpr std::int32_t kMinuteLength = 60'000;

constexpr int kFirstYear = 1583;  // 1582 has days that do not exist
constexpr int kLastYear = 9999;   // the last with four digits

using TDays = std::chrono::sys_days;

constexpr double MillisecondsAt(TDays day) { return static_cast<double>(day.time_since_epoch().count() * kDayLength); }
constexpr double kBegin = MillisecondsAt(TDays(std::chrono::year(kFirstYear) / 1 / 1));
constexpr double kEnd = MillisecondsAt(TDays(std::chrono::year(kLastYear + 1) / 1 / 1));

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// At least so many digits, up to three; the number has four at most.
char16_t* WriteNumber(unsigned int number, unsigned int width, char16_t* at) {
  if (number >= 100 || width > 2) {
    if (number >= 1000) *at++ = static_cast<char16_t>(u'0' + number / 1000);
    *at++ = static_cast<char16_t>(u'0' + number / 100 % 10);
    number %= 100;
    width = 2;
  }
  if (number >= 10 || width > 1) *at++ = static_cast<char16_t>(u'0' + number / 10);
  *at++ = static_cast<char16_t>(u'0' + number % 10);
  return at;
}

char16_t* WriteFraction(unsigned int millisecond, unsigned int count, char16_t* at) {
  char16_t digits[6] = {0, 0, 0, u'0', u'0', u'0'};
  WriteNumber(millisecond, 3, digits);
  return std::copy_n(digits, count, at);
}

char16_t* WriteOffset(std::int32_t offset, char16_t* at) {
  const auto minutes = static_cast<unsigned int>((offset < 0 ? -offset : offset) / kMinuteLength);
  *at++ = minutes == 0 ? u'Z' : offset < 0 ? u'-' : u'+';
  if (minutes == 0) return at;
  at = WriteNumber(minutes / 60, 2, at);
  *at++ = u':';
  return WriteNumber(minutes % 60, 2, at);
}

}  // namespace

// ---- writing

struct TPlainDatePattern::TFields {
  std::array<unsigned int, kParts> values;
  std::int32_t offset;

  TFields(std::int64_t local, std::int32_t theOffset) : offset(theOffset) {
    const std::int64_t days = (local - (local < 0 ? kDayLength - 1 : 0)) / kDayLength;
    const TDays date{std::chrono::days(days)};
    const std::chrono::year_month_day civil(date);
    const auto within = static_cast<unsigned int>(local - days * kDayLength);
    values[kYear] = static_cast<unsigned int>(static_cast<int>(civil.year()));
    values[kMonth] = static_cast<unsigned int>(civil.month());
    values[kDay] = static_cast<unsigned int>(civil.day());
    values[kHour] = within / kHourLength;
    values[kMinute] = within / kMinuteLength % 60;
    values[kSecond] = within / 1000 % 60;
    values[kMillisecond] = within % 1000;
    values[kYearOfCentury] = values[kYear] % 100;
    values[kHourOfHalf] = (values[kHour] + 11) % 12 + 1;
    values[kHalf] = values[kHour] / 12;
    values[kWeekday] = std::chrono::weekday(date).c_encoding();
  }
};

bool TPlainDatePattern::Write(double time, std::int32_t offset, NQ_TString& out) const {
  const double local = time + offset;
  if (!writes_ || !(local >= kBegin && local < kEnd)) return false;
  const TFields fields(static_cast<std::int64_t>(std::floor(local)), offset);
  out.Clear();
  char16_t* const begin = out.AppendUninitialized(longest_);
  char16_t* at = begin;
  for (const TStep& step : steps_) at = WriteStep(step, fields, at);
  out.Truncate(static_cast<unsigned int>(at - begin));
  return true;
}

char16_t* TPlainDatePattern::WriteStep(const TStep& step, const TFields& fields, char16_t* at) const {
  const auto copy = [at](std::u16string_view text) { return std::copy(text.begin(), text.end(), at); };
  switch (step.kind) {
    case TKind::Number:
      return WriteNumber(fields.values[step.part], step.count, at);
    case TKind::Fraction:
      return WriteFraction(fields.values[step.part], step.count, at);
    case TKind::Name:
      return copy(names_[step.begin + fields.values[step.part] - (step.part == kMonth ? 1 : 0)]);
    case TKind::Offset:
      return WriteOffset(fields.offset, at);
    case TKind::Literal:
      break;
  }
  return copy(Literal(step));
}

// ---- reading

struct TPlainDatePattern::TReading {
  const char16_t* at;
  const char16_t* end;
  std::array<int, kYearOfCentury> values = {};
  std::optional<std::int32_t> offset = {};

  bool TakeText(std::u16string_view text) {
    for (const char16_t unit : text) {
      if (at == end || *at++ != unit) return false;
    }
    return true;
  }

  // What follows the digits in the pattern is no digit, unless their number is exact.
  bool TakeNumber(std::ptrdiff_t least, std::ptrdiff_t most, int& number) {
    const char16_t* const begin = at;
    const char16_t* const limit = at + std::min(most, end - at);
    int taken = 0;
    for (; at != limit && IsDigit(*at); ++at) taken = taken * 10 + (*at - u'0');
    number = taken;
    return at - begin >= least;
  }

  bool TakeFraction(const TStep& step) {
    const char16_t* const begin = at;
    int& millisecond = values[step.part];
    if (!TakeNumber(step.least, step.most, millisecond)) return false;
    std::ptrdiff_t digits = at - begin;
    for (; digits < 3; ++digits) millisecond *= 10;
    for (; digits > 3; --digits) millisecond /= 10;
    return true;
  }

  bool TakeOffset() {
    if (at == end) return false;
    const char16_t first = *at++;
    if (first == u'Z') offset = 0;
    if (first != u'+' && first != u'-') return first == u'Z';
    int hours = 0, minutes = 0;
    if (!TakeNumber(2, 2, hours) || !TakeText(u":") || !TakeNumber(2, 2, minutes)) return false;
    offset = (first == u'-' ? -1 : 1) * (hours * kHourLength + minutes * kMinuteLength);
    return hours < 24 && minutes < 60;
  }
};

bool TPlainDatePattern::Read(std::u16string_view text, TLocalTime& time) const {
  if (!reads_) return false;
  TReading reading{text.data(), text.data() + text.size()};
  auto& values = reading.values;
  for (const TStep& step : steps_) {
    const bool taken = step.kind == TKind::Number     ? reading.TakeNumber(step.least, step.most, values[step.part])
                       : step.kind == TKind::Literal  ? reading.TakeText(Literal(step))
                       : step.kind == TKind::Fraction ? reading.TakeFraction(step)
                                                      : reading.TakeOffset();
    if (!taken) return false;
  }
  const std::chrono::year_month_day date(std::chrono::year{values[kYear]},
                                         std::chrono::month{static_cast<unsigned int>(values[kMonth])},
                                         std::chrono::day{static_cast<unsigned int>(values[kDay])});
  if (reading.at != reading.end || !date.ok() || values[kYear] < kFirstYear || values[kHour] > 23) return false;
  time.milliseconds = MillisecondsAt(TDays(date)) + values[kHour] * kHourLength + values[kMinute] * kMinuteLength +
                      values[kSecond] * 1000 + values[kMillisecond];
  time.offset = reading.offset;
  return true;
}

}  // namespace templatenames
