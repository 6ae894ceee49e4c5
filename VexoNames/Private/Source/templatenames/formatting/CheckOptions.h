// What is wrong with formatting options, as far as they tell it by themselves, without a value.
//
// Options that nobody reads, that hold another kind of value than is read, or a word that is none of those possible,
// count as absent when a value is formatted. Here they are told:
//
//   {DataFormat = TEXT, Transformation = Uppercase, Decimals = 2}
//
//   option-value    Transformation "Uppercase" has no effect: it can be "UPPERCASE" or "LOWERCASE"      UPPERCASE
//   unknown-option  Decimals has no effect with DataFormat "TEXT": it is read for "NUMBER"
//
// Units and categories of units that are not known are told too; a value of the name then fails. Time zones, languages
// and date patterns are not looked at. Nothing is thrown, whatever the options hold. Any thread may call.
#pragma once

#include "NQ_TDict.h"
#include "text/Finding.h"

namespace templatenames {

/// Adds a finding of kind UnknownOption, OptionKind or OptionValue for each fault, in the order of the options. Empty
/// options have none.
void CheckOptions(const NQ_TDict& options, TFindings& findings);

}  // namespace templatenames
