// The time that requests to services take, counted against what a call may spend on them.
#pragma once

#include <chrono>
#include <cstdint>

namespace templatenames {

/// Takes the whole milliseconds of its life from what is left, also when that ends with an exception.
class TSpentTime {
 public:
  explicit TSpentTime(std::int64_t& millisecondsLeft) : left_(millisecondsLeft) {}
  TSpentTime(const TSpentTime&) = delete;
  TSpentTime& operator=(const TSpentTime&) = delete;
  ~TSpentTime() {
    const auto taken = std::chrono::steady_clock::now() - begin_;
    left_ -= std::chrono::duration_cast<std::chrono::milliseconds>(taken).count();
  }

 private:
  std::int64_t& left_;
  const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace templatenames
