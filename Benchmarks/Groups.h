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
  const char* unit =
      nullptr;  // where a token stands for something larger: that, of which a line tells how many a second
};

std::span<const Group> AllGroups();

}  // namespace bench
