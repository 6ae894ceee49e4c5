// The groups of subjects that are measured against each other, a row each.
#pragma once

#include <span>

#include "Paired.h"

namespace bench {

struct Group {
  const char* id;
  const char* about;
  Subjects (*make)();
  double sliceNanoseconds;
  int roundsDivisor;  // large texts take a fraction of the rounds
};

std::span<const Group> AllGroups();

}  // namespace bench
