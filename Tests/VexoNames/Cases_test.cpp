// Cases.txt: operations and their outcomes. Log.expected: operations, and what is written at each debug level.
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

const RowFile cases("Cases.txt", {"names:"}, [](const Row& row) {
  const auto clock = NQ_TTime::SetClock([] { return 1.7e12; });
  const auto parts = Pieces(row.text, " => ", 2);
  for (const bool hooked : {false, true}) {  // a hook, which does nothing here, makes every value go the long way
    Names names(row.Setting("names:"));
    if (hooked) names.SetWarnLookupHandler([](const NQ_TString&, TName*) {});
    EXPECT_EQ(Outcome(names, parts.at(0)), parts.at(1)) << (hooked ? "hooked" : "");
    EXPECT_TRUE(OtherThreadGetsLock(names));
  }
  NQ_TTime::SetClock(clock);
});

const RowFile logs("Log.expected", {}, [](const Row& row) {
  std::string expected[4];
  for (const std::string& line : Pieces(row.below, "\n"))
    for (int level = line.empty() ? 4 : line[0] - '0'; level <= 3; ++level) expected[level] += line.substr(1) + "\n";
  for (int level = 0; level <= 3; ++level) {
    Names names("text A = x; number N = 7; auto K = 1; url L = file://h/p; time T; sql Q; define X = 0 99");
    names.SetDebugLevel(level);
    Output output;
    Thrown([&] { Do(names, row.text); });
    EXPECT_EQ(output.Take(), expected[level]) << "at level " << level;
    EXPECT_EQ(names.GetDebugLevel(), level);
  }
});

}  // namespace
}  // namespace names_test
