#include "formatting/date/DateTime.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <system_error>

#include "NQ_EException.h"
#include "formatting/date/DateFindings.h"
#include "formatting/date/DateOptions.h"
#include "formatting/date/DateTimePatterns.h"

namespace templatenames {
namespace {

std::string Printed(const NQ_EException& error) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << error;
  return out.str();
}

// Runs the action and tells whether it succeeded; else the error says why not.
template <class TAction>
bool Succeeds(const TAction& action, std::string& error) {
  try {
    action();
    return true;
  } catch (const NQ_EException& thrown) {
    error = Printed(thrown);
  } catch (const std::exception& thrown) {
    error = thrown.what();
  }
  return false;
}

// ---- reading

void ParseIso(const NQ_TString& zone, const NQ_TString& value, TDateOutcome& outcome) {
  const auto& patterns = IsoPatterns();
  // A text that is exactly one of the patterns is none of those before it.
  const auto* const exact = std::find_if(patterns.begin(), patterns.end(), [&](const NQ_TString& pattern) {
    return ParseExactDateTime(pattern, zone, NQ_TString::sEmpty, value, outcome.time);
  });
  if (exact != patterns.end()) {
    outcome.formsFailed = static_cast<std::size_t>(exact - patterns.begin());
    outcome.length = value.Length();
    return;
  }
  for (const NQ_TString& pattern : patterns) {
    try {
      outcome.length = ParseDateTime(pattern, zone, NQ_TString::sEmpty, value, outcome.time);
      return;
    } catch (const NQ_EException&) {
      if (&pattern == &patterns.back()) throw;
      ++outcome.formsFailed;
    }
  }
}

// A number of digits and points, in a process whose streams read numbers as C does; returns how much of it was read.
std::size_t ParsePlainNumber(std::string_view text, double& number) {
  const bool plain = text.find_first_not_of("0123456789.", text.starts_with('-') ? 1 : 0) == std::string_view::npos;
  if (!plain || std::locale() != std::locale::classic()) return 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() ? static_cast<std::size_t>(end - text.data()) : 0;
}

void ParseUnix(const NQ_TString& value, TDateOutcome& outcome) {
  const std::string_view text = value.Narrow();
  outcome.length = ParsePlainNumber(text, outcome.time);
  if (outcome.length > 0) return;
  std::istringstream in{std::string(text)};
  in >> outcome.time;
  if (in.fail() && outcome.time == 0) return;  // no number; one that is too large fails and is the largest
  const bool all = in.eof();
  in.clear();
  outcome.length = all ? value.Length() : NQ_TString(text.substr(0, static_cast<std::size_t>(in.tellg()))).Length();
}

// ---- writing

std::int64_t Truncated(double time) {
  using TLimits = std::numeric_limits<std::int64_t>;
  constexpr double kTwoTo63 = 9223372036854775808.0;
  if (time >= kTwoTo63) return TLimits::max();
  if (time < -kTwoTo63) return TLimits::min();
  return time == time ? static_cast<std::int64_t>(time) : 0;
}

void FormatUnix(double time, NQ_TString& value) {
  char digits[24];
  const char* const end = std::to_chars(digits, std::end(digits), Truncated(time)).ptr;
  value = NQ_TString(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

}  // namespace

TDateOutcome ParseInputDateTime(const NQ_TDict& options, const NQ_TString& value) {
  const TDatePlaces& places = TDatePlaces::In(options);
  TDateOutcome outcome;
  const auto parse = [&] {
    const NQ_TString& zone = places.Text(TDateKeys::kInputTimeZone);
    const NQ_TString& format = places.Text(TDateKeys::kInputDateTimeFormat);
    if (format.Equals(kIso8601)) {
      ParseIso(zone, value, outcome);
    } else if (format.Equals(kUnix)) {
      ParseUnix(value, outcome);
    } else {
      outcome.length = ParseDateTime(places.Text(TDateKeys::kCustomInputDateTimeFormat), zone,
                                     places.Text(TDateKeys::kInputLanguage), value, outcome.time);
    }
  };
  outcome.read = Succeeds(parse, outcome.error);
  return outcome;
}

void FormatOutputDateTime(const NQ_TDict& options, TDateOutcome& outcome, NQ_TString& value) {
  const TDatePlaces& places = TDatePlaces::In(options);
  const auto write = [&] {
    const NQ_TString& format = places.Text(TDateKeys::kDateTimeFormat);
    const NQ_TString& zone = places.Text(TDateKeys::kTimeZone);
    if (format.Equals(kIso8601)) {
      FormatDateTime(IsoPatterns().front(), zone, NQ_TString::sEmpty, outcome.time, value);
    } else if (format.Equals(kUnix)) {
      FormatUnix(outcome.time, value);
    } else {
      FormatDateTime(places.Text(TDateKeys::kCustomDateTimeFormat), zone, places.Text(TDateKeys::kLanguage),
                     outcome.time, value);
    }
  };
  outcome.written = Succeeds(write, outcome.error);
}

TDateOutcome FormatDateTimeValue(const NQ_TDict& options, NQ_TString& value, TFindings* findings) {
  TDateOutcome outcome = ParseInputDateTime(options, value);
  if (findings != nullptr) FindInDateValue(options, value, outcome, *findings);
  if (outcome.read) FormatOutputDateTime(options, outcome, value);
  return outcome;
}

}  // namespace templatenames
