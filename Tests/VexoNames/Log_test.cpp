// What is written to standard output, line by line, at each debug level: Log.expected lists operations, each after ">
// ", and below it the lines that they write, each after the lowest level that shows it.
#include "Support.h"

namespace names_test {
namespace {

void Check(const std::string& script, const std::vector<std::string>& lines) {
  for (int level = 0; level <= 3; ++level) {
    Names names("text A = x; number N = 7; auto K = 1; url L = file://h/p; time T; sql Q; define X = 0 99");
    std::string expected;
    for (const std::string& line : lines)
      if (line[0] - '0' <= level) expected += line.substr(1) + "\n";
    names.SetDebugLevel(level);
    Output output;
    Thrown([&] { Do(names, script); });
    EXPECT_EQ(output.Take(), expected) << script << " at level " << level;
    EXPECT_EQ(names.GetDebugLevel(), level) << script;
  }
}

TEST(Log, IsWrittenAsExpected) {
  std::string script;
  std::vector<std::string> lines;
  for (const std::string& line : Lines("Log.expected")) {
    if (line.starts_with("> ")) {
      if (!script.empty()) Check(script, lines);
      script = line.substr(2);
      lines.clear();
    } else {
      ASSERT_TRUE(line[0] >= '1' && line[0] <= '3') << line;
      lines.push_back(line);
    }
  }
  Check(script, lines);
}

}  // namespace
}  // namespace names_test
