// What the measurements are held to. A row names a subject and the reference within its group.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Paired.h"

namespace bench {

enum class Direction {
  CostAtMost,     // the subject's time as a multiple of the reference's; less is better
  FasterAtLeast,  // how many times faster than the reference the subject is; more is better
};

struct Target {
  const char* what;
  const char* group;
  const char* subject;
  const char* reference;
  Direction direction = Direction::CostAtMost;
  std::optional<double> line = {};  // must be kept; none: the row only informs
  std::optional<double> aim = {};   // what we want
};

enum class Verdict { Informs, AimMet, Met, Missed };

struct Judged {
  Target target;
  Ratio measured;  // in the target's direction
  Verdict verdict;
};

// One row for each target whose group was measured.
std::vector<Judged> Judge(const std::vector<Measurement>& measurements);

const char* VerdictText(Verdict verdict);

}  // namespace bench
