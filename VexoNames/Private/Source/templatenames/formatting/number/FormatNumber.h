// The number formatter: reads a value as a number, converts its unit, and writes it with other separators, another
// number of decimals and leading zeros, as the options of a name say.
//
//   InputDecimalSeparator, InputThousandsSeparator              how the value is written; "." and no groups
//   Convert, ConvertUnitCategory, ConvertFromUnit, ConvertToUnit
//   DecimalSeparator, ThousandsSeparator                        how the result is written; "." and no groups
//   Decimals                                                    as many as the value has
//   AddLeadingZeros, PreferredIntegerLength                     width before the decimals, sign and groups included
//
//   options["Decimals"] = 2;
//   options["ThousandsSeparator"] = NQ_TString("'");
//   FormatNumber(options, value);                               // 1234567.891: 1'234'567.89
//
// The results are those of the standard wide streams with these separators, in a locale made from the global one
// (NumberByStreams.h). Most numbers take a way that needs no stream; everything else, such
// as an exponent, is left to the streams, and so is every number where the global locale reads or writes ASCII in a way
// of its own. Any thread may call, also with the same options, as long as nobody changes them.
#pragma once

#include "NQ_TDict.h"
#include "NQ_TString.h"
#include "formatting/number/NumberOutcome.h"

namespace templatenames {

/// Formats the value in place and says what it met; a value that does not begin with a number is unchanged. Characters
/// behind the number are dropped. Throws NQ_ENoSuchUnitCategory and NQ_ENoSuchUnit, with the value unchanged. Decimals
/// and PreferredIntegerLength above 4096 count as 4096.
TNumberOutcome FormatNumber(const NQ_TDict& options, NQ_TString& value);

}  // namespace templatenames
