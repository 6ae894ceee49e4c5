// Dates by what is kept between calls, and by hand, against dates by ICU objects built for one call: same text, same
// time, same error. VEXONAMES_SLOW_TESTS=1 compares fifty times as much.
#include <gtest/gtest.h>
#include <unicode/basictz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/tztrans.h>

#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "NQ_EException.h"
#include "NQ_TTime.h"
#include "OptionsText.h"
#include "formatting/DateTimePatterns.h"

namespace templatenames {
namespace {

using std::string;
using TLocale = icu::Locale;

constexpr double kNoon = 1601899387250;  // 2020-10-05T12:03:07.25Z

int Rounds(int few) { return formatting_test::SlowTests() ? 50 * few : few; }

NQ_TString Wide(const string& utf8) { return NQ_TString(std::string_view(utf8)); }
icu::UnicodeString Icu(const string& utf8) { return icu::UnicodeString::fromUTF8(utf8); }
string Error(const string& message, const string& data) {
  return "error " + message + " [" + Wide(data).c_str() + ']';  // where a character was cut it is replaced
}
string Digits(double number) { return NQ_TString::Format("%.*g", 17, number).c_str(); }

// The action's result, or its error.
template <class Action>
string Outcome(const Action& action) {
  try {
    return action();
  } catch (const NQ_EException& error) {
    std::ostringstream data;
    data << error.NQ_Data();
    return Error(error.NQ_Message().c_str(), data.str());
  }
}

struct TCase {
  string pattern, zone, language;

  string Parsed(const string& text) const {
    return Outcome([&] {
      double time = -1;
      ParseDateTime(Wide(pattern), Wide(zone), Wide(language), Wide(text), time);
      return Digits(time);
    });
  }
  string Formatted(double time) const {
    return Outcome([&] {
      NQ_TString out;
      FormatDateTime(Wide(pattern), Wide(zone), Wide(language), time, out);
      return string(out.Narrow());
    });
  }

  // The same the plain way.
  string FreshlyParsed(const string& text) const {
    UErrorCode error = U_ZERO_ERROR;
    const TLocale locale(language.c_str());
    const icu::SimpleDateFormat format(Icu(pattern), locale, error);
    if (U_FAILURE(error)) return Error(u_errorName(error), pattern);
    const std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(icu::TimeZone::createTimeZone(Icu(zone)), locale, error));
    if (U_FAILURE(error)) return Error(u_errorName(error), zone);
    calendar->setTime(NQ_TTime().Milliseconds(), error);
    for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar->set(field, 0);
    icu::ParsePosition position(0);
    format.parse(Icu(text), *calendar, position);
    if (position.getIndex() == 0)
      return Error("Unparseable date: error at index " + std::to_string(position.getErrorIndex()), text);
    const double time = calendar->getTime(error);
    return U_FAILURE(error) ? Error(u_errorName(error), text) : Digits(time);
  }
  string FreshlyFormatted(double time) const {
    UErrorCode error = U_ZERO_ERROR;
    icu::SimpleDateFormat format(Icu(pattern), TLocale(language.c_str()), error);
    if (U_FAILURE(error)) return Error(u_errorName(error), pattern);
    format.adoptTimeZone(icu::TimeZone::createTimeZone(Icu(zone)));
    icu::UnicodeString text;
    icu::FieldPosition position(0);
    format.format(icu::Formattable(time, icu::Formattable::kIsDate), text, position, error);
    string utf8;
    return U_FAILURE(error) ? Error(u_errorName(error), Digits(time)) : text.toUTF8String(utf8);
  }

  void CompareTime(double time) const {
    EXPECT_EQ(Formatted(time), FreshlyFormatted(time)) << *this << ' ' << Digits(time);
  }
  void CompareText(const string& text) const { EXPECT_EQ(Parsed(text), FreshlyParsed(text)) << *this << ' ' << text; }
  friend std::ostream& operator<<(std::ostream& out, const TCase& c) {
    return out << '"' << c.pattern << "\" in " << c.zone << " for " << c.language << ':';
  }
};

const char* const kZones[] = {
    "",          "UTC",          "Europe/Brussels", "Australia/Lord_Howe", "GMT-03:30:15",
    "Etc/GMT+5", "No/Such_Zone", "Pacific/Apia",    "Africa/Monrovia",     "America/Sao_Paulo"};
const char* const kLanguages[] = {"",
                                  "de_DE",
                                  "en_US",
                                  "ja_JP",
                                  "ar_EG",
                                  "th_TH",
                                  "xx_YY",
                                  "hi@numbers=deva",
                                  "he@calendar=hebrew",
                                  "zh@calendar=chinese",
                                  "ja@calendar=japanese",
                                  "de@calendar=iso8601",
                                  "en@numbers=roman"};

// Draws cases, times and texts, the same in every run.
class TDraw {
 public:
  explicit TDraw(unsigned seed) : random_(seed) {}

