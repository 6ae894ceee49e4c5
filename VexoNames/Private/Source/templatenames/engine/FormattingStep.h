// The last step of a value: its name's formatting options.
//
//   if (!ApplyFormattingOptions(options, debugLevel, most, value, findings)) ...   // fails the token
//
// The option "DataFormat" chooses the formatter: "TEXT" (FormatText.h), "NUMBER" (FormatNumber.h) or "DATETIME"
// (DateTime.h). The formatters are pure; what the log has to say of them is written here. Charges no budget, takes no
// lock. Any thread may call, also with the same options, as long as nobody changes them.
#pragma once

#include <cstdint>

#include "NQ_TDict.h"
#include "NQ_TString.h"
#include "text/Finding.h"

namespace templatenames {

/// The longest text that an encoding may make, whatever a call may still spend.
inline constexpr std::int64_t kMostEncoded = std::int64_t{64} * 1024 * 1024;

/// A debug level at which no line is written, those of level 0 included.
inline constexpr int kNoLines = -1;

/// Formats the value in place; an empty one, and one without options or of an unknown format, stays as it is, and so
/// does one that the formatter cannot read: those succeed. `findings`, unless null, takes what the formatter noticed of
/// the value (CheckOptions.h tells what is wrong with the options).
///
/// False when the encoding would make the text longer than `mostCharacters`, and longer than it is: it is not encoded,
/// and the token is to fail. Throws NQ_ENoSuchUnit, NQ_ENoSuchUnitCategory, and NQ_EException for an element of
/// CustomEncoding that is no pair of texts.
[[nodiscard]] bool ApplyFormattingOptions(const NQ_TDict& options, int debugLevel, std::int64_t mostCharacters,
                                          NQ_TString& value, TFindings* findings);

}  // namespace templatenames
