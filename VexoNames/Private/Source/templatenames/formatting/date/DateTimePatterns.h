// Points in time as text, by an ICU date pattern.
//
// A point in time is a number of milliseconds since 1970-01-01T00:00:00Z. Time zones and languages are ICU identifiers:
// an unknown or empty zone is UTC, the empty language is the root locale, an unknown one gets the process's.
//
//   double time = 0;
//   ParseDateTime("dd.MM.yyyy HH:mm", "Europe/Brussels", "", "05.10.2020 14:03", time);
//   FormatDateTime("d MMMM yyyy", "UTC", "de_DE", time, text);                            // 5 Oktober 2020
//
// Reading is lenient, and what follows the part that was read is ignored. What the pattern does not name is midnight,
// and today in that zone by the clock of NQ_TTime. A year of two digits is one of the hundred that begin 80 years
// before that clock's day.
//
// Failures are NQ_EException, and leave the result unchanged:
//   - what ICU refuses: its error name, with the pattern, the zone, the text or the time;
//   - memory that runs out: U_MEMORY_ALLOCATION_ERROR, and nothing of what failed is kept;
//   - a text of which nothing could be read: "Unparseable date: error at index ...", with the text;
//   - a pattern to read with of more than 256 characters, or one to write with of more than 4,096: a reason, with the
//     pattern. ICU may take a time to read a text that grows with the square of its pattern; for the same reason it
//     sees the first 1,024 characters of a text only.
//
// Any thread; each keeps what ICU needs for the patterns, zones and languages it used last.
#pragma once

#include <cstddef>

#include "NQ_TString.h"

namespace templatenames {

/// The longest pattern to read with, and to write with.
constexpr int kMaxPatternRead = 256;
constexpr int kMaxPatternWritten = 4096;

/// Reads the time at the front of the text, and returns how many of its UTF-16 units that front has. (Digits of a
/// fraction that no clock has count as read.)
std::size_t ParseDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                          const NQ_TString& text, double& time);

/// The same for a text that is written exactly as the pattern says, with nothing after it. False, with the time
/// unchanged, when that is not known without asking ICU.
bool ParseExactDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language,
                        const NQ_TString& text, double& time);

/// Writes the time. A time that is no number is ICU's U_ILLEGAL_ARGUMENT_ERROR; one beyond ICU's range is written as
/// the last in it.
void FormatDateTime(const NQ_TString& pattern, const NQ_TString& zone, const NQ_TString& language, double time,
                    NQ_TString& out);

}  // namespace templatenames
