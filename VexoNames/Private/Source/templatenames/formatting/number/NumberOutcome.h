// What formatting a number met: facts that cannot be seen in the value that came out.
//
//   const NQ_TString before = value;
//   const TNumberOutcome outcome = FormatNumber(options, value);
//   AddNumberFindings(before, outcome, findings);                // "12 mm" was read as 12
//
// Any thread may call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "NQ_TString.h"
#include "text/Finding.h"

namespace templatenames {

struct TNumberOutcome {
  enum class TKind : std::uint8_t {
    Written,     // the value is the text of the number
    NotANumber,  // the value does not begin with a number, and is unchanged
    NotWritten,  // the stream could not write the number; the value is empty
  };

  TKind kind = TKind::Written;
  std::size_t read = 0;  // units of the value as it was, up to the end of the number; 0 when there is none
  double number = 0;     // NotWritten: the number
  std::string error;     // NotANumber: what the stream says
};

/// Says what was left of that value, or that it was left alone. White space behind a number is nothing to speak of.
void AddNumberFindings(const NQ_TString& value, const TNumberOutcome& outcome, TFindings& findings);

}  // namespace templatenames
