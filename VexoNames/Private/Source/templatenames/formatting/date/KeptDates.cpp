#include "formatting/date/KeptDates.h"

#include <unicode/locid.h>

#include <cmath>
#include <limits>

#include "formatting/date/IcuText.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// What is no identifier, such as a word of twelve letters, ICU makes a locale without a name of. Some pattern letters
// crash with it; others put the names of the process's language in the place where ICU keeps those of the root locale.
icu::Locale LocaleOf(const NQ_TString& language) {
  const icu::Locale locale(language.c_str());
  return locale.isBogus() != 0 ? icu::Locale::getDefault() : locale;
}

// The locale that stands in for unknown ones; ICU has one object for each and never drops it. The root locale needs
// none.
const void* StandIn(const NQ_TString& language) { return language.Empty() ? nullptr : &icu::Locale::getDefault(); }

TDateFormat MakeFormat(const NQ_TString& pattern, const NQ_TString& language) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::UnicodeString text = ToIcu(pattern);
  auto format = std::make_unique<icu::SimpleDateFormat>(text, LocaleOf(language), error);
  CheckIcu(format == nullptr ? U_MEMORY_ALLOCATION_ERROR : error, pattern);
  format->setTimeZone(*icu::TimeZone::getGMT());  // the process's shows in the year with which a century starts
  TPlainDatePattern plain(FromIcu(text), *format);
  return TDateFormat(std::move(format), std::move(plain));
}

std::unique_ptr<icu::Calendar> MakeCalendar(const NQ_TString& zone, const NQ_TString& language) {
  UErrorCode error = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(
      icu::Calendar::createInstance(icu::TimeZone::createTimeZone(ToIcu(zone)), LocaleOf(language), error));
  CheckIcu(error, zone);
  return calendar;
}

}  // namespace

void TDateFormat::StartCentury(double now) {
  constexpr double kDay = 86'400'000;
  const double day = std::floor(now / kDay) * kDay;
  if (day == day_) return;
  UErrorCode error = U_ZERO_ERROR;
  // Calendars that count years by reigns have no such years; ICU marks them so.
  if (icu->get2DigitYearStart(error) == std::numeric_limits<double>::min()) return;
  const std::unique_ptr<icu::Calendar> start(icu->getCalendar()->clone());
  CheckIcu(start == nullptr ? U_MEMORY_ALLOCATION_ERROR : error, now);
  start->setTime(day, error);
  start->add(UCAL_YEAR, -80, error);
  icu->set2DigitYearStart(start->getTime(error), error);
  CheckIcu(error, now);
  day_ = day;
}

TKeptDates& TKeptDates::OfThread() { return TThreadKept<TKeptDates>::Mine(); }

TDateFormat& TKeptDates::Format(const NQ_TString& pattern, const NQ_TString& language) {
  return formats_.Find(pattern, language, StandIn(language), [&] { return MakeFormat(pattern, language); });
}

TDateZone& TKeptDates::Zone(const NQ_TString& zone) {
  return zones_.Find(zone, NQ_TString::sEmpty, nullptr, [&] { return TDateZone(zone); });
}

icu::Calendar& TKeptDates::NewCalendar(const NQ_TString& zone, const NQ_TString& language) {
  icu::Calendar& calendar =
      *calendars_.Find(zone, language, StandIn(language), [&] { return MakeCalendar(zone, language); });
  // Reading a text may have put the zone of the text in its place.
  std::unique_ptr<icu::TimeZone> copy(Zone(zone).Icu().clone());
  CheckIcu(copy == nullptr ? U_MEMORY_ALLOCATION_ERROR : U_ZERO_ERROR, zone);
  calendar.adoptTimeZone(copy.release());
  return calendar;
}

}  // namespace templatenames
