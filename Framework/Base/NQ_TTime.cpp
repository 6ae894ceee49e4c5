#include "NQ_TTime.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <ctime>
#include <iterator>
#include <ostream>
#include <string>

#include "NQ_EException.h"

namespace {

constexpr std::size_t kMaxFormatted = 65536;  // bytes; a pattern can ask for padding of any width

double MillisecondOf(std::chrono::system_clock::time_point when) {
  return static_cast<double>(std::chrono::floor<std::chrono::milliseconds>(when.time_since_epoch()).count());
}

double SystemClock() { return MillisecondOf(std::chrono::system_clock::now()); }

std::atomic<NQ_TTime::TClock> currentClock{&SystemClock};

}  // namespace

void NQ_TInterval::PrintOn(std::ostream& out) const {
  char text[64];
  const auto end = std::to_chars(text, std::end(text), milliseconds_ / 1000, std::chars_format::general, 6).ptr;
  out.write(text, end - text) << " s";
}

void NQ_TInterval::NQ_Pack(NQ_IPacking& packing) const { packing.PackDouble(milliseconds_); }

void NQ_TInterval::NQ_Unpack(NQ_IUnpacking& unpacking) { milliseconds_ = unpacking.UnpackDouble(); }

NQ_TTime::NQ_TTime() : milliseconds_(currentClock.load(std::memory_order_relaxed)()) {}

NQ_TTime::NQ_TTime(std::chrono::system_clock::time_point when) : milliseconds_(MillisecondOf(when)) {}

NQ_TTime NQ_TTime::FromMilliseconds(double milliseconds) { return NQ_TTime(milliseconds); }

// Whole milliseconds and the rest of one are converted apart: together they are more than a double tells exactly.
std::chrono::system_clock::time_point NQ_TTime::TimePoint() const {
  constexpr NQ_TInterval::TDuration kEnd = std::chrono::system_clock::duration::max();
  const double whole = std::floor(milliseconds_);
  if (!(std::abs(whole) < kEnd.count() - 1))
    nq::Throw(NQ_EException("The time is not one that the system's clock counts"));
  const NQ_TInterval::TDuration rest(milliseconds_ - whole);
  return std::chrono::system_clock::time_point(std::chrono::milliseconds(static_cast<std::int64_t>(whole)) +
                                               std::chrono::duration_cast<std::chrono::system_clock::duration>(rest));
}

NQ_TTime::TClock NQ_TTime::SetClock(TClock clock) {
  return currentClock.exchange(clock == nullptr ? &SystemClock : clock, std::memory_order_relaxed);
}

std::optional<NQ_TString> NQ_TTime::TryFormat(const NQ_TString& pattern) const {
  constexpr double kMaxSeconds = 6.7e16;  // years fit an int
  const double seconds = std::floor(milliseconds_ / 1000);
  std::tm local{};
  if (pattern.Empty()) return NQ_TString();
  if (!(std::abs(seconds) < kMaxSeconds)) return std::nullopt;
  const auto when = static_cast<std::time_t>(seconds);
  if (localtime_r(&when, &local) == nullptr) return std::nullopt;
  // A guard character tells an empty result from one that did not fit. strftime reads up to the first NUL.
  const std::string guarded = std::string(pattern.c_str()) + ' ';
  for (std::size_t room = 256; room <= kMaxFormatted; room *= 4) {
    std::string text(room + 2, '\0');
    const std::size_t length = std::strftime(text.data(), text.size(), guarded.c_str(), &local);
    if (length > 0) return NQ_TString(std::string_view(text).substr(0, length - 1));
  }
  return std::nullopt;
}

void NQ_TTime::PrintOn(std::ostream& out) const { out << Format("%Y-%m-%d %H:%M:%S"); }

void NQ_TTime::NQ_Pack(NQ_IPacking& packing) const { packing.PackDouble(milliseconds_); }

void NQ_TTime::NQ_Unpack(NQ_IUnpacking& unpacking) { milliseconds_ = unpacking.UnpackDouble(); }
