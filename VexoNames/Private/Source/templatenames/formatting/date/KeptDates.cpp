#include "formatting/date/KeptDates.h"

#include <unicode/locid.h>

#include "NQ_EException.h"
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
  auto format = std::make_unique<const icu::SimpleDateFormat>(text, LocaleOf(language), error);
  if (U_FAILURE(error) != 0) nq::Throw(NQ_EException(u_errorName(error), pattern));
  TPlainDatePattern plain(FromIcu(text), *format);
  return {std::move(format), std::move(plain)};
}

std::unique_ptr<icu::Calendar> MakeCalendar(const NQ_TString& zone, const NQ_TString& language) {
  UErrorCode error = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(
      icu::Calendar::createInstance(icu::TimeZone::createTimeZone(ToIcu(zone)), LocaleOf(language), error));
  if (U_FAILURE(error) != 0) nq::Throw(NQ_EException(u_errorName(error), zone));
  return calendar;
}

}  // namespace

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
  calendar.setTimeZone(Zone(zone).Icu());  // reading a text may have put that of the text in its place
  return calendar;
}

}  // namespace templatenames
