// What the tests of the value types share.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include "NQ_EException.h"
#include "NQ_TString.h"

namespace base_test {

inline NQ_TString S(std::string_view utf8) { return NQ_TString(utf8); }

/// What an object prints.
template <class T>
std::string Printed(const T& object) {
  std::ostringstream out;
  out << object;
  return out.str();
}

/// "Class: message" of the framework exception that the action throws; "" when it throws none.
template <class Action>
std::string Thrown(Action action) {
  try {
    action();
    return "";
  } catch (const NQ_EException& error) {
    return std::string(error.ClassName()) + ": " + error.NQ_Message().c_str();
  }
}

/// Repeatable random choices.
class TRandom {
 public:
  explicit TRandom(unsigned seed) : engine_(seed) {}
  /// From 0 up to, not including, the end.
  unsigned Below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(engine_); }
  /// At most so many units of an alphabet.
  std::u16string Word(std::u16string_view alphabet, unsigned most) {
    std::u16string word;
    for (unsigned left = Below(most + 1); left > 0; --left)
      word += alphabet[Below(static_cast<unsigned>(alphabet.size()))];
    return word;
  }

 private:
  std::mt19937 engine_;
};

}  // namespace base_test
