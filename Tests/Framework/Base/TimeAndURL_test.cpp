// Times, URLs, and the files that URLs name.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>

#include "NQ_TFileInfo.h"
#include "NQ_TTime.h"
#include "NQ_TURL.h"
#include "Support.h"

namespace base_test {
namespace {

TEST(NQ_TTime, FormatsLocalTime) {
  const char* const set = std::getenv("TZ");
  const std::string before = set == nullptr ? "" : set;
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);  // Central European time, by rule and not by the zone files
  tzset();
  constexpr double kSummer = 1782903909'999.0;  // 2026-07-01T11:05:09.999Z
  const std::string longest(65'536, 'x');
  const struct {
    double milliseconds;
    std::string pattern, text;
  } cases[] = {
      {kSummer, "%Y-%m-%d %H:%M:%S %z %Z", "2026-07-01 13:05:09 +0200 CEST"},
      {-1, "%F %T", "1970-01-01 00:59:59"},  // before a second is the second before
      {6.7e18, "%m", "12"},
      {6.7e19, "%m", ""},
      {-6.7e19, "%m", ""},
      {NAN, "%m", ""},
      {0, "", ""},
      {0, "\xC3\xA9 %Y%%", "\xC3\xA9 1970%"},
      {0, std::string("%Y\0%m", 5), "1970"},
      {0, longest, longest},
      {0, longest + "x", ""},
      {0, "%999999999Y", ""},
  };
  for (const auto& row : cases)
    EXPECT_EQ(NQ_TTime::FromMilliseconds(row.milliseconds).Format(S(row.pattern)).c_str(), row.text)
        << row.milliseconds << " " << row.pattern.substr(0, 20);
  EXPECT_EQ(Printed(NQ_TTime::FromMilliseconds(kSummer)), "2026-07-01 13:05:09");
  EXPECT_EQ(Printed(NQ_TTime::FromMilliseconds(0) - NQ_TTime::FromMilliseconds(1500)), "-1.5 s");
  before.empty() ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
  tzset();
}

TEST(NQ_TTime, ComesFromAndGoesToChrono) {
  using namespace std::chrono_literals;
  using TPoint = std::chrono::system_clock::time_point;
  const struct {
    TPoint when;
    double milliseconds;
    TPoint back;
  } cases[] = {
      {TPoint(), 0, TPoint()},
      {TPoint(1'782'903'909'999ms + 999us), 1'782'903'909'999.0, TPoint(1'782'903'909'999ms)},
      {TPoint(-1ns), -1, TPoint(-1ms)},
  };
  for (const auto& row : cases) {
    const NQ_TTime time(row.when);
    EXPECT_EQ(time.Milliseconds(), row.milliseconds);
    EXPECT_EQ(time.TimePoint(), row.back) << row.milliseconds;
  }
  EXPECT_EQ(NQ_TTime::FromMilliseconds(1.5).TimePoint(), TPoint(1500us));
  for (const double outside : {9.3e15, -9.3e15, double{NAN}, double{HUGE_VAL}})
    EXPECT_EQ(Thrown([&] { NQ_TTime::FromMilliseconds(outside).TimePoint(); }),
              "NQ_EException: The time is not one that the system's clock counts");
  EXPECT_EQ(Printed(NQ_TInterval(1min + 500us)), "60.0005 s");
  EXPECT_EQ(NQ_TInterval(250.5).Duration(), 250'500us);
}

TEST(NQ_TTime, IsNowByTheClockThatIsSet) {
  const auto before = NQ_TTime::SetClock([] { return 7.0; });
  EXPECT_EQ(NQ_TTime().Milliseconds(), 7);
  EXPECT_EQ(NQ_TTime::SetClock(nullptr)(), 7);
  const auto now = std::chrono::system_clock::now();
  EXPECT_LT(std::chrono::abs(NQ_TTime().TimePoint() - now), std::chrono::minutes(1));
  NQ_TTime::SetClock(before);
}

TEST(NQ_TURL, PartsAndText) {
  const std::pair<const char*, const char*> cases[] = {
      // scheme|host|path file location folder local name
      {"file:///", "file||  file:///  /"},
      {"file://h/a/b/c.pdf", "file|h|a/b/c.pdf c.pdf file://h/a/b b //h/a/b/c.pdf"},
      {"file:///a%20b", "file||a%20b a%20b file:///  /a%20b"},
      {"file://localhost/a", "file|localhost|a a file://localhost/  /a"},
      {"http://h", "http|h|  http://h/  //h/"},
      {"http://h//x", "http|h|/x x http://h/  //h//x"},
      {"://h/x", "|h|x x ://h/  //h/x"},
      {"a/b/", "||a/b/  a/b b /a/b/"},
      {"", "||    /"},
  };
  for (const auto& [text, expected] : cases) {
    const NQ_TURL url(S(text));
    EXPECT_EQ(url.Scheme() + "|" + url.Host() + "|" + url.Path() + " " + url.FileName() + " " + url.Location().Text() +
                  " " + url.FolderName() + " " + NQ_TFileInfo(url, true).LocalName(),
              expected);
    EXPECT_EQ(NQ_TURL(url.Text()), url);
  }
  EXPECT_EQ(
      NQ_TURL::HexEncode(NQ_TString(u"AZaz09-._~/ %:?#[]@!$&'()*+,;=\"<>\\^`{|}\u007F\0\u00E9\U0001F4C4\xD800", 45)),
      "AZaz09-._~/%20%25%3A%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D%22%3C%3E%5C%5E%60%7B%7C%7D%7F%00%C3%A9"
      "%F0%9F%93%84%EF%BF%BD");
}

}  // namespace
}  // namespace base_test
