#include "formatting/date/DateFindings.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "NQ_EException.h"
#include "NQ_TTime.h"
#include "formatting/date/DateOptions.h"
#include "formatting/date/DatePatternParts.h"
#include "formatting/date/DateTimePatterns.h"
#include "formatting/date/KeptDates.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

constexpr std::u16string_view kZoneLetters = u"zZOvVXx";
constexpr std::u16string_view kClockLetters = u"HhkKmsSA";

constexpr double FirstOf(int year) {
  return static_cast<double>(std::chrono::sys_days(std::chrono::year(year) / 1 / 1).time_since_epoch().count()) *
         86'400'000;
}
constexpr double kFirstLikely = FirstOf(1900);
constexpr double kEndOfLikely = FirstOf(2201);

// Whole milliseconds, as "UNIX" reads them.
NQ_TString Milliseconds(double time) { return NQ_TString::Format("%.0f", std::trunc(time)); }

// The time by a pattern; nothing when ICU refuses.
std::optional<NQ_TString> Written(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                                  double time) {
  try {
    NQ_TString text;
    FormatDateTime(pattern, zone, language, time, text);
    return text;
  } catch (const NQ_EException&) {
    return std::nullopt;
  }
}

class TValueFindings {
 public:
  TValueFindings(const NQ_TDict& options, const NQ_TString& value, const TDateOutcome& outcome, TFindings& findings)
      : places_(TDatePlaces::In(options)),
        value_(value),
        outcome_(outcome),
        findings_(findings),
        format_(places_.Text(TDateKeys::kInputDateTimeFormat)),
        zone_(places_.Text(TDateKeys::kInputTimeZone)) {}

  void Find() {
    if (!outcome_.read || outcome_.length == 0) {
      Add(TNameProblem::TNameProblem_KindUnreadable, WhyUnreadable());
      return;
    }
    FindRest();
    if (!FindOtherUnit()) FindYear();
    FindMissingZone();
  }

 private:
  void Add(TNameProblem::TNameProblem_Kind kind, NQ_TString reason, NQ_TString suggestion = {}) {
    findings_.Add(kind, std::move(reason), std::move(suggestion));
  }
  NQ_TString Value() const { return Quoted(value_.StringView()); }
  const NQ_TString& CustomPattern() const { return places_.Text(TDateKeys::kCustomInputDateTimeFormat); }
  bool IsUnix() const { return format_.Equals(kUnix); }

  /// The pattern by which the value was read; with "UNIX" none.
  const NQ_TString& PatternRead() const {
    return IsUnix() ? NQ_TString::sEmpty : IsCustom(format_) ? CustomPattern() : IsoPatterns()[outcome_.formsFailed];
  }

  bool IsIsoDate() const { return format_.Equals(kIso8601) && outcome_.formsFailed + 1 == IsoPatterns().size(); }

  NQ_TString WhyUnreadable() const {
    if (IsUnix()) return Sentence(Value(), u" is no number of milliseconds since 1970; 0 was taken");
    if (!IsCustom(format_))
      return Sentence(Value(), u" is no date as ISO8601 has it: 2020-10-05T14:03:07+02:00, or 2020-10-05");
    if (CustomPattern().Empty())
      return Sentence(u"nothing says how ", Value(),
                      u" is to be read: \"InputDateTimeFormat\" may be ISO8601 or UNIX, or "
                      u"\"CustomInputDateTimeFormat\" a pattern such as dd.MM.yyyy");
    const NQ_TString& language = places_.Text(TDateKeys::kInputLanguage);
    const auto example = Written(CustomPattern(), zone_, language, NQ_TTime().Milliseconds());
    const NQ_TString pattern = Quoted(CustomPattern().StringView());
    if (!example) return Sentence(Value(), u" cannot be read with the pattern ", pattern);
    return Sentence(Value(), u" cannot be read with the pattern ", pattern, u": today is ",
                    Quoted(example->StringView()), u" by it");
  }

  void FindRest() {
    const std::u16string_view rest =
        value_.StringView().substr(std::min<std::size_t>(outcome_.length, value_.Length()));
    if (rest.find_first_not_of(u" \t\r\n") == std::u16string_view::npos) return;
    const bool isIsoTime = IsIsoDate() && rest.front() == u'T';
    Add(TNameProblem::TNameProblem_KindUnreadRest,
        Sentence(u"of ", Value(), u" only the beginning was read; ", Quoted(rest), u" was left over",
                 isIsoTime ? u": a time of day needs its offset, as in T14:03:07Z or T14:03+02:00" : u""),
        isIsoTime ? WithOffset() : NQ_TString());
  }

