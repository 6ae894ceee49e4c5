#include "formatting/DateTimePatterns.h"

#include <cmath>
#include <optional>

#include "NQ_EException.h"
#include "NQ_TTime.h"
#include "formatting/IcuText.h"
#include "formatting/KeptDates.h"

namespace templatenames {
namespace {

// Patterns that people write have fewer than 100 characters. ICU's time to read numbers with nothing between them grows
// with the square of the pattern, and with the text: a fifth of a second at these sizes, seconds at four times them.
constexpr unsigned int kMaxPattern = 256;
constexpr const char* kPatternTooLong = "Date pattern is longer than 256 characters";
constexpr std::size_t kMaxText = 1024;

// Identifiers of ICU have up to 157 characters.
constexpr unsigned int kMaxKeptIdentifier = 256;

// The thread's objects; for identifiers that are too long to be kept, objects of this call.
class TDatesOfCall {
 public:
  TDatesOfCall(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language) {
    if (pattern.Length() > kMaxPattern) nq::Throw(NQ_EException(kPatternTooLong, pattern));
    const bool kept = zone.Length() <= kMaxKeptIdentifier && language.Length() <= kMaxKeptIdentifier;
    dates_ = kept ? &TKeptDates::OfThread() : &own_.emplace();
  }
  TDatesOfCall(const TDatesOfCall&) = delete;
  TDatesOfCall& operator=(const TDatesOfCall&) = delete;

  TKeptDates* operator->() const { return dates_; }
  TKeptDates& operator*() const { return *dates_; }

 private:
  std::optional<TKeptDates> own_;
  TKeptDates* dates_;
};

bool ReadPlainly(TKeptDates& dates, const TDateFormat& format, const NQ_TString& zone, const NQ_TString& text,
                 double& time) {
  TPlainDatePattern::TLocalTime local;
  if (!format.plain.Read(text.StringView(), local)) return false;
  time = local.offset ? local.milliseconds - *local.offset : dates.Zone(zone).TimeAt(local.milliseconds);
  return true;
}

void StartToday(icu::Calendar& calendar) {
  UErrorCode error = U_ZERO_ERROR;  // every time is one
  calendar.setTime(NQ_TTime().Milliseconds(), error);
  for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar.set(field, 0);
}

}  // namespace

bool ParseExactDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                        const NQ_TString& text, double& time) {
  const TDatesOfCall dates(pattern, zone, language);
  return ReadPlainly(*dates, dates->Format(pattern, language), zone, text, time);
}

void ParseDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                   const NQ_TString& text, double& time) {
  const TDatesOfCall dates(pattern, zone, language);
  const TDateFormat& format = dates->Format(pattern, language);
  if (ReadPlainly(*dates, format, zone, text, time)) return;
  icu::Calendar& calendar = dates->NewCalendar(zone, language);
  StartToday(calendar);
  icu::ParsePosition position(0);
  format.icu->parse(ToIcu(text, kMaxText), calendar, position);
  if (position.getIndex() == 0) {
    const auto reason = NQ_TString::Format("Unparseable date: error at index %d", int{position.getErrorIndex()});
    nq::Throw(NQ_EException(reason, text));
  }
  UErrorCode error = U_ZERO_ERROR;
  const double read = calendar.getTime(error);
  if (U_FAILURE(error) != 0) nq::Throw(NQ_EException(u_errorName(error), text));
  time = read;
}

void FormatDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language, double time,
                    NQ_TString& out) {
  const TDatesOfCall dates(pattern, zone, language);
  const TDateFormat& format = dates->Format(pattern, language);
  if (std::isnan(time)) nq::Throw(NQ_EException(u_errorName(U_ILLEGAL_ARGUMENT_ERROR), time));
  if (format.plain.Write(time, dates->Zone(zone).OffsetAt(time), out)) return;
  icu::Calendar& calendar = dates->NewCalendar(zone, language);
  UErrorCode error = U_ZERO_ERROR;
  calendar.setTime(time, error);
  if (U_FAILURE(error) != 0) nq::Throw(NQ_EException(u_errorName(error), time));
  icu::UnicodeString text;
  icu::FieldPosition position(0);
  format.icu->format(calendar, text, position);
  out = NQ_TString(FromIcu(text));
}

}  // namespace templatenames
