// What ICU needs for dates, kept from one use to the next.
//
// Building a formatter takes tens of microseconds, using one a few. So every thread keeps the 16 formatters (of some
// 25 KB each), calendars and zones that it used last and uses them in place. None of it shows: a calendar comes with
// the time zone and the fields that a new one has, and a language that ICU does not know, for which it takes the
// language of the process, is looked for anew when that changes.
//
//   TKeptDates& dates = TKeptDates::OfThread();
//   TDateFormat& format = dates.Format(pattern, language);
//   icu::Calendar& calendar = dates.NewCalendar(zone, language);
//   format.icu->parse(text, calendar, position);
//
// What is returned is valid until the next call of the same function. An object is for one thread.
#pragma once

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "NQ_TString.h"
#include "formatting/date/DateZone.h"
#include "formatting/date/PlainDatePattern.h"

namespace templatenames {

struct TDateFormat {
  TDateFormat(std::unique_ptr<icu::SimpleDateFormat> format, TPlainDatePattern plainPattern)
      : icu(std::move(format)), plain(std::move(plainPattern)) {}

  /// Years of two digits are read as those of the hundred years that begin 80 years before the day of that time. (As
  /// it stands, ICU takes the moment at which the process first asked.)
  void StartCentury(double now);

  std::unique_ptr<icu::SimpleDateFormat> icu;
  TPlainDatePattern plain;

 private:
  double day_ = std::numeric_limits<double>::quiet_NaN();  // whose century it has
};

/// The values that were used last, each found by one or two texts.
template <class TValue>
class TLastUsed {
 public:
  /// The value, made now when it is not there. What is made may depend on the context.
  template <class TMake>
  TValue& Find(const NQ_TString& first, const NQ_TString& second, const void* context, const TMake& make) {
    for (TPlace& place : places_) {
      if (place.value && place.context == context && place.first == first && place.second == second) {
        place.used = ++uses_;
        return *place.value;
      }
    }
    TValue value = make();
    TPlace& place = *std::min_element(places_.begin(), places_.end(),
                                      [](const TPlace& a, const TPlace& b) { return a.used < b.used; });
    place.first = NQ_TString(first.StringView());  // a copy: the caller's may come with memory to spare
    place.second = NQ_TString(second.StringView());
    place.context = context;
    place.used = ++uses_;
    return place.value.emplace(std::move(value));
  }

 private:
  struct TPlace {
    NQ_TString first, second;
    const void* context = nullptr;
    std::uint64_t used = 0;
    std::optional<TValue> value;
  };

  static constexpr std::size_t kPlaces = 16;

  std::array<TPlace, kPlaces> places_;
  std::uint64_t uses_ = 0;
};

class TKeptDates {
 public:
  /// Identifiers of ICU have up to 157 characters; longer ones are not to be kept.
  static constexpr unsigned int kMaxIdentifier = 256;

  static TKeptDates& OfThread();

  /// Throws NQ_EException with the name of ICU's error and the pattern.
  TDateFormat& Format(const NQ_TString& pattern, const NQ_TString& language);
  TDateZone& Zone(const NQ_TString& zone);
  /// In the state of a new calendar, but for its time, which is not set. Throws NQ_EException with the name of ICU's
  /// error and the zone.
  icu::Calendar& NewCalendar(const NQ_TString& zone, const NQ_TString& language);

 private:
  TLastUsed<TDateFormat> formats_;
  TLastUsed<TDateZone> zones_;
  TLastUsed<std::unique_ptr<icu::Calendar>> calendars_;
};

}  // namespace templatenames
