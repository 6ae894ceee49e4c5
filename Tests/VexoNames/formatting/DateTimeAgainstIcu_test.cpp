// Dates by what is kept between calls, and by hand, against dates by ICU objects built for one call: same text, same
// time, same error. VEXONAMES_SLOW_TESTS=1 compares fifty times as much.
#include <unicode/basictz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/tztrans.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <sstream>

#include "NQ_TTime.h"
#include "OptionsText.h"
#include "Support.h"
#include "formatting/date/DateTimePatterns.h"

namespace templatenames {
namespace {

using formatting_test::Rounds;
using names_test::S;
using std::string;
using TLocale = icu::Locale;

constexpr double kNoon = 1601899387250;  // 2020-10-05T12:03:07.25Z
double now = kNoon;

icu::UnicodeString Icu(const string& utf8) { return icu::UnicodeString::fromUTF8(utf8); }
string Digits(double number) { return NQ_TString::Format("%.*g", 17, number).c_str(); }

// The action's result, or its error.
template <class Action>
string Outcome(const Action& action) {
  try {
    return action();
  } catch (const NQ_EException& error) {
    std::ostringstream out;
    out << "error " << error.NQ_Message() << " [" << error.NQ_Data() << ']';
    return out.str();
  }
}

struct TCase {
  string pattern, zone, language;

  string Parsed(const string& text) const {
    return Outcome([&] {
      double time = -1;
      ParseDateTime(S(pattern), S(zone), S(language), S(text), time);
      return Digits(time);
    });
  }
  string Formatted(double time) const {
    return Outcome([&] {
      NQ_TString out;
      FormatDateTime(S(pattern), S(zone), S(language), time, out);
      return names_test::Text(out);
    });
  }

  // The same the plain way.
  string FreshlyParsed(const string& text) const {
    const auto failed = [](const string& what, const string& data) { return "error " + what + " [" + data + ']'; };
    UErrorCode error = U_ZERO_ERROR;
    const TLocale locale(language.c_str());
    icu::SimpleDateFormat format(Icu(pattern), locale, error);
    const std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(icu::TimeZone::createTimeZone(Icu(zone)), locale, error));
    if (U_FAILURE(error)) return failed(u_errorName(error), pattern);
    calendar->setTime(NQ_TTime().Milliseconds(), error);
    for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar->set(field, 0);
    SetCentury(format, error);
    icu::ParsePosition position(0);
    format.parse(Icu(text), *calendar, position);
    if (position.getIndex() == 0)
      return failed("Unparseable date: error at index " + std::to_string(position.getErrorIndex()), S(text).c_str());
    const double time = calendar->getTime(error);
    return U_FAILURE(error) ? failed(u_errorName(error), S(text).c_str()) : Digits(time);
  }
  // ICU's own clock is another one, and it looks at it once.
  static void SetCentury(icu::SimpleDateFormat& format, UErrorCode& error) {
    if (format.get2DigitYearStart(error) == std::numeric_limits<double>::min()) return;
    format.setTimeZone(*icu::TimeZone::getGMT());
    const std::unique_ptr<icu::Calendar> start(format.getCalendar()->clone());
    start->setTime(std::floor(NQ_TTime().Milliseconds() / 86'400'000) * 86'400'000, error);
    start->add(UCAL_YEAR, -80, error);
    format.set2DigitYearStart(start->getTime(error), error);
  }
  string FreshlyFormatted(double time) const {
    UErrorCode error = U_ZERO_ERROR;
    icu::SimpleDateFormat format(Icu(pattern), TLocale(language.c_str()), error);
    format.adoptTimeZone(icu::TimeZone::createTimeZone(Icu(zone)));
    icu::UnicodeString text;
    icu::FieldPosition position(0);
    string utf8;
    return format.format(icu::Formattable(time, icu::Formattable::kIsDate), text, position, error).toUTF8String(utf8);
  }

  void CompareTime(double time) const {
    EXPECT_EQ(Formatted(time), FreshlyFormatted(time)) << *this << ' ' << Digits(time);
  }
  void CompareText(const string& text) const { EXPECT_EQ(Parsed(text), FreshlyParsed(text)) << *this << ' ' << text; }
  friend std::ostream& operator<<(std::ostream& out, const TCase& c) {
    return out << '"' << c.pattern << "\" in " << c.zone << " for " << c.language << ':';
  }
};

// Draws cases, times and texts, the same in every run, with another clock, language and zone of the process.
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

