#include "formatting/DateTimePatterns.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <tuple>

#include "NQ_EException.h"
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
  const string endless(20'000, 'x'), tooLong(257, 'y'), digits(200'000, '1');
  const struct {
    string pattern, zone, language;
    double time;
    string written;
  } writing[] = {
      {"yyyy G", "", "en", kEver, "5828963 AD"},
      {"HH:mm:ss.SSS", "", "", kTime, "12:03:07.250"},  // endless times teach the zone nothing
      {"d", endless, endless, kTime, "5"},
      {"d", "", "", std::numeric_limits<double>::quiet_NaN(), "! U_ILLEGAL_ARGUMENT_ERROR [nan]"},
      {tooLong, "", "", kTime, "! Date pattern is longer than 256 characters [" + tooLong + "]"},
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
  } reading[] = {
      {"yyyy-MM-dd", digits, "! Unparseable date: error at index 1024 [" + digits + "]"},
      {tooLong, "2020", "! Date pattern is longer than 256 characters [" + tooLong + "]"},
  };
  for (const auto& row : reading) {
    EXPECT_EQ(Outcome(-7.0, [&](double& time) { ParseDateTime(S(row.pattern), "", "", S(row.text), time); }), row.read);
  }
  NQ_TString out;
  FormatDateTime(NQ_TString(u"d\xD83D\U0001F4C4\xDCC4"), "", "", kTime, out);
  EXPECT_EQ(out, NQ_TString(u"5\uFFFD\U0001F4C4\uFFFD"));
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
