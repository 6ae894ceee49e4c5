// Plain date patterns at work: writing a time, and reading one.
#include <algorithm>
#include <chrono>
#include <cmath>

#include "formatting/PlainDatePattern.h"

namespace templatenames {
namespace {

constexpr std::int64_t kDay = 86'400'000;
constexpr std::int32_t kHour = 3'600'000;
constexpr std::int32_t kMinute = 60'000;

constexpr int kFirstYear = 1583;  // 1582 has days that do not exist
constexpr int kLastYear = 9999;   // the last with four digits

using TDays = std::chrono::sys_days;

constexpr double MillisecondsAt(TDays day) { return static_cast<double>(day.time_since_epoch().count() * kDay); }
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
  const auto minutes = static_cast<unsigned int>((offset < 0 ? -offset : offset) / kMinute);
  *at++ = minutes == 0 ? u'Z' : offset < 0 ? u'-' : u'+';
  if (minutes == 0) return at;
  at = WriteNumber(minutes / 60, 2, at);
  *at++ = u':';
  return WriteNumber(minutes % 60, 2, at);
}

}  // namespace

// ---- writing

struct TPlainDatePattern::TFields {
  unsigned int year, month, day, weekday, hour, minute, second, millisecond;
  std::int32_t offset;

  TFields(std::int64_t local, std::int32_t theOffset) : offset(theOffset) {
    const std::int64_t days = (local - (local < 0 ? kDay - 1 : 0)) / kDay;
    const TDays date{std::chrono::days(days)};
    const std::chrono::year_month_day civil(date);
    year = static_cast<unsigned int>(static_cast<int>(civil.year()));
    month = static_cast<unsigned int>(civil.month());
    day = static_cast<unsigned int>(civil.day());
    weekday = std::chrono::weekday(date).c_encoding();
    const auto within = static_cast<unsigned int>(local - days * kDay);
    hour = within / kHour;
    minute = within / kMinute % 60;
    second = within / 1000 % 60;
    millisecond = within % 1000;
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
  const auto number = [&](unsigned int value) { return WriteNumber(value, step.count, at); };
  const auto name = [&](unsigned int index) { return copy(names_[step.begin + index]); };
  switch (step.letter) {
    case u'y':
      return number(step.count == 2 ? fields.year % 100 : fields.year);
    case u'M':
    case u'L':
      return step.kind == TKind::Name ? name(fields.month - 1) : number(fields.month);
    case u'd':
      return number(fields.day);
    case u'H':
      return number(fields.hour);
    case u'h':
      return number(fields.hour % 12 == 0 ? 12 : fields.hour % 12);
    case u'm':
      return number(fields.minute);
    case u's':
      return number(fields.second);
    case u'S':
      return WriteFraction(fields.millisecond, step.count, at);
    case u'E':
      return name(fields.weekday);
    case u'a':
      return name(fields.hour / 12);
    case u'X':
      return WriteOffset(fields.offset, at);
    default:
      return copy(Literal(step));
  }
}

// ---- reading

struct TPlainDatePattern::TReading {
  const char16_t* at;
  const char16_t* end;
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
  std::optional<std::int32_t> offset = {};

  // Takes between least and most digits. What follows them in the pattern is no digit, unless the number is exact.
  bool Take(std::ptrdiff_t least, std::ptrdiff_t most, int& number) {
    const char16_t* const begin = at;
    const char16_t* const limit = at + std::min(most, end - at);
    int taken = 0;
    for (; at != limit && IsDigit(*at); ++at) taken = taken * 10 + (*at - u'0');
    number = taken;
    return at - begin >= least;
  }

  bool TakeText(std::u16string_view text) {
    for (const char16_t unit : text) {
      if (at == end || *at++ != unit) return false;
    }
    return true;
  }

  bool Take(const TStep& step) {
    const std::ptrdiff_t least = step.exact ? step.count : 1, most = step.exact ? step.count : 2;
    switch (step.letter) {
      case u'y':
        return Take(4, 4, year);
      case u'M':
      case u'L':
        return Take(least, most, month);
      case u'd':
        return Take(least, most, day);
      case u'H':
        return Take(least, most, hour);
      case u'm':
        return Take(least, most, minute);
      case u's':
        return Take(least, most, second);
      default:
        return TakeFraction(least, step.exact ? step.count : 9);
    }
  }

  bool TakeFraction(std::ptrdiff_t least, std::ptrdiff_t most) {
    const char16_t* const begin = at;
    if (!Take(least, most, millisecond)) return false;
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
    if (!Take(2, 2, hours) || !TakeText(u":") || !Take(2, 2, minutes)) return false;
    offset = (first == u'-' ? -1 : 1) * (hours * kHour + minutes * kMinute);
    return hours < 24 && minutes < 60;
  }
};

bool TPlainDatePattern::Read(std::u16string_view text, TLocalTime& time) const {
  if (!reads_) return false;
  TReading reading{text.data(), text.data() + text.size()};
  for (const TStep& step : steps_) {
    const bool taken = step.kind == TKind::Literal  ? reading.TakeText(Literal(step))
                       : step.kind == TKind::Offset ? reading.TakeOffset()
                                                    : reading.Take(step);
    if (!taken) return false;
  }
  const std::chrono::year_month_day date(std::chrono::year(reading.year),
                                         std::chrono::month(static_cast<unsigned int>(reading.month)),
                                         std::chrono::day(static_cast<unsigned int>(reading.day)));
  if (reading.at != reading.end || !date.ok() || reading.year < kFirstYear || reading.hour > 23) return false;
  time.milliseconds = MillisecondsAt(TDays(date)) +
                      (reading.hour * kHour + reading.minute * kMinute + reading.second * 1000 + reading.millisecond);
  time.offset = reading.offset;
  return true;
}

}  // namespace templatenames
