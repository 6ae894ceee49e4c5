#include "formatting/date/CheckDateOptions.h"

#include "formatting/date/DateOptions.h"
#include "formatting/date/DateTimePatterns.h"
#include "formatting/date/IcuNames.h"
#include "formatting/date/UnlikelyPattern.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

// The options of reading, and those of writing.
struct TSide {
  TDateKeys::TKey format, pattern, zone, language;
  int longestPattern;
};
constexpr TSide kSides[] = {
    {TDateKeys::kInputDateTimeFormat, TDateKeys::kCustomInputDateTimeFormat, TDateKeys::kInputTimeZone,
     TDateKeys::kInputLanguage, kMaxPatternRead},
    {TDateKeys::kDateTimeFormat, TDateKeys::kCustomDateTimeFormat, TDateKeys::kTimeZone, TDateKeys::kLanguage,
     kMaxPatternWritten},
};

NQ_TString Name(TDateKeys::TKey key) { return Quoted(TDateKeys::All()[key].StringView()); }

void CheckPattern(const TSide& side, const NQ_TString& pattern, TFindings& findings) {
  if (pattern.Empty()) {
    findings.Add(TNameProblem::TNameProblem_KindUnlikely,
                 Sentence(Name(side.format), u" may be ISO8601 or UNIX; otherwise ", Name(side.pattern),
                          u" must be a pattern, such as dd.MM.yyyy"));
  } else if (static_cast<int>(pattern.Length()) > side.longestPattern) {
    findings.Add(TNameProblem::TNameProblem_KindOptionValue,
                 Sentence(Name(side.pattern), u" has more than ", NumberText(side.longestPattern),
                          u" characters and is not used"));
  } else if (const TUnlikelyPattern unlikely = FindUnlikely(pattern); !unlikely.reason.Empty()) {
    findings.Add(
        TNameProblem::TNameProblem_KindUnlikely,
        Sentence(u"in the pattern ", Quoted(pattern.StringView()), u" of ", Name(side.pattern), u", ", unlikely.reason),
        unlikely.meant);
  }
}

void CheckZone(const TSide& side, const NQ_TString& zone, TFindings& findings) {
  if (zone.Empty() || IsKnownZone(zone)) return;
  findings.Add(TNameProblem::TNameProblem_KindUnknownZone,
               Sentence(u"the time zone ", Quoted(zone.StringView()), u" of ", Name(side.zone),
                        u" is not known and UTC is taken; zones are called like Europe/Brussels or GMT+02:00"),
               NearestZone(zone));
}

void CheckLanguage(const TSide& side, const NQ_TString& language, TFindings& findings) {
  if (IsKnownLanguage(language)) return;
  findings.Add(TNameProblem::TNameProblem_KindUnknownLanguage,
               Sentence(u"the language ", Quoted(language.StringView()), u" of ", Name(side.language),
                        u" is not known and that of the process is taken; languages are called like de or pt_BR"),
               NearestLanguage(language));
}

}  // namespace

void CheckDateOptions(const NQ_TDict& options, TFindings& findings) {
  const TDatePlaces& places = TDatePlaces::In(options);
  for (const TSide& side : kSides) {
    const NQ_TString& format = places.Text(side.format);
    if (!format.Equals(kUnix)) CheckZone(side, places.Text(side.zone), findings);
    if (!IsCustom(format)) continue;
    CheckPattern(side, places.Text(side.pattern), findings);
    CheckLanguage(side, places.Text(side.language), findings);
  }
}

}  // namespace templatenames