  unsigned Below(std::size_t n) { return static_cast<unsigned>(random_() % n); }
  string OneOf(std::initializer_list<const char*> from) { return from.begin()[Below(from.size())]; }
  string Zone() {
    return OneOf({"", "UTC", "Europe/Brussels", "Australia/Lord_Howe", "GMT-03:30:15", "Etc/GMT+5", "No/Such_Zone",
                  "Pacific/Apia", "Africa/Monrovia", "America/Sao_Paulo"});
  }

  TCase Case() {
    static constexpr char kLetters[] = "GyYuUrQqMLlwWdDFgEecabBhHKkmsSAzZOvVXxJyMdHmyMdE";
    string pattern;
    for (unsigned fields = Below(6); fields-- > 0;)
      pattern += string(1 + Below(5), kLetters[Below(sizeof kLetters - 1)]) +
                 OneOf({"-", "/", ".", ":", " ", ", ", "'T'", "''", "' o''clock '", "", ""});
    const string zone = Zone();
    return {pattern, zone,
            OneOf({"", "de_DE", "en_US", "ja_JP", "ar_EG", "th_TH", "xx_YY", "hi@numbers=deva", "he@calendar=hebrew",
                   "zh@calendar=chinese", "ja@calendar=japanese", "de@calendar=iso8601", "en@numbers=roman"})};
  }

  double Time() {
    const double part = Below(1'000'000'007) / 1e9;
    const double times[] = {kNoon + part * 1e9,                     // with a fraction of a millisecond
                            -12219292800000 + (part - 0.5) * 1e11,  // when the calendar changed
                            part < 0.5 ? -1e300 : 1e17 * part, part * 4e12 - 1e12, part * 4e12 - 1e12};
    const double time = times[Below(5)];
    return Below(4) == 0 ? time : std::floor(time);
  }
  double RecentTime() { return kNoon + std::floor(Below(1U << 31) * 100.0); }

  // A text much like what the pattern asks for.
  string Text(const TCase& c) {
    string text = c.FreshlyFormatted(Time());
    for (unsigned changes = Below(3); changes-- > 0;) {
      const string piece = OneOf({"1", "99", " ", "-", "+02:00", ".", "/", "Z", "\u0661", "Oct", "PM", "CET"});
      text.replace(Below(text.size() + 1), Below(3), Below(3) == 0 ? "" : piece);
    }
    return text;
  }

 private:
  std::mt19937_64 random_{4711};
  TLocale locale_ = TLocale::getDefault();
  std::unique_ptr<icu::TimeZone> zone_{icu::TimeZone::createDefault()};
};

TEST_F(DatesAgainstIcu, AnyPattern) {
  std::vector<TCase> cases;
  for (int i = 0; i < Rounds(400) && !HasFailure(); ++i) {
    if (i % 50 == 0) {
      UErrorCode error = U_ZERO_ERROR;
      TLocale::setDefault(TLocale(OneOf({"en_US", "de_DE", "fr", "ja_JP@calendar=japanese"}).c_str()), error);
      icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(Icu(Zone())));
      cases.clear();
    }
    if (cases.size() < 25) cases.push_back(Case());  // more than are kept
    const TCase& c = cases[Below(cases.size())];
    c.CompareTime(Time());
    const string text = Text(c);
    now = std::abs(Time());
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
  for (const string offset : {"+23:59", "-23:59", "+24:00", "+00:60"})
    TCase{"yyyy-MM-dd HH:mmXXX", "", ""}.CompareText("2020-10-05 14:03" + offset);
  for (const string& pattern : names_test::Split(kPatterns)) {
    const TCase c{pattern, "Europe/Brussels", ""};
    for (const TCase& other : {c, TCase{pattern, "GMT+01:00:30", "en"}, TCase{pattern, "GMT-00:00:30", "pl"}}) {
      for (int i = 0; i < Rounds(4); ++i) other.CompareTime(Time());
      for (const double time : {-12212553600000.0, -0.25, 253402300800000.0})
        for (const double past : {-8e7, -4e6, -1.0, 0.0, 1.0}) other.CompareTime(time + past);
    }
    const string text = c.FreshlyFormatted(RecentTime());
    for (std::size_t at = 0; at < text.size(); ++at) {
      for (const char* piece : {"", "0", "6", "9", "-"}) c.CompareText(string(text).replace(at, 1, piece));
      if (at % 3 == 0) c.CompareText(string(text).insert(at, "90000001"));
    }
    for (const char* more : {"", " ", "1", ".5", "E1", "x"}) c.CompareText(text + more);
  }
}

// Each language has its own idea of what belongs to a number.
TEST_F(DatesAgainstIcu, EveryLanguage) {
  std::int32_t count = 0;
  const TLocale* const locales = TLocale::getAvailableLocales(count);
  for (std::int32_t i = 0; i < count; i += 50 / Rounds(1)) {
    for (const char* pattern :
         {"yyyy-MM-dd HH:mm", "dd.MM.yyyy, H:mm:ss,SSS", "yyyy_M_d H.m", "EEEE, d MMMM yyyy h:mm a"}) {
      const TCase c{pattern, "Europe/Brussels", locales[i].getName()};
      const double time = RecentTime();
      c.CompareTime(time);
      const string ascii = TCase{pattern, c.zone, ""}.FreshlyFormatted(time);
      for (const string& text : {c.FreshlyFormatted(time), ascii, ascii + '-', ascii + ".5"}) c.CompareText(text);
    }
  }
}

// The reason why a text that is exactly one of the four ISO forms need not be tried with those before it.
TEST_F(DatesAgainstIcu, AnIsoFormIsNoneOfThoseBeforeIt) {
  static const char* const kForms[][2] = {{"yyyy-MM-dd'T'HH:mm:ss.SSXXX", "y-M-d'T'H:m:s.SXXX"},
                                          {"yyyy-MM-dd'T'HH:mm:ssXXX", "y-M-d'T'H:m:sXXX"},
                                          {"yyyy-MM-dd'T'HH:mmXXX", "y-M-d'T'H:mXXX"},
                                          {"yyyy-MM-dd", "y-M-d"}};
  for (int i = 0; i < Rounds(20); ++i) {
    const string zone = NQ_TString::Format("GMT%c%02u:%02u", "+-"[Below(2)], Below(24), Below(60)).c_str();
    for (std::size_t form = 1; form < std::size(kForms); ++form) {
      const string text = TCase{kForms[form][i % 2], zone, ""}.FreshlyFormatted(RecentTime());
      for (std::size_t before = 0; before < form; ++before)
        EXPECT_TRUE((TCase{kForms[before][0], zone, ""}.FreshlyParsed(text)).starts_with("error")) << text;
    }
  }
}

// Kept spans of a zone end where ICU says.
TEST_F(DatesAgainstIcu, ChangesOfTheOffset) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> ids(
      icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_CANONICAL, nullptr, nullptr, error));
  for (const char* id = ids->next(nullptr, error); id != nullptr; id = ids->next(nullptr, error)) {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(Icu(id)));
    const auto* const rules = dynamic_cast<const icu::BasicTimeZone*>(zone.get());
    ASSERT_NE(rules, nullptr);
    const TCase c{"yyyy-MM-dd HH:mm:ss.SSS", id, ""};
    icu::TimeZoneTransition change;
    double at = kNoon - Below(100) * 365 * 86'400'000.0;
    for (int i = 0; i < Rounds(2) && rules->getNextTransition(at, false, change); ++i) {
      at = change.getTime();
      for (const double past : {0.0, -1.0, 4e7, -4e7, 2.4e8, -2.4e8}) {
        c.CompareTime(at + past);
        c.CompareText(c.FreshlyFormatted(at + past));
      }
      // Local times about the change: skipped, or there twice.
      const double local = at + change.getFrom()->getRawOffset() + change.getFrom()->getDSTSavings();
      for (const double past : {0.0, -1.0, 9e5, -9e5})
        c.CompareText(TCase{c.pattern, "UTC", ""}.FreshlyFormatted(local + past));
    }
  }
}

