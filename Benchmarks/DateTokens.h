// Date tokens against the plain way of doing the same: four dates, each read by one pattern and written by another, by
// names with formatting options, by the formatter alone, and by ICU, with objects built for each date.
#pragma once

#include <array>
#include <string>

#include "NQ_TDict.h"
#include "VexoEngines.h"
#include "Workloads.h"

namespace bench {

struct DateFormat {
  const char *pattern, *zone, *language;
};

struct DateTask {
  DateFormat in, out;
  std::array<const char*, 4> dates;
  const char* expected;
};

extern const DateTask kIsoDates;     // from ISO form to ISO form
extern const DateTask kNamedMonths;  // from digits to a German date
extern const DateTask kNamedZones;   // the same with the weekday and the zone in words

Workload FourDates(const DateTask& task);
NQ_TDict DateOptions(const DateTask& task);
Registry DateRegistry(const DateTask& task);

class IcuEachTime {
 public:
  explicit IcuEachTime(const DateTask& task) : task_(task) {}
  void Run();
  std::string Text() const { return out_; }

 private:
  DateTask task_;
  std::string out_;
};

}  // namespace bench
