// The log of dates: what formatting/date tells, as lines.
//
//   Parsing date 'yesterday' into UTC time failed.  Caused by:          always
//   NQ_EException: Unparseable date: error at index 0 [yesterday] (...)
//   {InputDateTimeFormat = ISO8601}
//   Parsed date '1e3' into UTC time '1000'                              at level 6 and above
//
// Failures are logged at level 0. Any thread.
#pragma once

#include "NQ_TDict.h"
#include "formatting/date/DateTime.h"

namespace templatenames {

/// From this debug level on each step of a date that succeeds is logged too.
constexpr int kLevelOfDateSteps = 6;

/// Writes the lines that the level asks for. The value before is needed from kLevelOfDateSteps on only: below that a
/// line tells of a value that is still the same.
void LogDate(int debugLevel, const NQ_TDict& options, const NQ_TString& before, const NQ_TString& after,
             const TDateOutcome& outcome);

}  // namespace templatenames
