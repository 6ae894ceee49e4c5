// A time zone.
//
// The rules are ICU's; an unknown or empty identifier gives ICU's unknown zone, which is UTC. What is added is a
// memory: between two changes of its offset a zone needs no rules, so the last such spans are kept.
//
//   TDateZone brussels("Europe/Brussels");
//   brussels.OffsetAt(1601899387250);    // 7200000
//
// Where memory runs out the constructor throws NQ_EException: no zone stands for another one. Nothing else fails. One
// thread at a time.
#pragma once

#include <unicode/basictz.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

#include "NQ_TString.h"

namespace templatenames {

class TDateZone {
 public:
  explicit TDateZone(const NQ_TString& id);

  const icu::TimeZone& Icu() const { return *zone_; }

  /// What is to be added to a time to get the local time, in milliseconds.
  std::int32_t OffsetAt(double time);
  /// The time that a local time stands for, as a calendar sees it: a local time that is skipped counts as if the clock
  /// had not been put forward yet, and one that occurs twice is the later.
  double TimeAt(double local);

 private:
  /// From one change of the offset to the next.
  struct TSpan {
    double from = std::numeric_limits<double>::infinity();  // as it stands, it holds no time
    double until = -std::numeric_limits<double>::infinity();
    std::int32_t offset = 0;

    bool Holds(double time) const { return time >= from && time < until; }
  };

  TSpan FindSpan(double time) const;

  // Summer and winter of two years: dates that are used together are rarely further apart.
  static constexpr std::size_t kSpans = 4;

  std::unique_ptr<icu::TimeZone> zone_;
  const icu::BasicTimeZone* rules_;  // of zone_; null if it has none that can be walked
  std::array<TSpan, kSpans> spans_;
  std::size_t next_ = 0;
};

}  // namespace templatenames
