// What dates log, refuse and are kept from; what becomes of values stands in Values.txt.
#include "formatting/date/DateTime.h"

#include <gmock/gmock.h>
#include <unicode/locid.h>

#include <limits>
#include <locale>
#include <sstream>

#include "NQ_TTime.h"
#include "OptionsText.h"
#include "Support.h"
#include "engine/DateLog.h"
#include "formatting/date/DateTimePatterns.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using names_test::Output;
using names_test::Repeated;
using names_test::S;
using names_test::Text;
using std::string;

constexpr double kTime = 1601899387250;  // 2020-10-05T12:03:07.25Z

string Formatted(const NQ_TDict& options, NQ_TString value) {
  FormatDateTimeValue(options, value, nullptr);
  return Text(value);
}

string LogOf(int debugLevel, const char* options, const NQ_TString& value) {
  Output output;
  NQ_TString text = value;
  const TDateOutcome outcome = FormatDateTimeValue(Options(options), text, nullptr);
  LogDate(debugLevel, Options(options), value, text, outcome);
  EXPECT_TRUE(outcome.written || text == value);
  return output.Take();
}

TEST(DateTime, OptionsOfAnotherKindCountAsAbsent) {
  NQ_TDict options = Options("InputDateTimeFormat=UNIX|CustomDateTimeFormat=yyyy");
  options["InputTimeZone"] = 5;
  options["DateTimeFormat"] = NQ_TArray();
  options["Language"] = true;
  EXPECT_EQ(Formatted(options, "0"), "1970");
}

TEST(DateTime, Log) {
  const char* const iso = "InputDateTimeFormat=ISO8601|DateTimeFormat=UNIX";
  EXPECT_EQ(LogOf(5, iso, "2020-10-05T14:03Z"), "");
  for (const string text : {"2020-10-05T14:03Z", "2020-10-05T14:03Z!"}) {  // the second is tried with each pattern
    EXPECT_EQ(LogOf(6, iso, S(text)),
              "Parsing " + text + " using yyyy-MM-dd'T'HH:mm:ss.SSXXX failed.  Trying less complete format\n" +
                  "Parsing " + text + " using yyyy-MM-dd'T'HH:mm:ssXXX failed.  Trying less complete format\n" +
                  "Parsed date '" + text + "' into UTC time '1601906580000'\n" +
                  "{InputDateTimeFormat = ISO8601, DateTimeFormat = UNIX}\n" +
                  "Formatted wall time '1601906580000' into '1601906580000'\n" +
                  "{InputDateTimeFormat = ISO8601, DateTimeFormat = UNIX}\n");
  }
  EXPECT_EQ(LogOf(6, "InputDateTimeFormat=UNIX|DateTimeFormat=UNIX", "0.1"),
            "Parsed date '0.1' into UTC time '0.10000000000000001'\n"
            "{InputDateTimeFormat = UNIX, DateTimeFormat = UNIX}\n"
            "Formatted wall time '0.10000000000000001' into '0'\n"
            "{InputDateTimeFormat = UNIX, DateTimeFormat = UNIX}\n");
  const string where = " \\(VexoNames/Private/Source/templatenames/formatting/date/DateTimePatterns.cpp:[0-9]+\\)\n";
  EXPECT_THAT(LogOf(0, "InputDateTimeFormat=ISO8601", "yesterday"),
              testing::MatchesRegex("Parsing date 'yesterday' into UTC time failed.  Caused by:\n"
                                    "NQ_EException: Unparseable date: error at index 0 \\[yesterday\\]" +
                                    where + "\\{InputDateTimeFormat = ISO8601\\}\n"));
  const string unix = "InputDateTimeFormat=UNIX|CustomDateTimeFormat=" + Repeated("y", 4097);
  EXPECT_THAT(LogOf(0, unix.c_str(), "1e3"),
              testing::MatchesRegex("Formatting wall time '1000' failed.  Caused by:\n"
                                    "NQ_EException: Date pattern is longer than 4096 characters \\[y+\\]" +
                                    where + "\\{InputDateTimeFormat = UNIX, CustomDateTimeFormat = y+\\}\n"));
}

// Numbers are read as streams of the global locale read them.
TEST(DateTime, UnixInputInAnotherGlobalLocale) {
  struct TComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    string do_grouping() const override { return "\3"; }
  };
  const NQ_TDict options = Options("InputDateTimeFormat=UNIX|DateTimeFormat=UNIX");
  const std::locale before = std::locale::global(std::locale(std::locale(), new TComma));
  EXPECT_EQ(Formatted(options, "1.500"), "1500");
  std::locale::global(before);
  EXPECT_EQ(Formatted(options, "1.500"), "1");
}

