// What the tests of formatters share: options as one line of text.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include "NQ_TArray.h"
#include "NQ_TDict.h"

namespace formatting_test {

/// How many random inputs: fifty times as many with VEXONAMES_SLOW_TESTS=1.
inline int Rounds(int few) {
  const char* const slow = std::getenv("VEXONAMES_SLOW_TESTS");
  return slow != nullptr && std::string_view(slow) == "1" ? 50 * few : few;
}

/// Takes the part before the separator; and the separator, if it is there.
inline NQ_TString Take(std::string_view& text, char separator) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return NQ_TString(part);
}

/// "a>b,c>d" as a list of pairs to find and replace.
inline NQ_TArray Pairs(std::string_view text) {
  NQ_TArray pairs;
  while (!text.empty()) {
    NQ_TDict pair;
    pair["Find"] = Take(text, '>');
    pair["Replace"] = Take(text, ',');
    pairs.Add(pair);
  }
  return pairs;
}

/// "Convert=true|Decimals=2|DecimalSeparator=,|CustomEncoding=a>b,c>d": the kind of each value goes by its key.
inline NQ_TDict Options(std::string_view text) {
  NQ_TDict options;
  while (!text.empty()) {
    const NQ_TString key = Take(text, '='), value = Take(text, '|');
    if (key == "Decimals" || key == "PreferredIntegerLength") {
      options[key] = std::atoi(value.c_str());
    } else if (key == "RemoveSpaces" || key == "Convert" || key == "AddLeadingZeros") {
      options[key] = value == "true";
    } else if (key == "CustomEncoding") {
      options[key] = Pairs(value.Narrow());
    } else {
      options[key] = value;
    }
  }
  return options;
}

}  // namespace formatting_test
