#include "formatting/date/DateTimePatterns.h"

#include <unicode/uchar.h>

#include <cmath>
#include <optional>

#include "NQ_EException.h"
#include "NQ_TTime.h"
#include "formatting/date/IcuText.h"
#include "formatting/date/KeptDates.h"

namespace templatenames {
namespace {

// Patterns that people write have fewer than 100 characters. ICU's time to read numbers with nothing between them grows
// with the square of the pattern, and with the text: a fifth of a second at this size and kMaxPatternRead, seconds at
// four times them. Writing takes time linear in the pattern; kMaxPatternWritten bounds what is kept of it.
constexpr std::size_t kMaxText = 1024;

// The thread's objects; for identifiers that are too long to be kept, objects of this call.
class TDatesOfCall {
 public:
  TDatesOfCall(const NQ_TString& pattern, int longest, const NQ_TString& zone, const NQ_TString& language) {
    if (static_cast<int>(pattern.Length()) > longest)
      nq::Throw(NQ_EException(NQ_TString::Format("Date pattern is longer than %d characters", longest), pattern));
    const bool kept = zone.Length() <= TKeptDates::kMaxIdentifier && language.Length() <= TKeptDates::kMaxIdentifier;
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

// Where ICU 72 reads a fraction of a second of 35 digits or more it divides by zero, also when other characters stand
// between the digits. No date has as many. Of a text that does, nine digits of each fraction are kept, and what stands
// before the 35th digit then.
icu::UnicodeString WithFewerDigits(const icu::UnicodeString& text) {
  constexpr int kMostDigits = 34, kMostInFraction = 9;
  icu::UnicodeString kept;
  int all = 0, digits = 0, inFraction = 0;
  bool isFraction = false;
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
    const UChar32 c = text.char32At(at);
    if (u_isdigit(c) == 0) {
      isFraction = c == u'.' || c == u',';
      inFraction = 0;
    } else {
      ++all;
      if (isFraction && ++inFraction > kMostInFraction) continue;
      if (++digits > kMostDigits) break;
    }
    kept.append(c);
  }
  return all > kMostDigits ? kept : text;
}

bool ReadPlainly(TKeptDates& dates, const TDateFormat& format, const NQ_TString& zone, const NQ_TString& text,
                 double& time) {
  TPlainDatePattern::TLocalTime local;
  if (!format.plain.Read(text.StringView(), local)) return false;
  time = local.offset ? local.milliseconds - *local.offset : dates.Zone(zone).TimeAt(local.milliseconds);
  return true;
}

void StartToday(icu::Calendar& calendar, double now) {
  UErrorCode error = U_ZERO_ERROR;  // every time is one
  calendar.setTime(now, error);
  for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar.set(field, 0);
}

}  // namespace

bool ParseExactDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                        const NQ_TString& text, double& time) {
  const TDatesOfCall dates(pattern, kMaxPatternRead, zone, language);
  return ReadPlainly(*dates, dates->Format(pattern, language), zone, text, time);
}

std::size_t ParseDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                          const NQ_TString& text, double& time) {
  const TDatesOfCall dates(pattern, kMaxPatternRead, zone, language);
  TDateFormat& format = dates->Format(pattern, language);
  if (ReadPlainly(*dates, format, zone, text, time)) return text.Length();
  icu::Calendar& calendar = dates->NewCalendar(zone, language);
  const double now = NQ_TTime().Milliseconds();
  StartToday(calendar, now);
  format.StartCentury(now);
  icu::ParsePosition position(0);
  icu::UnicodeString start = ToIcu(text, kMaxText);
  const std::int32_t length = start.length();
  if (pattern.Find('S') >= 0) start = WithFewerDigits(start);
  format.icu->parse(start, calendar, position);
  if (position.getIndex() == 0) {
    const auto reason = NQ_TString::Format("Unparseable date: error at index %d", int{position.getErrorIndex()});
    nq::Throw(NQ_EException(reason, text));
  }
  UErrorCode error = U_ZERO_ERROR;
  const double read = calendar.getTime(error);
  CheckIcu(error, text);
  time = read;
  return static_cast<std::size_t>(length - (start.length() - position.getIndex()));
}

void FormatDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language, double time,
                    NQ_TString& out) {
  const TDatesOfCall dates(pattern, kMaxPatternWritten, zone, language);
  const TDateFormat& format = dates->Format(pattern, language);
  if (std::isnan(time)) CheckIcu(U_ILLEGAL_ARGUMENT_ERROR, time);
  if (format.plain.Write(time, dates->Zone(zone).OffsetAt(time), out)) return;
  icu::Calendar& calendar = dates->NewCalendar(zone, language);
  UErrorCode error = U_ZERO_ERROR;
  calendar.setTime(time, error);
  CheckIcu(error, time);
  icu::UnicodeString text;
  icu::FieldPosition position(0);
  format.icu->format(calendar, text, position);
  if (text.isBogus() != 0) CheckIcu(U_MEMORY_ALLOCATION_ERROR, time);
  out = NQ_TString(FromIcu(text));
}

}  // namespace templatenames
