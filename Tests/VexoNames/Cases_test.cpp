// The cases of Cases.txt: "operations => outcome", one a line. The outcome is what the last operation gives, or what is
// thrown; then the error code that is left, and the lines that are written. "names: ..." are the names of the rows
// below.
//
// And what is written to standard output at each debug level: Log.expected lists operations, each after "> ", and below
// it the lines that they write, each after the lowest level that shows it.
#include <sstream>

#include "Support.h"

namespace names_test {
namespace {

std::string Outcome(TName& names, const std::string& script) {
  Output output;
  std::string outcome;
  const std::string thrown = Thrown([&] { outcome = Do(names, script); });
  if (names.GetError() != 0) outcome += " (" + std::to_string(names.GetError()) + ")";
  std::istringstream written(output.Take());
  std::string before;
  for (std::string line; std::getline(written, line); before = line)
    if (line != before) outcome += " / " + line;  // once, however often
  outcome += thrown;
  return outcome.empty() ? "(empty)" : outcome;
}

TEST(Cases, HaveTheirOutcomes) {
  const auto clock = NQ_TTime::SetClock([] { return 1.7e12; });
  std::string common;
  for (const std::string& line : Lines("Cases.txt")) {
    if (line.starts_with("names:")) {
      common = line.substr(std::min<std::size_t>(line.size(), 7));
      continue;
    }
    const std::size_t arrow = line.find(" => ");
    ASSERT_NE(arrow, line.npos) << line;
    for (const bool hooked : {false, true}) {  // a hook, which does nothing here, makes every value go the long way
      Names names(common);
      if (hooked) names.SetWarnLookupHandler([](const NQ_TString&, TName*) {});
      EXPECT_EQ(Outcome(names, line.substr(0, arrow)), line.substr(arrow + 4)) << line << (hooked ? " (hooked)" : "");
      EXPECT_TRUE(OtherThreadGetsLock(names)) << line;
    }
  }
  NQ_TTime::SetClock(clock);
}

TEST(Cases, AreLoggedByLevel) {
  const std::vector<std::string> lines = Lines("Log.expected");
  for (auto line = lines.begin(); line != lines.end();) {
    ASSERT_TRUE(line->starts_with("> ")) << *line;
    const std::string script = line->substr(2);
    std::string expected[4];
    for (++line; line != lines.end() && !line->starts_with("> "); ++line)
      for (int level = line->at(0) - '0'; level <= 3; ++level) expected[level] += line->substr(1) + "\n";
    for (int level = 0; level <= 3; ++level) {
      Names names("text A = x; number N = 7; auto K = 1; url L = file://h/p; time T; sql Q; define X = 0 99");
      names.SetDebugLevel(level);
      Output output;
      Thrown([&] { Do(names, script); });
      EXPECT_EQ(output.Take(), expected[level]) << script << " at level " << level;
      EXPECT_EQ(names.GetDebugLevel(), level) << script;
    }
  }
}

}  // namespace
}  // namespace names_test
