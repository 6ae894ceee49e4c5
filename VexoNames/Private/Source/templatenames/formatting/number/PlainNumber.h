// Reading and writing plain numbers without streams.
//
//   number = { white space } [ "+" | "-" ] ( digits [ separator [ digits ] ] | separator digits )
//
// with ASCII white space and digits, and groups of three in the digits before the separator if the punctuation has
// groups. What is read or written is exactly what the standard streams read and write in a locale whose characters are
// those of the "C" locale, and with rounding to nearest; what is not surely so is left to them. Nothing here fails. Any
// thread may call.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "NQ_TString.h"
#include "formatting/number/NumberOptions.h"

namespace templatenames {

struct TPlainNumber {
  double number;
  std::size_t end;  // the place behind it
};

/// The number at the front of the text; nullopt when the streams must read it, be it a number or not.
std::optional<TPlainNumber> ReadPlainNumber(std::u16string_view text, const TPunctuation& punctuation);

/// Appends the number, which is finite, with that many decimals, at most kMaxDecimals, and with zeros in front of it up
/// to that width.
void AppendPlainNumber(double number, int decimals, int width, const TPunctuation& punctuation, NQ_TString& out);

}  // namespace templatenames