// Also in a formatter that was made when the clock stood elsewhere.
TEST(DateTime, YearsOfTwoDigitsFollowTheClock) {
  static double now = 0;
  NQ_TTime::SetClock([] { return now; });
  const NQ_TDict options = Options("CustomInputDateTimeFormat=dd.MM.yy|CustomDateTimeFormat=yyyy-MM-dd");
  const struct {
    double now;
    const char *value, *date;
  } rows[] = {
      {kTime, "05.10.40", "1940-10-05"},
      {kTime, "04.10.40", "2040-10-04"},
      {kTime + 86'400'000, "05.10.40", "2040-10-05"},
      {kTime + 86'400'000, "06.10.40", "1940-10-06"},
      {2556144000000, "31.12.70", "2070-12-31"},  // 2051-01-01
      {2556144000000, "01.01.71", "1971-01-01"},
      {0, "01.01.90", "1890-01-01"},
      {kTime, "31.12.39", "2039-12-31"},
  };
  for (const auto& row : rows) {
    now = row.now;
    EXPECT_EQ(Formatted(options, row.value), row.date) << row.value << " at " << row.now;
  }
  NQ_TTime::SetClock(nullptr);
}

// ---- patterns

// What the action makes of the result, or its error; then the result is as before.
template <class Result, class Action>
string Outcome(Result result, const Action& action) {
  const Result before = result;
  std::ostringstream out;
  try {
    action(result);
    out << result;
  } catch (const NQ_EException& error) {
    EXPECT_EQ(result, before);
    out << "! " << error.NQ_Message() << " [" << error.NQ_Data() << "]";
  }
  return out.str();
}

// What ICU does with dates stands in DateTimeAgainstIcu_test.cpp; here is what it is kept from, and what it refuses.
TEST(DateTimePatterns, LimitsAndErrors) {
  const string endless(20'000, 'x'), digits(200'000, '1'), tooLong(4097, 'y'), tooLongToRead(257, 'y');
  const struct {
    string pattern, zone, language;
    double time;
    string written;
  } writing[] = {
      {"yyyy G", "", "en", std::numeric_limits<double>::infinity(), "5828963 AD"},
      {"HH:mm:ss.SSS", "", "", kTime, "12:03:07.250"},  // endless times teach the zone nothing
      {"d", endless, endless, kTime, "5"},
      {"d", "", "", std::numeric_limits<double>::quiet_NaN(), "! U_ILLEGAL_ARGUMENT_ERROR [nan]"},
      {"d'" + string(4000, '-') + "'", "", "", kTime, "5" + string(4000, '-')},
      {tooLong, "", "", kTime, "! Date pattern is longer than 4096 characters [" + tooLong + "]"},
      {"d", "", "en" + string(100'000, '-') + "x", kTime, "! U_ILLEGAL_ARGUMENT_ERROR [d]"},
  };
  for (const auto& row : writing) {
    const auto write = [&](NQ_TString& out) {
      FormatDateTime(S(row.pattern), S(row.zone), S(row.language), row.time, out);
    };
    EXPECT_EQ(Outcome(NQ_TString("as before"), write), row.written) << row.pattern.substr(0, 50) << " of " << row.time;
  }
  const std::tuple<string, string, string> reading[] = {
      {"yyyy-MM-dd", digits, "! Unparseable date: error at index 1024 [" + digits + "]"},
      {tooLongToRead, "2020", "! Date pattern is longer than 256 characters [" + tooLongToRead + "]"},
  };
  for (const auto& row : reading) {
    const auto read = [&](double& time) { ParseDateTime(S(std::get<0>(row)), "", "", S(std::get<1>(row)), time); };
    EXPECT_EQ(Outcome(-7.0, read), std::get<2>(row));
  }
  NQ_TString out;
  FormatDateTime(NQ_TString(u"d\xD83D\U0001F4C4\xDCC4"), "", "", kTime, out);
  EXPECT_EQ(out, NQ_TString(u"5\uFFFD\U0001F4C4\uFFFD"));
}

// Of what is no identifier ICU makes a locale without a name, with which B crashes and the root locale gets the names
// of another.
TEST(DateTimePatterns, WhatIsNoLanguageGetsThatOfTheProcess) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Locale before = icu::Locale::getDefault();
  icu::Locale::setDefault("de", error);
  for (const auto& [language, written] : {std::pair("twelveletter", "Oktober mittags"), {"", "M10 PM"}}) {
    NQ_TString out;
    FormatDateTime("MMMM B", "", language, kTime, out);
    EXPECT_EQ(out, written);
  }
  icu::Locale::setDefault(before, error);
}

// Without this, every date would still be right, and slow.
TEST(DateTimePatterns, ReadExactly) {
  for (const auto& [pattern, text, exact] : {std::tuple("yyyy-MM-dd", "2020-10-05", true),
                                             {"yyyyMMddHHmm", "202010051403", true},
                                             {"d/M/yyyy HH:mm:ss,SSSXXX", "5/10/2020 14:03:07,5+02:00", true},
                                             {"yyyy-MM-dd", "2020-10-05 ", false}}) {
    double time = -7;
    EXPECT_EQ(ParseExactDateTime(pattern, "", "", text, time), exact) << text;
    EXPECT_EQ(time != -7, exact) << text;
  }
}

}  // namespace
}  // namespace templatenames
