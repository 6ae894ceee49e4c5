// The cases of Cases.txt: "operations => outcome", one a line. The outcome is what the last operation gives, or what is
// thrown; then the error code that is left, and the lines that are written. "names: ..." are the names of the rows
// below.
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
  int rows = 0;
  for (const std::string& line : Lines("Cases.txt")) {
    if (line.starts_with("names:")) {
      common = line.substr(std::min<std::size_t>(line.size(), 7));
      continue;
    }
    const std::size_t arrow = line.find(" => ");
    ASSERT_NE(arrow, line.npos) << line;
    Names names(common);
    EXPECT_EQ(Outcome(names, line.substr(0, arrow)), line.substr(arrow + 4)) << line;
    EXPECT_TRUE(OtherThreadGetsLock(names)) << line;
    ++rows;
  }
  EXPECT_GT(rows, 200);
  NQ_TTime::SetClock(clock);
}

}  // namespace
}  // namespace names_test
