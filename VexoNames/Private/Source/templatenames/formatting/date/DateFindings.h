// What a template author should know of a date that was read: see text/Finding.h.
//
//   unread-rest   "5.10.2020x": "x" was left over
//   unreadable    nothing could be read; also a text that "UNIX" takes for 0 because it is no number
//   unlikely      a year outside 1900 to 2200, and seconds where milliseconds are counted
//   no-zone       neither text nor options say the zone, and it matters
//
// It is called after reading and before writing, and says nothing of what CheckDateOptions.h says of the options alone.
// Any thread.
#pragma once

#include "NQ_TDict.h"
#include "formatting/date/DateTime.h"

namespace templatenames {

/// The value is as it was read.
void FindInDateValue(const NQ_TDict& options, const NQ_TString& value, const TDateOutcome& outcome,
                     TFindings& findings);

}  // namespace templatenames