  // What is lacking is mostly the offset alone.
  NQ_TString WithOffset() const {
    NQ_TString better = value_ + "Z";
    double time = 0;
    for (const NQ_TString& pattern : IsoPatterns()) {
      if (ParseExactDateTime(pattern, zone_, NQ_TString::sEmpty, better, time)) return better;
    }
    return {};
  }

  // Programs count seconds, microseconds and nanoseconds too. In these years their numbers have 10, 16 and 19 digits.
  bool FindOtherUnit() {
    static constexpr struct {
      double from;  // to ten times that
      double milliseconds;
      std::u16string_view unit;
    } kUnits[] = {{1e9, 1e3, u"seconds"}, {1e15, 1e-3, u"microseconds"}, {1e18, 1e-6, u"nanoseconds"}};
    if (!IsUnix()) return false;
    for (const auto& unit : kUnits) {
      if (!(outcome_.time >= unit.from && outcome_.time < 10 * unit.from)) continue;
      Add(TNameProblem::TNameProblem_KindUnlikely,
          Sentence(u"UNIX counts milliseconds, and ", Value(), u" looks like ", unit.unit),
          Milliseconds(outcome_.time * unit.milliseconds));
      return true;
    }
    return false;
  }

  void FindYear() {
    if (outcome_.time >= kFirstLikely && outcome_.time < kEndOfLikely) return;
    const auto year = Written(NQ_TString("u"), zone_, NQ_TString::sEmpty, outcome_.time);
    const bool isShort = year && year->Length() <= 2 && HasFieldOf(u"y", PatternRead().StringView());
    Add(TNameProblem::TNameProblem_KindUnlikely,
        Sentence(u"the year of ", Value(), u" is ", year ? year->StringView() : u"unknown",
                 isShort ? u"; a year of two digits is read by yy" : u"; it is rarely one before 1900 or after 2200"),
        isShort && IsCustom(format_) ? WithShortYear() : NQ_TString());
  }

  NQ_TString WithShortYear() const {
    std::vector<TDatePart> parts = PartsOf(CustomPattern().StringView());
    for (TDatePart& part : parts) {
      if (part.Letter() == u'y') part.text = u"yy";
    }
    return NQ_TString(PatternOf(parts));
  }

  // What is read in UTC and written in UTC, without saying so, would be the same in any zone. A date alone is midnight;
  // that is a guess of consequence only where another zone shows another time, and so perhaps the day before.
  void FindMissingZone() {
    if (IsUnix() || !zone_.Empty() || ReadsZone()) return;
    const bool hasClock = HasFieldOf(kClockLetters, PatternRead().StringView());
    if (OutputOffset() == 0 && !(hasClock && SaysInstant())) return;
    const NQ_TString& zone = places_.Text(TDateKeys::kTimeZone);
    Add(TNameProblem::TNameProblem_KindNoZone,
        Sentence(Value(), hasClock ? u" names no time zone and was taken as UTC" : u" was taken as midnight in UTC",
                 u": \"InputTimeZone\" can say another one, such as ",
                 zone.Empty() ? u"Europe/Brussels" : zone.StringView()));
  }

  bool ReadsZone() const {
    return IsCustom(format_) ? HasFieldOf(kZoneLetters, CustomPattern().StringView()) : !IsIsoDate();
  }

  bool SaysInstant() const {
    return !IsCustom(places_.Text(TDateKeys::kDateTimeFormat)) ||
           HasFieldOf(kZoneLetters, places_.Text(TDateKeys::kCustomDateTimeFormat).StringView());
  }

  // Of the zone in which the result is written; 0 where there is none.
  std::int32_t OutputOffset() const {
    const NQ_TString& zone = places_.Text(TDateKeys::kTimeZone);
    if (zone.Empty() || places_.Text(TDateKeys::kDateTimeFormat).Equals(kUnix)) return 0;
    if (zone.Length() > TKeptDates::kMaxIdentifier) return 0;  // no zone is called so
    return TKeptDates::OfThread().Zone(zone).OffsetAt(outcome_.time);
  }

  const TDatePlaces& places_;
  const NQ_TString& value_;
  const TDateOutcome& outcome_;
  TFindings& findings_;
  const NQ_TString& format_;
  const NQ_TString& zone_;
};

}  // namespace

void FindInDateValue(const NQ_TDict& options, const NQ_TString& value, const TDateOutcome& outcome,
                     TFindings& findings) {
  TValueFindings(options, value, outcome, findings).Find();
}

}  // namespace templatenames
