#include "formatting/date/DateTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include "NQ_EException.h"
#include "formatting/OptionPlaces.h"
#include "formatting/date/DateTimePatterns.h"
#include "text/Log.h"

namespace templatenames {
namespace {

constexpr int kLevelOfSteps = 6;

struct TDateKeys {
  enum TKey : std::size_t {
    kInputDateTimeFormat,
    kCustomInputDateTimeFormat,
    kInputTimeZone,
    kInputLanguage,
    kDateTimeFormat,
    kCustomDateTimeFormat,
    kTimeZone,
    kLanguage,
    kCount,
  };

  static const std::array<NQ_TString, kCount>& All() {
    static const auto* const keys = new std::array<NQ_TString, kCount>{
        NQ_TString(u"InputDateTimeFormat"),
        NQ_TString(u"CustomInputDateTimeFormat"),
        NQ_TString(u"InputTimeZone"),
        NQ_TString(u"InputLanguage"),
        NQ_TString(u"DateTimeFormat"),
        NQ_TString(u"CustomDateTimeFormat"),
        NQ_TString(u"TimeZone"),
        NQ_TString(u"Language"),
    };
    return *keys;
  }
};

using TDatePlaces = TOptionPlaces<TDateKeys>;

// What is read, the most complete pattern first. What is written is the first of them.
const std::array<NQ_TString, 4>& IsoPatterns() {
  static const auto* const patterns =
      new std::array<NQ_TString, 4>{NQ_TString(u"yyyy-MM-dd'T'HH:mm:ss.SSXXX"), NQ_TString(u"yyyy-MM-dd'T'HH:mm:ssXXX"),
                                    NQ_TString(u"yyyy-MM-dd'T'HH:mmXXX"), NQ_TString(u"yyyy-MM-dd")};
  return *patterns;
}

constexpr std::u16string_view kIso = u"ISO8601";
constexpr std::u16string_view kUnix = u"UNIX";

NQ_TString TimeText(double time) { return NQ_TString::Format("%.*g", 17, time); }

// Runs the action and tells whether it succeeded; what it throws goes to the handler.
template <class TAction, class TFailed>
bool Succeeds(const TAction& action, const TFailed& failed) {
  try {
    action();
    return true;
  } catch (const NQ_EException& error) {
    failed(error);
  } catch (const std::exception& error) {
    failed(error.what());
  }
  return false;
}

// ---- reading

double ParseIso(int debugLevel, const NQ_TString& zone, const NQ_TString& value) {
  const auto& patterns = IsoPatterns();
  const auto nextTry = [&](const NQ_TString& failed) {
    if (debugLevel >= kLevelOfSteps)
      Log(kLevelOfSteps, "Parsing ", value, " using ", failed, " failed.  Trying less complete format");
  };
  double time = 0;
  // A text that is exactly one of the patterns is none of those before it.
  const auto* const exact = std::find_if(patterns.begin(), patterns.end(), [&](const NQ_TString& pattern) {
    return ParseExactDateTime(pattern, zone, NQ_TString::sEmpty, value, time);
  });
  if (exact != patterns.end()) {
    std::for_each(patterns.begin(), exact, nextTry);
    return time;
  }
  for (const NQ_TString& pattern : patterns) {
    try {
      ParseDateTime(pattern, zone, NQ_TString::sEmpty, value, time);
      break;
    } catch (const NQ_EException&) {
      if (&pattern == &patterns.back()) throw;
      nextTry(pattern);
    }
  }
  return time;
}

// A number of digits and points, in a process whose streams read numbers as C does.
bool ParsePlainNumber(std::string_view text, double& number) {
  const bool plain = text.find_first_not_of("0123456789.", text.starts_with('-') ? 1 : 0) == std::string_view::npos;
  if (!plain || std::locale() != std::locale::classic()) return false;
  return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

double ParseUnix(const NQ_TString& value) {
  double number = 0;
  if (ParsePlainNumber(value.Narrow(), number)) return number;
  std::istringstream(std::string(value.Narrow())) >> number;
  return number;
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

bool ParseInputDateTime(int debugLevel, const NQ_TDict& options, const NQ_TString& value, double& time) {
  const TDatePlaces& places = TDatePlaces::In(options);
  const auto parse = [&] {
    const NQ_TString& zone = places.Text(TDateKeys::kInputTimeZone);
    const NQ_TString& format = places.Text(TDateKeys::kInputDateTimeFormat);
    if (format.Equals(kIso)) {
      time = ParseIso(debugLevel, zone, value);
    } else if (format.Equals(kUnix)) {
      time = ParseUnix(value);
    } else {
      ParseDateTime(places.Text(TDateKeys::kCustomInputDateTimeFormat), zone, places.Text(TDateKeys::kInputLanguage),
                    value, time);
    }
  };
  const auto failed = [&](const auto& error) {
    Log(0, "Parsing date '", value, "' into UTC time failed.  Caused by:\n", error, '\n', options);
  };
  if (!Succeeds(parse, failed)) return false;
  if (debugLevel >= kLevelOfSteps)
    Log(kLevelOfSteps, "Parsed date '", value, "' into UTC time '", TimeText(time), "'\n", options);
  return true;
}

bool FormatOutputDateTime(int debugLevel, const NQ_TDict& options, double time, NQ_TString& value) {
  const TDatePlaces& places = TDatePlaces::In(options);
  const auto write = [&] {
    const NQ_TString& format = places.Text(TDateKeys::kDateTimeFormat);
    const NQ_TString& zone = places.Text(TDateKeys::kTimeZone);
    if (format.Equals(kIso)) {
      FormatDateTime(IsoPatterns().front(), zone, NQ_TString::sEmpty, time, value);
    } else if (format.Equals(kUnix)) {
      FormatUnix(time, value);
    } else {
      FormatDateTime(places.Text(TDateKeys::kCustomDateTimeFormat), zone, places.Text(TDateKeys::kLanguage), time,
                     value);
    }
  };
  const auto failed = [&](const auto& error) {
    Log(0, "Formatting wall time '", TimeText(time), "' failed.  Caused by:\n", error, '\n', options);
  };
  if (!Succeeds(write, failed)) return false;
  if (debugLevel >= kLevelOfSteps)
    Log(kLevelOfSteps, "Formatted wall time '", TimeText(time), "' into '", value, "'\n", options);
  return true;
}

bool FormatDateTimeValue(int debugLevel, const NQ_TDict& options, NQ_TString& value) {
  double time = 0;
  return ParseInputDateTime(debugLevel, options, value, time) && FormatOutputDateTime(debugLevel, options, time, value);
}

}  // namespace templatenames
