// The options for DATETIME, and the words that they may hold.
//
//   const TDatePlaces& places = TDatePlaces::In(options);
//   if (IsCustom(places.Text(TDateKeys::kDateTimeFormat))) ... places.Text(TDateKeys::kCustomDateTimeFormat) ...
//
// Nothing here fails; any thread may call.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "NQ_TString.h"
#include "formatting/OptionPlaces.h"

namespace templatenames {

struct TDateKeys {
  enum TKey : std::size_t {
    kInputDateTimeFormat,
    kCustomInputDateTimeFormat,
    kInputTimeZone,
    kInputLanguage,
    kDateTimeFormat,
    kCustomDateTimeFormat,
    kTimeZone,
    kLanguage,
    kCount,
  };

  static const std::array<NQ_TString, kCount>& All();
};

using TDatePlaces = TOptionPlaces<TDateKeys>;

constexpr std::u16string_view kIso8601 = u"ISO8601";
constexpr std::u16string_view kUnix = u"UNIX";  // milliseconds, not seconds

/// Whether the word of "InputDateTimeFormat" or "DateTimeFormat" leaves the choice to the custom pattern.
inline bool IsCustom(const NQ_TString& format) { return !format.Equals(kIso8601) && !format.Equals(kUnix); }

/// What "ISO8601" reads, the most complete pattern first; what it writes is the first of them. All but the last name a
/// time of day and its offset.
const std::array<NQ_TString, 4>& IsoPatterns();

}  // namespace templatenames
