// The tables on standard output, and the same as JSON.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "Groups.h"
#include "Paired.h"
#include "Targets.h"

namespace bench {

void PrintMeasurements(const Group& group, const std::vector<Measurement>& measurements);
void PrintTargets(const std::vector<Judged>& rows);
bool WriteJson(const std::string& file, const std::vector<Measurement>& measurements, const std::vector<Judged>& rows);

}  // namespace bench
