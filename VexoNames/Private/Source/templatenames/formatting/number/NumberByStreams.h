// Formatting of numbers by the standard wide streams.
//
// This is what the number formatter means: reading and writing are those of the standard library, with the separators
// that the options name, in a locale made from the global one. It is used for the inputs that the fast way leaves to
// it, and the tests hold the fast way to it. Each call makes two locales and two streams. Any thread may call.
#pragma once

#include "NQ_TString.h"
#include "formatting/number/NumberOptions.h"
#include "formatting/number/NumberOutcome.h"

namespace templatenames {

/// Reads the number at the front of the value, converts its unit if the options say so, and puts its text in place of
/// the value. NotANumber, with the value unchanged, when the value does not begin with a number, or with one that does
/// not end within 65,536 characters. Throws what ConvertUnit throws, with the value unchanged.
TNumberOutcome FormatNumberByStreams(const TNumberOptions& options, NQ_TString& value);

}  // namespace templatenames
