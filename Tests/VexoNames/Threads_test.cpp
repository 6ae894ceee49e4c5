// Several threads on one TName, and several on one each.
#include <set>
#include <sstream>
#include <thread>

#include "Support.h"
#include "formatting/OptionsText.h"

namespace names_test {
namespace {

constexpr int kThreads = 8;

template <class Work>
void OnThreads(Work work) {
  std::vector<std::jthread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
}

bool Answer(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) { return value = "u", true; }

TEST(Threads, ChangeAndResolveTheSameNames) {
  constexpr const char* kScripts[] = {"number A = 5", "text A = a",     "string A = bb",  "undefine A",
                                      "keys",         "category A = c", "increment N",    "format Fix = (%s)",
                                      "no warn",      "no regex",       "format Fix = %s"};
  Names names("number N = 0; text B = <A/><A/>; text Fix = f");
  const std::set<std::string> values = {"a", "", "bb", "5", "0", "u", "<A/>"};  // those of a fresh definition too
  OnThreads([&](int thread) {
    for (int i = 0; i < Scaled(1100); ++i) {
      const std::string thrown = Thrown([&] { Do(names, kScripts[(thread + i) % std::ssize(kScripts)]); });
      EXPECT_TRUE(thrown == "" || thrown == "NQ_ENoSuchKey: A" || thrown == "NQ_EIncompatibleType: A") << thrown;
      if (i % 50 == 0) {
        if (thread == 0) names.SetUserLookupHandler(i % 100 == 0 ? Answer : nullptr);
        names.SetLimits(TNameLimits());
        names.SetError(TName::TName_ErrorNone);
      }
      // The lock is held over the whole template: every token of a name shows the same.
      const std::string got = Resolved(names, "<A/>|<A/>|<B/>|<Fix/>"), text = got.substr(got[0] == '!' ? 2 : 0);
      const std::string a = text.substr(0, text.find('|')), start = a + "|" + a + "|";
      EXPECT_TRUE(values.contains(a) && (text.starts_with(start + a + a + "|") || text.starts_with(start + "u|")))
          << got;
      NQ_TURL url;
      EXPECT_TRUE(names.Resolve(S("http://h" + std::to_string(i % 300) + "/<Fix/>"), url)) << url.Text();
    }
  });
  EXPECT_EQ(names.GetValue("N"), NQ_TAny(kThreads * Scaled(1100) / 11));
}

TEST(Threads, CountersLoseNothing) {
  Names names("auto K = 0; number N = 0");
  std::vector<std::vector<int>> seen(kThreads);
  OnThreads([&](int thread) {
    for (int i = 0; i < Scaled(50'000); ++i) names.Increment("N");
    for (int i = 0; i < Scaled(2000); ++i)
      seen[std::size_t(thread)].push_back(std::stoi(i % 2 == 0 ? Resolved(names, "<K/>") : ResolvedToken(names, "K")));
  });
  std::set<int> all;
  for (const auto& numbers : seen) all.insert(numbers.begin(), numbers.end());
  EXPECT_EQ(int(all.size()), kThreads * Scaled(2000));
  EXPECT_EQ(*all.rbegin(), kThreads * Scaled(2000));
  EXPECT_EQ(names.GetValue("N"), NQ_TAny(kThreads * Scaled(50'000)));
}

// The same templates, patterns and formats on every thread, through names of one registry and of one each.
TEST(Threads, FormatEverything) {
  const std::string rows[][3] = {
      {"DataFormat=TEXT|Encoding=URL|Transformation=UPPERCASE", "smb://h:1/\u00E9 x", "SMB://H:1/%C3%89%20X"},
      {"DataFormat=TEXT|Encoding=CUSTOM|CustomEncoding=a>b,b>a long text,long>short", "a", "a short text"},
      {"DataFormat=NUMBER|Decimals=2|ThousandsSeparator='", "1234567.891", "1'234'567.89"},
      {"DataFormat=NUMBER|Convert=true|ConvertUnitCategory=LENGTH|ConvertFromUnit=in|ConvertToUnit=mm", "2.0", "50.8"},
      {"DataFormat=DATETIME|InputDateTimeFormat=ISO8601|CustomDateTimeFormat=EEEE HH:mm zzzz|Language=fr|"
       "TimeZone=Europe/Paris",
       "2021-07-05T10:00Z", "lundi 12:00 heure d\u2019\u00E9t\u00E9 d\u2019Europe centrale"},
      {"DataFormat=DATETIME|CustomInputDateTimeFormat=d MMM yy|InputLanguage=fr|DateTimeFormat=UNIX", "3 f\u00E9vr. 70",
       "2851200000"},
  };
  std::string text = "<A elem=\"_,1\"/><T format=\"%%\"/>", expected = "b%";
  for (const auto& [options, value, formatted] : rows) text += "<" + value + "/>", expected += formatted;
  const auto define = [&](TName& names) {
    Do(names, "text A = v_b; time T");
    for (const auto& row : rows) {
      names.Define(S(row[1]), TName::TName_TypeString, TName::TName_LookupValue);
      names.SetValue(S(row[1]), S(row[1]));
      names.SetFormattingOptions(S(row[1]), formatting_test::Options(row[0]));
    }
  };
  TName shared;
  define(shared);
  OnThreads([&](int) {
    TName own;
    define(own);
    for (int i = 0; i < Scaled(2000); ++i) {
      const std::string pattern = "<A regex=\"(v|[0-9]+x" + std::to_string(i % 40) + ")\"/>";
      EXPECT_EQ(Resolved(i % 4 == 0 ? shared : own, text + pattern), expected + "v");
    }
  });
}

TEST(Threads, LogLinesDoNotMixAndTheLevelStays) {
  Names names("text A = a");
  names.SetDebugLevel(1);
  Output output;
  OnThreads([&](int) {
    for (int i = 0; i < Scaled(1000); ++i) Do(names, "to url //h/<A/>");
  });
  EXPECT_EQ(names.SetDebugLevel(2), 1);
  OnThreads([&](int) {
    for (int i = 0; i < 20; ++i) names.IsDefined("A"), names.SetDescription("A", "d");
  });
  std::set<std::string> lines;
  std::istringstream stream(output.Take());
  for (std::string line; std::getline(stream, line);) lines.insert(line);
  EXPECT_EQ(lines,
            (std::set<std::string>{"TName::IsDefined: Key = \"A\"", "TName::Resolve (string,url): In = \"//h/<A/>\"",
                                   "TName::Resolve (string,url): return code = 1",
                                   "TName::SetDescription: Key = \"A\"; Description = \"d\""}));
}

}  // namespace
}  // namespace names_test
