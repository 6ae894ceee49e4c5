#include "formatting/DateTimePatterns.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <limits>
#include <sstream>
#include <string>
#include <tuple>

#include "NQ_EException.h"
#include "NQ_TTime.h"
#include "OptionsText.h"

namespace templatenames {
namespace {

using formatting_test::S;
using std::string;

constexpr double kTime = 1601899387250;  // 2020-10-05T12:03:07.25Z

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
  constexpr double kEver = std::numeric_limits<double>::infinity();
  const string endless(20'000, 'x'), digits(200'000, '1'), zeros(40, '0');
  const string tooLong(4097, 'y'), tooLongToRead(257, 'y');
  const struct {
    string pattern, zone, language;
    double time;
    string written;
  } writing[] = {
      {"yyyy G", "", "en", kEver, "5828963 AD"},
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
  const struct {
    string pattern, text, read;
    const char* language = "";
  } reading[] = {
      {"yyyy-MM-dd", digits, "! Unparseable date: error at index 1024 [" + digits + "]"},
      {tooLongToRead, "2020", "! Date pattern is longer than 256 characters [" + tooLongToRead + "]"},
      {"d.M.y s.SX", "1.1.1970 7.25" + zeros + "+00:00", "7250"},  // ICU divides by zero
      {"d.M.y S", "1.1.1970 " + zeros, "0"},
      {"S", "000,000,000,000,000,000,000,000,000,000,000,000,000", "1.60186e+12", "en@numbers=roman"},
      {"yyyyMMddHHmmssSSS", "19700101000007250" + digits, "7250"},
  };
  NQ_TTime::SetClock([] { return kTime; });
  for (const auto& row : reading) {
    const auto read = [&](double& time) { ParseDateTime(S(row.pattern), "", row.language, S(row.text), time); };
    EXPECT_EQ(Outcome(-7.0, read), row.read) << row.pattern << " of " << row.text.substr(0, 50);
  }
  NQ_TTime::SetClock(nullptr);
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
  for (const auto& [language, written] : {std::pair("ninelette", "Oktober PM"), {"", "M10 PM"}}) {
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
