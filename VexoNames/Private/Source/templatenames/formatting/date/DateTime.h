// The value of a name as a point in time: the options for DATETIME.
//
// A value is read in the input format, time zone and language and written again in those of the result. A format is
// "ISO8601", "UNIX" (milliseconds since 1970-01-01T00:00:00Z), or any other word, which leaves the choice to the custom
// pattern; DateTimePatterns.h tells about those.
//
//   {InputDateTimeFormat = ISO8601, CustomDateTimeFormat = d MMMM yyyy, Language = de_DE}
//   2020-10-05T14:03:07Z                                             // becomes 5 Oktober 2020
//
// Nothing is thrown for a value or for options, whatever they hold: a failure is logged at every debug level, the
// function returns false, and the value is as before. At debug level 6 what was read and written is logged too. An
// option that holds something else than a text counts as absent. Any thread.
#pragma once

#include "NQ_TDict.h"
#include "NQ_TString.h"

namespace templatenames {

/// Reads the value; the time, in milliseconds since 1970-01-01T00:00:00Z, is unchanged when that fails. "ISO8601" is a
/// date with a time to the fraction of a second, to the second or to the minute, each with its offset, or a date alone.
/// "UNIX" never fails: text that does not begin with a number is 0.
bool ParseInputDateTime(int debugLevel, const NQ_TDict& options, const NQ_TString& value, double& time);

/// Writes the time into the value. For "UNIX" the fraction is dropped; times that 64 bits do not hold give the nearest
/// that they do, and what is no number gives 0.
bool FormatOutputDateTime(int debugLevel, const NQ_TDict& options, double time, NQ_TString& value);

/// Both.
bool FormatDateTimeValue(int debugLevel, const NQ_TDict& options, NQ_TString& value);

}  // namespace templatenames
