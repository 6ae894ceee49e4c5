#include "formatting/date/DateZone.h"

#include <unicode/tztrans.h>

#include <algorithm>

#include "formatting/date/IcuNames.h"
#include "formatting/date/IcuText.h"

namespace templatenames {
namespace {

// Further away than this from every change of the offset, each local time occurs exactly once. The longest that a
// zone ever skipped or repeated is a day.
constexpr double kUnambiguous = 2 * 86'400'000.0;

}  // namespace

TDateZone::TDateZone(const NQ_TString& id)
    : zone_(icu::TimeZone::createTimeZone(ToIcu(id))), rules_(dynamic_cast<const icu::BasicTimeZone*>(zone_.get())) {
  // Without memory ICU makes no zone, the unknown one, or one whose changes cannot be walked.
  UErrorCode error = U_ZERO_ERROR;
  if (rules_ != nullptr) rules_->countTransitionRules(error);
  const bool isLost = zone_ == nullptr || (*zone_ == icu::TimeZone::getUnknown() && IsListedZone(id));
  CheckIcu(isLost ? U_MEMORY_ALLOCATION_ERROR : error, id);
}

double TDateZone::TimeAt(double local) {
  const auto sure = [local](const TSpan& span) {
    const double time = local - span.offset;
    return time - kUnambiguous >= span.from && time + kUnambiguous < span.until;
  };
  const auto span = std::find_if(spans_.begin(), spans_.end(), sure);
  if (span != spans_.end()) return local - span->offset;
  std::int32_t raw = 0, saving = 0;
  UErrorCode error = U_ZERO_ERROR;
  if (rules_ != nullptr)
    rules_->getOffsetFromLocal(local, UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_LATTER, raw, saving, error);
  else
    zone_->getOffset(local, true, raw, saving, error);
  const double time = local - (raw + saving);
  OffsetAt(time);  // for the local times to come
  return time;
}

std::int32_t TDateZone::OffsetAt(double time) {
  for (const TSpan& span : spans_) {
    if (span.Holds(time)) return span.offset;
  }
  const TSpan found = FindSpan(time);
  // For times beyond some 10^17, where its arithmetic overflows, ICU finds changes of other times.
  if (found.Holds(time)) spans_[next_++ % kSpans] = found;
  return found.offset;
}

TDateZone::TSpan TDateZone::FindSpan(double time) const {
  TSpan span;
  std::int32_t raw = 0, saving = 0;
  UErrorCode error = U_ZERO_ERROR;
  zone_->getOffset(time, false, raw, saving, error);
  if (U_FAILURE(error) != 0) return span;  // no time that ICU knows; what stands there now is nothing to keep
  span.offset = raw + saving;
  if (rules_ == nullptr) return span;
  icu::TimeZoneTransition change;
  constexpr double kEver = std::numeric_limits<double>::infinity();
  span.from = rules_->getPreviousTransition(time, true, change) != 0 ? change.getTime() : -kEver;
  span.until = rules_->getNextTransition(time, false, change) != 0 ? change.getTime() : kEver;
  return span;
}

}  // namespace templatenames
