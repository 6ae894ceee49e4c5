#include "TimeText.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace {

namespace chrono = std::chrono;

const chrono::sys_days kFirstDay = chrono::year{0} / 1 / 1;
const chrono::sys_days kPastLastDay = chrono::year{10000} / 1 / 1;

double MillisecondsOf(chrono::sys_days day) { return static_cast<double>(day.time_since_epoch().count()) * 86'400'000; }

/// Reads a text piece by piece; once something is not as expected, everything fails.
class TReader {
 public:
  explicit TReader(std::string_view text) : rest_(text) {}

  /// A number of exactly that many digits.
  int Digits(std::size_t count) {
    int number = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (!IsDigit()) return ok_ = false, 0;
      number = number * 10 + (rest_.front() - '0');
      rest_.remove_prefix(1);
    }
    return number;
  }
  bool Skip(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void Need(char expected) { ok_ = Skip(expected) && ok_; }
  /// The digits of a fraction of a second, in milliseconds; what is finer is dropped.
  int Fraction() {
    int milliseconds = 0;
    ok_ = ok_ && IsDigit();
    for (int weight = 100; IsDigit(); weight /= 10) milliseconds += weight * Digits(1);
    return milliseconds;
  }
  bool AtEnd() const { return ok_ && rest_.empty(); }
  bool Ok() const { return ok_; }

 private:
  bool IsDigit() const { return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; }

  std::string_view rest_;
  bool ok_ = true;
};

// Minutes east of UTC.
std::optional<int> ReadOffset(TReader& reader) {
  if (reader.Skip('Z') || reader.Skip('z')) return 0;
  const bool west = reader.Skip('-');
  if (!west) reader.Need('+');
  const int hours = reader.Digits(2);
  reader.Skip(':');
  const int minutes = reader.Digits(2);
  if (!reader.Ok() || hours > 23 || minutes > 59) return std::nullopt;
  return (west ? -1 : 1) * (hours * 60 + minutes);
}

std::optional<double> ParseCalendar(std::string_view text) {
  TReader reader(text);
  const chrono::year year{reader.Digits(4)};
  reader.Need('-');
  const chrono::month month{static_cast<unsigned int>(reader.Digits(2))};
  reader.Need('-');
  const chrono::day day{static_cast<unsigned int>(reader.Digits(2))};
  if (!reader.Skip(' ')) reader.Need('T');
  const int hour = reader.Digits(2);
  reader.Need(':');
  const int minute = reader.Digits(2);
  const int second = reader.Skip(':') ? reader.Digits(2) : 0;
  const int fraction = reader.Skip('.') ? reader.Fraction() : 0;
  const std::optional<int> offset = ReadOffset(reader);
  const chrono::year_month_day date(year, month, day);
  if (!reader.AtEnd() || !offset || !date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const int sinceMidnight = ((hour * 60 + minute - *offset) * 60 + second) * 1000 + fraction;
  return MillisecondsOf(date) + sinceMidnight;
}

std::optional<double> ParseMilliseconds(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::optional<NQ_TTime> ParseTime(std::string_view text) {
  std::optional<double> time = ParseCalendar(text);
  if (!time) time = ParseMilliseconds(text);
  if (!time || !IsSensibleTime(*time)) return std::nullopt;
  return NQ_TTime::FromMilliseconds(*time);
}

bool IsSensibleTime(double milliseconds) {
  return milliseconds >= MillisecondsOf(kFirstDay) && milliseconds < MillisecondsOf(kPastLastDay);
}

std::string TimeText(const NQ_TTime& time) {
  const auto whole = chrono::milliseconds(static_cast<std::int64_t>(std::floor(time.Milliseconds())));
  const auto day = chrono::floor<chrono::days>(chrono::sys_time<chrono::milliseconds>(whole));
  const chrono::year_month_day date(day);
  const chrono::hh_mm_ss clock(whole - day.time_since_epoch());
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned int>(date.month()), static_cast<unsigned int>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  std::string result = text;
  if (clock.subseconds().count() != 0) {
    std::snprintf(text, sizeof text, ".%03d", static_cast<int>(clock.subseconds().count()));
    result += text;
  }
  return result + 'Z';
}

bool UseZone(const std::string& name) {
  // The C library takes any text and falls back to UTC; so look whether the zone's file is there.
  const char* const given = std::getenv("TZDIR");
  const std::filesystem::path folder = given == nullptr ? "/usr/share/zoneinfo" : given;
  const bool named = !name.empty() && name.front() != '/' && name.find("..") == std::string::npos &&
                     name.find('\0') == std::string::npos;
  std::error_code ignored;
  if (name != "UTC" && !(named && std::filesystem::is_regular_file(folder / name, ignored))) return false;
  setenv("TZ", name.c_str(), 1);
  tzset();
  return true;
}
