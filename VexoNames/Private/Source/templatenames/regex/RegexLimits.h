// What one search by a regular expression may cost.
#pragma once

namespace templatenames {

/// Says when the time for regular expressions is over. Asked between the parts of a long search, up to once for
/// each character of the text: to ask should cost little.
class TRegexClock {
 public:
  virtual bool Spent() = 0;

 protected:
  ~TRegexClock() = default;
};

struct TRegexLimits {
  /// Steps of the matcher from one starting position.
  unsigned long match = 1'000'000;
  /// Depth of the matcher where there is no machine code.
  unsigned long recursion = 10'000;
  /// Null: the search may take any time, hours if it comes to that.
  TRegexClock* clock = nullptr;
};

inline constexpr TRegexLimits kUsualLimits;

}  // namespace templatenames
