// What the tests of formatters share: options as one line of text.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include "NQ_TArray.h"
#include "NQ_TDict.h"
#include "NQ_TString.h"

namespace formatting_test {

/// Whether random tests are to draw many more inputs: VEXONAMES_SLOW_TESTS=1.
inline bool SlowTests() {
  const char* const slow = std::getenv("VEXONAMES_SLOW_TESTS");
  return slow != nullptr && std::string_view(slow) == "1";
}

inline NQ_TString S(std::string_view utf8) { return NQ_TString(utf8); }

/// Takes the part before the separator; and the separator, if it is there.
inline std::string_view Take(std::string_view& text, char separator) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

/// "a>b,c>d" as a list of pairs to find and replace.
inline NQ_TArray Pairs(std::string_view text) {
  NQ_TArray pairs;
  while (!text.empty()) {
    std::string_view pair = Take(text, ',');
    NQ_TDict element;
    element["Find"] = S(Take(pair, '>'));
    element["Replace"] = S(pair);
    pairs.Add(element);
  }
  return pairs;
}

/// "Convert=true|Decimals=2|DecimalSeparator=,|CustomEncoding=a>b,c>d": the kind of each value goes by its key.
inline NQ_TDict Options(std::string_view text) {
  NQ_TDict options;
  while (!text.empty()) {
    std::string_view option = Take(text, '|');
    const std::string key(Take(option, '='));
    const std::string value(option);
    if (key == "Decimals" || key == "PreferredIntegerLength") {
      options[key.c_str()] = std::stoi(value);
    } else if (key == "RemoveSpaces" || key == "Convert" || key == "AddLeadingZeros") {
      options[key.c_str()] = value == "true";
    } else if (key == "CustomEncoding") {
      options[key.c_str()] = Pairs(value);
    } else {
      options[key.c_str()] = S(value);
    }
  }
  return options;
}

}  // namespace formatting_test
