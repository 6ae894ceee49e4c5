#include "DateTokens.h"

#include <unicode/smpdtfmt.h>

#include <memory>
#include <string_view>

namespace bench {
namespace {

constexpr const char* kIsoPattern = "yyyy-MM-dd'T'HH:mm:ss.SSXXX";
constexpr DateFormat kDigits{"dd.MM.yyyy HH:mm", "Europe/Brussels", ""};
constexpr std::array<const char*, 4> kDates = {"05.10.2020 14:03", "01.01.2021 00:00", "30.06.2022 23:59",
                                               "24.12.2023 18:30"};

bool Read(const DateFormat& format, const char* text, double& time) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Locale locale(format.language);
  const icu::SimpleDateFormat pattern(icu::UnicodeString::fromUTF8(format.pattern), locale, error);
  const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(format.zone)), locale, error));
  if (U_FAILURE(error) != 0) return false;
  for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar->set(field, 0);
  icu::ParsePosition position(0);
  pattern.parse(icu::UnicodeString::fromUTF8(text), *calendar, position);
  time = calendar->getTime(error);
  return position.getIndex() > 0 && U_FAILURE(error) == 0;
}

bool Write(const DateFormat& format, double time, std::string& out) {
  UErrorCode error = U_ZERO_ERROR;
  icu::SimpleDateFormat pattern(icu::UnicodeString::fromUTF8(format.pattern), icu::Locale(format.language), error);
  if (U_FAILURE(error) != 0) return false;
  pattern.adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(format.zone)));
  icu::UnicodeString text;
  icu::FieldPosition position(0);
  pattern.format(icu::Formattable(time, icu::Formattable::kIsDate), text, position, error);
  text.toUTF8String(out);
  return U_FAILURE(error) == 0;
}

}  // namespace

const DateTask kIsoDates = {{kIsoPattern, "", ""},
                            {kIsoPattern, "Europe/Brussels", ""},
                            {"2020-10-05T14:03:07.25+02:00", "2021-01-01T00:00:00.00Z", "2022-06-30T23:59:59.99-05:00",
                             "2023-12-24T18:30:00.00+05:30"},
                            "2020-10-05T14:03:07.25+02:00;2021-01-01T01:00:00.00+01:00;2022-07-01T06:59:59.99+02:00;"
                            "2023-12-24T14:00:00.00+01:00;"};

const DateTask kNamedMonths = {
    kDigits,
    {"d. MMMM yyyy HH:mm", "America/New_York", "de_DE"},
    kDates,
    "5. Oktober 2020 08:03;31. Dezember 2020 18:00;30. Juni 2022 17:59;24. Dezember 2023 12:30;"};

const DateTask kNamedZones = {kDigits,
                              {"EEEE, d. MMMM yyyy HH:mm zzzz", "America/New_York", "de_DE"},
                              kDates,
                              "Montag, 5. Oktober 2020 08:03 Nordamerikanische Ostk\u00fcsten-Sommerzeit;"
                              "Donnerstag, 31. Dezember 2020 18:00 Nordamerikanische Ostk\u00fcsten-Normalzeit;"
                              "Donnerstag, 30. Juni 2022 17:59 Nordamerikanische Ostk\u00fcsten-Sommerzeit;"
                              "Sonntag, 24. Dezember 2023 12:30 Nordamerikanische Ostk\u00fcsten-Normalzeit;"};

Workload FourDates(const DateTask& task) {
  Workload w;
  for (const char* date : task.dates) {
    const int name = int(w.names.size());
    w.pieces.push_back({name == 0 ? "" : ";", name});
    w.names.push_back({"date" + std::to_string(name), date});
  }
  w.pieces.push_back({";"});
  w.tokens = task.dates.size();
  return w;
}

NQ_TDict DateOptions(const DateTask& task) {
  NQ_TDict options;
  const auto set = [&options](const char* key, const char* value) { options.Add(key, NQ_TString(value)); };
  const auto iso = [](const DateFormat& format) { return std::string_view(format.pattern) == kIsoPattern; };
  set("DataFormat", "DATETIME");
  set(iso(task.in) ? "InputDateTimeFormat" : "CustomInputDateTimeFormat", iso(task.in) ? "ISO8601" : task.in.pattern);
  set("InputTimeZone", task.in.zone);
  set("InputLanguage", task.in.language);
  set(iso(task.out) ? "DateTimeFormat" : "CustomDateTimeFormat", iso(task.out) ? "ISO8601" : task.out.pattern);
  set("TimeZone", task.out.zone);
  set("Language", task.out.language);
  return options;
}

Registry DateRegistry(const DateTask& task) {
  const Workload w = FourDates(task);
  Registry registry = MakeRegistry(w);
  for (const Name& name : w.names) registry->SetFormattingOptions(NQ_TString(name.key.c_str()), DateOptions(task));
  return registry;
}

void IcuEachTime::Run() {
  out_.clear();
  for (const char* date : task_.dates) {
    double time = 0;
    if (!Read(task_.in, date, time) || !Write(task_.out, time, out_)) out_ += "(no date)";
    out_ += ';';
  }
}

}  // namespace bench
