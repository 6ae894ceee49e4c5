#include "formatting/DateTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "NQ_TArray.h"
#include "NQ_TTime.h"
#include "OptionsText.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::S;
using std::string;
using testing::ElementsAre;
using testing::MatchesRegex;

std::vector<string> Lines(const string& text) {
  std::vector<string> lines;
  std::istringstream in(text);
  for (string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

struct TFormatted {
  bool succeeded;
  string value;
  std::vector<string> log;
};
TFormatted Format(int debugLevel, const NQ_TDict& options, std::string_view value) {
  NQ_TString text = S(value);
  testing::internal::CaptureStdout();
  const bool succeeded = FormatDateTimeValue(debugLevel, options, text);
  return {succeeded, string(text.Narrow()), Lines(testing::internal::GetCapturedStdout())};
}

TEST(DateTime, Values) {
  NQ_TTime::SetClock([] { return 1601899387250.0; });
  const string kFromIso = "InputDateTimeFormat=ISO8601|", kToIso = "|DateTimeFormat=ISO8601";
  const string kFromUnix = "InputDateTimeFormat=UNIX|", kToUnix = "|DateTimeFormat=UNIX";
  struct {
    string options, value, result;  // "!": the value stays as it is, and the function returns false
  } const cases[] = {
      {kFromIso + kToIso, "2020-10-05T14:03:07.25+02:00", "2020-10-05T12:03:07.25Z"},
      {kFromIso + kToIso, "2020-10-05T14:03:07Z", "2020-10-05T14:03:07.00Z"},
      {kFromIso + kToIso, "2020-10-05T14:03+01:00", "2020-10-05T13:03:00.00Z"},
      {kFromIso + kToIso, "2020-10-05", "2020-10-05T00:00:00.00Z"},
      {kFromIso + "InputTimeZone=Europe/Brussels" + kToIso, "2020-10-05", "2020-10-04T22:00:00.00Z"},
      {kFromIso + "TimeZone=Asia/Kolkata" + kToIso, "2020-10-05", "2020-10-05T05:30:00.00+05:30"},
      {kFromIso + kToIso, "2020-10-05T14:03:07", "2020-10-05T00:00:00.00Z"},  // no offset: a date and more
      {kFromIso + kToIso, "yesterday", "!"},
      {kFromUnix + kToUnix, "1000.9", "1000"},
      {kFromUnix + kToIso, "1000.9", "1970-01-01T00:00:01.00Z"},
      {kFromUnix + kToUnix, "abc", "0"},
      {kFromUnix + kToUnix, " \t+12x", "12"},
      {kFromUnix + kToUnix, "1.5e3x", "1500"},
      {kFromUnix + kToUnix, "-1e300", "-9223372036854775808"},
      {kFromUnix + kToUnix, "1e999", "9223372036854775807"},
      {kFromUnix + kToIso, "1e300", "5828963-12-20T00:00:00.00Z"},
      {"CustomInputDateTimeFormat=HH:mm|InputTimeZone=Europe/Brussels" + kToIso, "08:30", "2020-10-05T06:30:00.00Z"},
      {"InputDateTimeFormat=iso8601|CustomInputDateTimeFormat=d MMM yy|InputLanguage=fr" + kToUnix, "3 f\u00e9vr. 70",
       "2851200000"},
      {kFromUnix + "DateTimeFormat=Unix|CustomDateTimeFormat=EEEE d MMMM|Language=de_DE", "0", "Donnerstag 1 Januar"},
      {kFromUnix, "0", ""},  // no pattern
      {"", "2020", "!"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.options + ": " + row.value);
    const TFormatted formatted = Format(0, Options(row.options), row.value);
    EXPECT_EQ(formatted.succeeded, row.result != "!");
    EXPECT_EQ(formatted.value, row.result == "!" ? row.value : row.result);
    EXPECT_EQ(formatted.log.empty(), formatted.succeeded);
  }
  NQ_TTime::SetClock(nullptr);
}

TEST(DateTime, OptionsOfAnotherKindCountAsAbsent) {
  NQ_TDict options = Options("InputDateTimeFormat=UNIX|DateTimeFormat=UNIX");
  options.Add("InputTimeZone", NQ_TAny(5));
  options.Add("DateTimeFormat", NQ_TArray());
  options.Add("CustomDateTimeFormat", S("yyyy"));
  options.Add("Language", NQ_TAny(true));
  EXPECT_EQ(Format(0, options, "0").value, "1970");
}

TEST(DateTime, LogOfSuccess) {
  const string options = "{InputDateTimeFormat = ISO8601, DateTimeFormat = UNIX}";
  const string failed = " failed.  Trying less complete format";
  const NQ_TDict iso = Options("InputDateTimeFormat=ISO8601|DateTimeFormat=UNIX");
  EXPECT_THAT(Format(5, iso, "2020-10-05T14:03Z").log, ElementsAre());
  for (const string text : {"2020-10-05T14:03Z", "2020-10-05T14:03Z!"}) {  // the second is tried with each pattern
    EXPECT_THAT(Format(6, iso, text).log,
                ElementsAre("Parsing " + text + " using yyyy-MM-dd'T'HH:mm:ss.SSXXX" + failed,
                            "Parsing " + text + " using yyyy-MM-dd'T'HH:mm:ssXXX" + failed,
                            "Parsed date '" + text + "' into UTC time '1601906580000'", options,
                            "Formatted wall time '1601906580000' into '1601906580000'", options));
  }
  EXPECT_THAT(Format(6, Options("InputDateTimeFormat=UNIX|CustomDateTimeFormat=SSS"), "0.1").log,
              ElementsAre("Parsed date '0.1' into UTC time '0.10000000000000001'",
                          "{InputDateTimeFormat = UNIX, CustomDateTimeFormat = SSS}",
                          "Formatted wall time '0.10000000000000001' into '000'",
                          "{InputDateTimeFormat = UNIX, CustomDateTimeFormat = SSS}"));
}

TEST(DateTime, LogOfFailure) {
  const string where = " \\(VexoNames/Private/Source/templatenames/formatting/DateTimePatterns.cpp:[0-9]+\\)";
  EXPECT_THAT(Format(0, Options("InputDateTimeFormat=ISO8601"), "yesterday").log,
              ElementsAre("Parsing date 'yesterday' into UTC time failed.  Caused by:",
                          MatchesRegex("NQ_EException: Unparseable date: error at index 0 \\[yesterday\\]" + where),
                          "{InputDateTimeFormat = ISO8601}"));
  const string yyy(4097, 'y');
  const TFormatted tooLong = Format(0, Options("InputDateTimeFormat=UNIX|CustomDateTimeFormat=" + yyy), "1e3");
  EXPECT_FALSE(tooLong.succeeded);
  EXPECT_EQ(tooLong.value, "1e3");
  EXPECT_THAT(tooLong.log,
              ElementsAre("Formatting wall time '1000' failed.  Caused by:",
                          MatchesRegex("NQ_EException: Date pattern is longer than 4096 characters \\[y+\\]" + where),
                          "{InputDateTimeFormat = UNIX, CustomDateTimeFormat = " + yyy + "}"));
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
  EXPECT_EQ(Format(0, options, "1.500").value, "1500");
  std::locale::global(before);
  EXPECT_EQ(Format(0, options, "1.500").value, "1");
}

}  // namespace
}  // namespace templatenames
