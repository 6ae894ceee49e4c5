// Several threads on one TName, and several on one each.
#include <set>
#include <sstream>

#include "Support.h"

namespace names_test {
namespace {

constexpr int kThreads = 8;

bool Answer(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) { return value = "u", true; }

TEST(Threads, ChangeAndResolveTheSameNames) {
  constexpr const char* kScripts[] = {"number A = 5", "text A = a",     "string A = bb",  "undefine A",
                                      "keys",         "category A = c", "increment N",    "format Fix = (%s)",
                                      "no warn",      "no regex",       "format Fix = %s"};
  Names names("number N = 0; text B = <A/><A/>; text Fix = f");
  const std::set<std::string> values = {"a", "", "bb", "5", "0", "u", "<A/>"};  // those of a fresh definition too
  OnThreads(kThreads, [&](int thread) {
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
  OnThreads(kThreads, [&](int thread) {
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
  const std::string script =
      "text A = v_b; time T; text u = smb://h:1/\u00E9 x; text c = a; text n = 1234567.891; text l = 2.0;"
      " text d = 2021-07-05T10:00Z; text e = 3 f\u00E9vr. 70;"
      " options u = DataFormat=TEXT|Encoding=URL|Transformation=UPPERCASE;"
      " options c = DataFormat=TEXT|Encoding=CUSTOM|CustomEncoding=a>b,b>a long text,long>short;"
      " options n = DataFormat=NUMBER|Decimals=2|ThousandsSeparator=';"
      " options l = DataFormat=NUMBER|Convert=true|ConvertUnitCategory=LENGTH|ConvertFromUnit=in|ConvertToUnit=mm;"
      " options d = DataFormat=DATETIME|InputDateTimeFormat=ISO8601|CustomDateTimeFormat=EEEE HH:mm zzzz|Language=fr|"
      "TimeZone=Europe/Paris;"
      " options e = DataFormat=DATETIME|CustomInputDateTimeFormat=d MMM yy|InputLanguage=fr|DateTimeFormat=UNIX";
  const std::string text = "<A elem=\"_,1\"/>|<T format=\"%%\"/>|<u/>|<c/>|<n/>|<l/>|<d/>|<e/>|";
  const std::string expected =
      "b|%|SMB://H:1/%C3%89%20X|a short text|1'234'567.89|50.8|lundi 12:00 heure d\u2019\u00E9t\u00E9 d\u2019Europe "
      "centrale|2851200000|";
  Names shared(script);
  OnThreads(kThreads, [&](int) {
    Names own(script);
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
  OnThreads(kThreads, [&](int) {
    for (int i = 0; i < Scaled(1000); ++i) Do(names, "to url //h/<A/>");
  });
  EXPECT_EQ(names.SetDebugLevel(2), 1);
  OnThreads(kThreads, [&](int) {
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
