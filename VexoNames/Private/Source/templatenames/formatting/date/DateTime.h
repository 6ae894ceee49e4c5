// The value of a name as a point in time: the options for DATETIME.
//
// A value is read in the input format, time zone and language and written again in those of the result. A format is
// "ISO8601", "UNIX" (milliseconds since 1970-01-01T00:00:00Z), or any other word, which leaves the choice to the custom
// pattern; DateTimePatterns.h tells about those.
//
//   {InputDateTimeFormat = ISO8601, CustomDateTimeFormat = d MMMM yyyy, Language = de_DE}
//   2020-10-05T14:03:07Z                                             // becomes 5 Oktober 2020
//
// Nothing is logged here: what happened is returned, and engine/DateLog.h writes the lines. Nothing is thrown for a
// value or for options, whatever they hold; a value that cannot be read or written is as before. An option that holds
// something else than a text counts as absent. Any thread.
#pragma once

#include <cstddef>
#include <string>

#include "NQ_TDict.h"
#include "NQ_TString.h"
#include "text/Finding.h"

namespace templatenames {

/// What became of a value.
struct TDateOutcome {
  bool read = false;
  bool written = false;         // the value is the formatted one
  double time = 0;              // that was read, in milliseconds since 1970-01-01T00:00:00Z
  std::size_t length = 0;       // UTF-16 units of the value that were read; 0 where "UNIX" met no number
  std::size_t formsFailed = 0;  // so many of IsoPatterns() did not fit before the next was tried
  std::string error;            // as it prints, when the value was not read or not written
};

/// Reads the value. "ISO8601" is a date with a time to the fraction of a second, to the second or to the minute, each
/// with its offset, or a date alone. "UNIX" never fails: text that does not begin with a number is 0.
TDateOutcome ParseInputDateTime(const NQ_TDict& options, const NQ_TString& value);

/// Writes the time that was read into the value. For "UNIX" the fraction is dropped; times that 64 bits do not hold
/// give the nearest that they do, and what is no number gives 0.
void FormatOutputDateTime(const NQ_TDict& options, TDateOutcome& outcome, NQ_TString& value);

/// Both. The findings, when asked for, are those that depend on the value: nothing or only a part of it could be read,
/// the year is unlikely, the zone was guessed. Those of the options alone are CheckDateOptions's.
TDateOutcome FormatDateTimeValue(const NQ_TDict& options, NQ_TString& value, TFindings* findings);

}  // namespace templatenames
