#include "formatting/DateTimePatterns.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <tuple>

#include "NQ_EException.h"
#include "NQ_TTime.h"

namespace templatenames {
namespace {

using std::string;
using namespace std::string_literals;

constexpr double kTime = 1601899387250;  // 2020-10-05T12:03:07.25Z

NQ_TString Text(const string& utf8) { return NQ_TString(std::string_view(utf8)); }

// Runs the action; gives "", or its error as text.
template <class Action>
string ErrorOf(const Action& action) {
  try {
    action();
    return "";
  } catch (const NQ_EException& error) {
    EXPECT_EQ(string(error.NQ_ExceptionFile().c_str()).find("VexoNames/Private/Source/templatenames/formatting/"), 0U);
    std::ostringstream data;
    data << error.NQ_Data();
    return string("! ") + error.NQ_Message().c_str() + " [" + data.str() + "]";
  }
}

string Written(const string& pattern, const string& zone, const string& language, double time) {
  NQ_TString out("as before");
  const string error = ErrorOf([&] { FormatDateTime(Text(pattern), Text(zone), Text(language), time, out); });
  EXPECT_TRUE(error.empty() || out == "as before");
  return error.empty() ? string(out.Narrow()) : error;
}

// What the text says, in ISO form.
string Read(const string& pattern, const string& zone, const string& text) {
  double time = -7;
  const string error = ErrorOf([&] { ParseDateTime(Text(pattern), Text(zone), "", Text(text), time); });
  EXPECT_TRUE(error.empty() || time == -7);
  return error.empty() ? Written("yyyy-MM-dd HH:mm:ss.SSS", "", "", time) : error;
}

TEST(DateTimePatterns, Write) {
  constexpr double kEver = std::numeric_limits<double>::infinity();
  const string endless(20'000, 'x'), tooLong(257, 'y');
  struct {
    string pattern, zone, language;
    double time;
    string written;
  } const cases[] = {
      {"dd", "Europe/Brussels\0x"s, "de\0x"s, kTime, "05"},
      {"d'\0'M"s, "", "", kTime, "5\0\x31\x30"s},
      {"yyyy G", "", "en", kEver, "5828963 AD"},
      {"d", endless, endless, kTime, "5"},
      {"d", "", "", std::numeric_limits<double>::quiet_NaN(), "! U_ILLEGAL_ARGUMENT_ERROR [nan]"},
      {tooLong, "", "", kTime, "! Date pattern is longer than 256 characters [" + tooLong + "]"},
      {"d", "", "en" + string(100'000, '-') + "x", kTime, "! U_ILLEGAL_ARGUMENT_ERROR [d]"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.pattern + " in " + row.zone.substr(0, 50) + " for " + row.language.substr(0, 50));
    EXPECT_EQ(Written(row.pattern, row.zone, row.language, row.time), row.written);
  }
  NQ_TString out;
  FormatDateTime(NQ_TString(u"d\xD83D\U0001F4C4\xDCC4"), "", "", kTime, out);
  EXPECT_EQ(out, NQ_TString(u"5\uFFFD\U0001F4C4\uFFFD"));
}

TEST(DateTimePatterns, Read) {
  NQ_TTime::SetClock([] { return kTime; });
  const string digits(200'000, '1'), tooLong(257, 'y');
  struct {
    string pattern, zone, text, read;
  } const cases[] = {
      {"dd/MM/yyyy HH:mm", "Europe/Brussels", "29/03/2020 02:30", "2020-03-29 01:30:00.000"},  // skipped
      {"dd/MM/yyyy HH:mm", "Europe/Brussels", "25/10/2020 02:30", "2020-10-25 01:30:00.000"},  // the later of two
      // Where the pattern says nothing it is today, which in Kiritimati is the 6th.
      {"HH:mm", "Pacific/Kiritimati", "00:30", "2020-10-05 10:30:00.000"},
      {"hh:mm", "", "01:30", "2020-10-05 13:30:00.000"},  // it is past noon
      {"yyyy-MM-dd", "", digits, "! Unparseable date: error at index 1024 [" + digits + "]"},
      {tooLong, "", "2020", "! Date pattern is longer than 256 characters [" + tooLong + "]"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.pattern + " in " + row.zone + ": " + row.text.substr(0, 50));
    EXPECT_EQ(Read(row.pattern, row.zone, row.text), row.read);
  }
  NQ_TTime::SetClock(nullptr);
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
