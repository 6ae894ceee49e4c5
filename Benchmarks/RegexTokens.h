// Regex tokens against the plain way of doing the same: a path made from four parts of a file name, each part
// group 1 of a pattern, once by regex tokens and once by PCRE alone, which compiles, runs and frees each
// pattern.
#pragma once

#include <array>
#include <string>

#include "Workloads.h"

namespace bench {

using Patterns = std::array<const char*, 4>;  // of the product, the date, the sheet and the version

// Each looks at the part it wants and its neighbours.
extern const Patterns kShortPatterns;
// Each describes the whole name, so that no other name passes.
extern const Patterns kWholeNamePatterns;

Workload FileNameRegistry();  // one name, "file"
std::string RegexTemplate(const Patterns& patterns);
std::string RegexExpected();  // the same for both sets of patterns

class PcreEachTime {
 public:
  explicit PcreEachTime(const Patterns& patterns) : patterns_(patterns) {}
  void Run();
  std::string Text() const { return out_; }

 private:
  Patterns patterns_;
  std::string out_;
};

}  // namespace bench
