// Number tokens against the plain way of doing the same: four lengths in inches, read, converted to millimetres and
// written with two decimals, by names with formatting options, by the formatter alone, and by the standard wide
// streams, with two locales and two streams made for each number.
#pragma once

#include <string>

#include "NQ_TDict.h"
#include "VexoEngines.h"
#include "Workloads.h"

namespace bench {

Workload FourNumbers();
std::string NumbersExpected();
NQ_TDict NumberOptions();
Registry NumberRegistry();

class StreamsEachTime {
 public:
  void Run();
  std::string Text() const { return out_; }

 private:
  std::string out_;
};

}  // namespace bench