  unsigned Below(std::size_t n) { return static_cast<unsigned>(random_() % n); }
  template <class T, std::size_t N>
  const T& One(const T (&from)[N]) {
    return from[Below(N)];
  }

  TCase Case() {
    static const char* const kSeparators[] = {"-", "/", ".", ":", " ", ", ", "'T'", "''", "' o''clock '", "", ""};
    static constexpr char kLetters[] = "GyYuUrQqMLlwWdDFgEecabBhHKkmsSAzZOvVXxJyMdHmyMdE";
    string pattern;
    for (unsigned fields = Below(6); fields-- > 0;)
      pattern += string(1 + Below(5), kLetters[Below(sizeof kLetters - 1)]) + One(kSeparators);
    return {pattern, One(kZones), One(kLanguages)};
  }

  double Time() {
    const double part = Below(1'000'000'007) / 1e9;
    const double times[] = {kNoon + part * 1e9,                     // with a fraction of a millisecond
                            -12219292800000 + (part - 0.5) * 1e11,  // when the calendar changed
                            part < 0.5 ? -1e300 : 1e17 * part, part * 4e12 - 1e12, part * 4e12 - 1e12};
    return Below(4) == 0 ? One(times) : std::floor(One(times));
  }

  // A text much like what the pattern asks for.
  string Text(const TCase& c) {
    static const char* const kPieces[] = {"1", "99", " ", "-", "+02:00", ".", "/", "Z", "\u0661", "Oct", "PM", "CET"};
    string text = c.FreshlyFormatted(Time());
    for (unsigned changes = Below(3); changes-- > 0;)
      text.replace(Below(text.size() + 1), Below(3), Below(3) == 0 ? "" : One(kPieces));
    return text;
  }

 private:
  std::mt19937_64 random_;
};

double now = kNoon;

class DatesAgainstIcu : public testing::Test {
 protected:
  DatesAgainstIcu() {
    NQ_TTime::SetClock([] { return now; });
  }
  ~DatesAgainstIcu() override {
    NQ_TTime::SetClock(nullptr);
    UErrorCode error = U_ZERO_ERROR;
    TLocale::setDefault(locale_, error);
    icu::TimeZone::adoptDefault(zone_.release());
  }

