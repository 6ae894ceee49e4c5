// Points in time and spans between them.
//
//   const NQ_TTime begin;                                       // now, by the clock that SetClock has chosen
//   const NQ_TTime release(std::chrono::system_clock::now());   // and release.TimePoint() gives it back
//   if ((release - begin).Duration() > std::chrono::hours(1)) ...
//
// A host's own clock (NQ_TTime::SetClock) is the one by which everything here tells what time it is.
#pragma once

#include <chrono>
#include <optional>

#include "NQ_TString.h"

/// A span of time; prints as seconds with at most six significant digits and " s".
class NQ_EXPORT NQ_TInterval final : public NQ_TValueOf<NQ_TInterval, NQ_TValue, "NQ_TInterval"> {
 public:
  using TDuration = std::chrono::duration<double, std::milli>;

  NQ_TInterval() = default;
  explicit NQ_TInterval(double milliseconds) : milliseconds_(milliseconds) {}
  /// Of any span of std::chrono.
  explicit NQ_TInterval(TDuration duration) : milliseconds_(duration.count()) {}
  double Milliseconds() const { return milliseconds_; }
  TDuration Duration() const { return TDuration(milliseconds_); }

  bool operator==(const NQ_TInterval& other) const { return milliseconds_ == other.milliseconds_; }
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;

 private:
  double milliseconds_ = 0;
};

/// A point in time, to the millisecond. Its text is local time of the process's zone.
class NQ_EXPORT NQ_TTime final : public NQ_TValueOf<NQ_TTime, NQ_TValue, "NQ_TTime"> {
 public:
  /// Gives the current time in milliseconds since 1970-01-01T00:00:00Z. Called from any thread.
  using TClock = double (*)();

  /// The current time, from the process's clock.
  NQ_TTime();
  /// The millisecond in which that point lies.
  explicit NQ_TTime(std::chrono::system_clock::time_point when);
  /// Milliseconds since 1970-01-01T00:00:00Z.
  [[nodiscard]] static NQ_TTime FromMilliseconds(double milliseconds);
  double Milliseconds() const { return milliseconds_; }
  /// Throws NQ_EException when the time lies outside the years that the system's clock can count (1678 to 2261).
  std::chrono::system_clock::time_point TimePoint() const;

  /// The clock of default-constructed times: the system's, until another one is set; null sets the system's again.
  /// Returns the one before. For repeatable output and tests; any thread.
  static TClock SetClock(TClock clock);

  /// Text by a strftime pattern, up to its first NUL, in local time. Empty when the pattern is, when the time lies
  /// outside the years that the calendar can hold, or when the text would exceed 65,536 bytes.
  [[nodiscard]] NQ_TString Format(const NQ_TString& pattern) const { return TryFormat(pattern).value_or(NQ_TString()); }
  /// The same; nothing when the time lies outside the years of the calendar or the text would be too long.
  [[nodiscard]] std::optional<NQ_TString> TryFormat(const NQ_TString& pattern) const;

  NQ_TInterval operator-(const NQ_TTime& earlier) const { return NQ_TInterval(milliseconds_ - earlier.milliseconds_); }
  bool operator==(const NQ_TTime& other) const { return milliseconds_ == other.milliseconds_; }
  /// Prints as 2026-01-31 13:05:09.
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;

 private:
  explicit NQ_TTime(double milliseconds) : milliseconds_(milliseconds) {}

  double milliseconds_;
};