// Beyond some 10^17 milliseconds ICU finds changes of the offset at other times. They must not be taken for times to
// come.
TEST_F(DatesAgainstIcu, TimesThatNoZoneHoldsTeachItNothing) {
  for (const double far : {1e18, 1e19, 1e20, 1e26, 1e300, -1e20}) {
    const TCase c{"yyyy-MM-dd HH:mm:ss", "America/New_York", ""};
    for (int i = 0; i < 4; ++i) TCase{"EEEE", c.zone, ""}.CompareTime(far);  // as many as are kept
    c.CompareTime(1120219200000);                                            // 2005-07-01T12:00:00Z
    c.CompareText("2005-07-01 08:00:00");
  }
}

// A calendar numbers what is set in it; after some 700 texts the numbers start anew.
TEST_F(DatesAgainstIcu, ACalendarMayBeUsedOften) {
  const TCase plain{"HH:mm", "Europe/Brussels", "de"}, zone{"HH:mm zzzz", "Europe/Brussels", "de"},
      week{"YYYY-'W'ww-e", "Europe/Brussels", "de"};
  for (int i = 0; i < 3000; ++i) {
    now = std::floor(std::abs(Time()));
    zone.Parsed("8:30 Neuseeland-Sommerzeit");
    week.Parsed("1582-W4" + std::to_string(Below(10)) + "-3");
    if (i % 20 == 0) plain.CompareText("7:3" + std::to_string(Below(10)));
  }
}

}  // namespace
}  // namespace templatenames