 private:
  TLocale locale_ = TLocale::getDefault();
  std::unique_ptr<icu::TimeZone> zone_{icu::TimeZone::createDefault()};
};

TEST_F(DatesAgainstIcu, AnyPattern) {
  static const char* const kDefaults[] = {"en_US", "de_DE", "fr", "ja_JP@calendar=japanese"};
  TDraw draw(4711);
  std::vector<TCase> cases;
  for (int i = 0; i < Rounds(400) && !HasFailure(); ++i) {
    if (i % 50 == 0) {
      UErrorCode error = U_ZERO_ERROR;
      TLocale::setDefault(TLocale(draw.One(kDefaults)), error);
      icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(icu::UnicodeString(draw.One(kZones))));
      cases.clear();
    }
    if (cases.size() < 25) cases.push_back(draw.Case());  // more than are kept
    const TCase& c = cases[draw.Below(cases.size())];
    c.CompareTime(draw.Time());
    const string text = draw.Text(c);
    now = std::abs(draw.Time());
    c.CompareText(text);
  }
}

// The patterns that need no ICU, and those that only just do; with every text that differs in one place.
TEST_F(DatesAgainstIcu, PlainPatterns) {
  static const char* const kPatterns =
      "yyyy-MM-dd'T'HH:mm:ss.SSXXX|y/M/d H:m:s|dd.MM.yyyy, HH:mm:ss,SSS|yyyyMMddHHmmssSSS|HHmmss_yyyyMMdd|yyyyMMdd|"
      "yyyMMdd|yyMMdd|yyyyMd|yy-MM-dd|yyy-L-d|yyyy-MM-dd M|yyyy-MM|MM-dd|XXX yyyy-MM-dd|yyyy-MM-ddXXX:HH|yyyy'E'MM-dd|"
      "yyyy-MM-dd'h'HH|yyyy-MM-dd h|yyyy-MM-dd hh a|yyyy-MM-dd HH:mm XX|yyyy-MM-dd S|SSSSSS SSSSSSS yyyy-MM-dd|"
      "MMMMM EEEEE EEEEEE|EEEE, d MMMM|E LLL MMM|LLLL a|aaaaa yy|yyyyy ddd|''yy'''o''''clock";
  TDraw draw(1);
  std::istringstream patterns(kPatterns);
  for (string pattern; std::getline(patterns, pattern, '|');) {
    const TCase c{pattern, "Europe/Brussels", ""};
    for (const TCase& other : {c, TCase{pattern, "GMT+01:00:30", "en"}, TCase{pattern, "GMT-00:00:30", "pl"}}) {
      for (int i = 0; i < Rounds(4); ++i) other.CompareTime(draw.Time());
      for (const double time : {-12212553600000.0, -0.25, 253402300800000.0})
        for (const double past : {-8e7, -4e6, -1.0, 0.0, 1.0}) other.CompareTime(time + past);
    }
    const string text = c.FreshlyFormatted(kNoon + std::floor(draw.Below(1U << 31) * 100.0));
    for (std::size_t at = 0; at < text.size(); ++at) {
      for (const char* piece : {"", "0", "6", "9", "-"}) c.CompareText(string(text).replace(at, 1, piece));
      if (at % 3 == 0) c.CompareText(string(text).insert(at, "90000001"));
    }
    for (const char* more : {"", " ", "1", ".5", "E1", "x"}) c.CompareText(text + more);
  }
}

// Each language has its own idea of what belongs to a number.
TEST_F(DatesAgainstIcu, EveryLanguage) {
  TDraw draw(3);
  std::int32_t count = 0;
  const TLocale* const locales = TLocale::getAvailableLocales(count);
  for (std::int32_t i = 0; i < count; i += 50 / Rounds(1)) {
    for (const char* pattern :
         {"yyyy-MM-dd HH:mm", "dd.MM.yyyy, H:mm:ss,SSS", "yyyy_M_d H.m", "EEEE, d MMMM yyyy h:mm a"}) {
      const TCase c{pattern, "Europe/Brussels", locales[i].getName()};
      const double time = kNoon + std::floor(draw.Below(1U << 31) * 100.0);
      c.CompareTime(time);
      const string ascii = TCase{pattern, c.zone, ""}.FreshlyFormatted(time);
      for (const string& text : {c.FreshlyFormatted(time), ascii, ascii + '-', ascii + ".5"}) c.CompareText(text);
    }
  }
}

// The reason why a text that is exactly one of the four ISO forms need not be tried with those before it.
TEST_F(DatesAgainstIcu, AnIsoFormIsNoneOfThoseBeforeIt) {
  static const char* const kForms[] = {"yyyy-MM-dd'T'HH:mm:ss.SSXXX", "yyyy-MM-dd'T'HH:mm:ssXXX",
                                       "yyyy-MM-dd'T'HH:mmXXX", "yyyy-MM-dd"};
  static const char* const kShorter[] = {"y-M-d'T'H:m:s.SXXX", "y-M-d'T'H:m:sXXX", "y-M-d'T'H:mXXX", "y-M-d"};
  TDraw draw(5);
  for (int i = 0; i < Rounds(20); ++i) {
    const string zone =
        NQ_TString::Format("GMT%c%02u:%02u", "+-"[draw.Below(2)], draw.Below(24), draw.Below(60)).c_str();
    const double time = draw.Below(1U << 31) * 1e5;
    for (std::size_t form = 1; form < std::size(kForms); ++form) {
      const string text = TCase{i % 2 == 0 ? kForms[form] : kShorter[form], zone, ""}.FreshlyFormatted(time);
      for (std::size_t before = 0; before < form; ++before)
        EXPECT_EQ((TCase{kForms[before], zone, ""}.FreshlyParsed(text)).substr(0, 5), "error") << text;
    }
  }
}

// Kept spans of a zone end where ICU says.
TEST_F(DatesAgainstIcu, ChangesOfTheOffset) {
  TDraw draw(9);
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> ids(
      icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_CANONICAL, nullptr, nullptr, error));
  for (const char* id = ids->next(nullptr, error); id != nullptr; id = ids->next(nullptr, error)) {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(Icu(id)));
    const auto* const rules = dynamic_cast<const icu::BasicTimeZone*>(zone.get());
    ASSERT_NE(rules, nullptr);
    const TCase c{"yyyy-MM-dd HH:mm:ss.SSS", id, ""};
    icu::TimeZoneTransition change;
    double at = kNoon - draw.Below(100) * 365 * 86'400'000.0;
    for (int i = 0; i < Rounds(2) && rules->getNextTransition(at, false, change); ++i) {
      at = change.getTime();
      for (const double past : {0.0, -1.0, 4e7, -4e7, 2.4e8, -2.4e8}) {
        c.CompareTime(at + past);
        c.CompareText(c.FreshlyFormatted(at + past));
      }
    }
  }
}

// A calendar numbers what is set in it; after some 700 texts the numbers start anew.
TEST_F(DatesAgainstIcu, ACalendarMayBeUsedOften) {
  const TCase plain{"HH:mm", "Europe/Brussels", "de"}, zone{"HH:mm zzzz", "Europe/Brussels", "de"},
      week{"YYYY-'W'ww-e", "Europe/Brussels", "de"};
  TDraw draw(12);
  for (int i = 0; i < 3000; ++i) {
    now = std::floor(std::abs(draw.Time()));
    zone.Parsed("8:30 Neuseeland-Sommerzeit");
    week.Parsed("1582-W4" + std::to_string(draw.Below(10)) + "-3");
    if (i % 20 == 0) plain.CompareText("7:3" + std::to_string(draw.Below(10)));
  }
}

}  // namespace
}  // namespace templatenames
