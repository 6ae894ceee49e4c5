// The options of the number formatter, read from a dictionary of formatting options.
//
// Of a separator option only the first UTF-16 unit counts. Reading a dictionary again costs a few nanoseconds while no
// key has been added to it or removed from it. Any thread may call.
#pragma once

#include <cstdint>
#include <string_view>

#include "NQ_TDict.h"

namespace templatenames {

/// The most digits written after the decimal separator, and the most before it that an option can ask for; a larger
/// number, also one counted from the input, counts as this. It bounds the work that a value or an option can cause, and
/// is far above the 1,075 decimals and 309 digits that the numbers themselves can have.
inline constexpr int kMaxDecimals = 4096;
inline constexpr int kMaxIntegerLength = 4096;

/// How numbers are separated; without grouping there is no group separator.
struct TPunctuation {
  char16_t decimal = u'.';
  char16_t group = u',';
  bool grouping = false;  // groups of three digits
};

/// Strings are those of the dictionary, valid while it is unchanged.
struct TNumberOptions {
  TPunctuation input;
  TPunctuation output;
  bool convert = false;
  const NQ_TString* category = nullptr;  // these three only when converting
  const NQ_TString* from = nullptr;
  const NQ_TString* to = nullptr;
  int decimals = -1;       // negative: as many as the input has
  int integerLength = -1;  // negative: no leading zeros

  /// The digits to be written after the decimal separator. Of an input, everything behind its last separator counts.
  int DecimalsFor(std::u16string_view text) const;
  /// The width that leading zeros fill, 0 for none.
  int Width(int decimalsWritten) const;
};

TNumberOptions ReadNumberOptions(const NQ_TDict& options);

}  // namespace templatenames
