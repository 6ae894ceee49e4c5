// Deadlines of calls.
#pragma once

#include <grpc/support/time.h>

#include <algorithm>
#include <chrono>

namespace nq::wire {

/// That long from now, a year at most, on a clock that nobody sets.
inline gpr_timespec Deadline(std::chrono::milliseconds span) {
  constexpr std::chrono::milliseconds kLongest = std::chrono::hours(24 * 365);
  const auto bounded = gpr_time_from_millis(std::min(span, kLongest).count(), GPR_TIMESPAN);
  return gpr_time_add(gpr_now(GPR_CLOCK_MONOTONIC), bounded);
}

}  // namespace nq::wire
