#include "engine/Budget.h"

#include <chrono>
#include <ctime>
#include <iterator>

namespace templatenames {
namespace {

struct TLimitRow {
  std::string_view name;
  const char* logText;
  const char* sentence;  // completed by the figure, where there is one
  std::int64_t (*figure)(const TNameLimits& limits);
};

// In the order of TLimit.
constexpr TLimitRow kLimits[] = {
    {"", "", "", nullptr},
    {"nestedDepth", " Nested deeper than the limit allows", "values lie within values more than %lld deep",
     [](const TNameLimits& limits) -> std::int64_t { return limits.nestedDepth; }},
    {"tokens", " More tokens than the limit allows", "the call has looked at its %lld tokens",
     [](const TNameLimits& limits) { return limits.tokens; }},
    {"characters", " More characters than the limit allows", "the values of the call have more than %lld characters",
     [](const TNameLimits& limits) { return limits.characters; }},
    {"queries", " More queries than the limit allows", "the call has made its %lld requests to services",
     [](const TNameLimits& limits) -> std::int64_t { return limits.queries; }},
    {"queryMilliseconds", " More time for queries than the limit allows",
     "the call has waited %lld milliseconds for services that did not answer",
     [](const TNameLimits& limits) { return limits.queryMilliseconds; }},
    {"regexMatch", " More steps of a regular expression than the limit allows",
     "the regular expression needs more than %lld steps on this value",
     [](const TNameLimits& limits) { return static_cast<std::int64_t>(limits.regexMatch); }},
    {"regexRecursion", " A regular expression goes deeper than the limit allows",
     "the regular expression goes more than %lld levels deep on this value",
     [](const TNameLimits& limits) { return static_cast<std::int64_t>(limits.regexRecursion); }},
    {"regexMilliseconds", " More time for regular expressions than the limit allows",
     "the regular expressions of the call have taken their %lld milliseconds",
     [](const TNameLimits& limits) { return limits.regexMilliseconds; }},
};
static_assert(std::size(kLimits) == static_cast<std::size_t>(TLimit::RegexMilliseconds) + 1);

const TLimitRow& RowOf(TLimit limit) { return kLimits[static_cast<std::size_t>(limit)]; }

}  // namespace

std::string_view NameOf(TLimit limit) { return RowOf(limit).name; }

const char* LogTextOf(TLimit limit) { return RowOf(limit).logText; }

NQ_TString SentenceOf(TLimit limit, const TNameLimits& limits) {
  const TLimitRow& row = RowOf(limit);
  if (row.figure == nullptr) return {};
  const NQ_TString figure = NQ_TString::Format("%lld", static_cast<long long>(row.figure(limits)));
  return NQ_TString(row.sentence).Replace(NQ_TString("%lld"), figure);
}

void TBudget::Begin(const TNameLimits& limits) {
  nestedDepth = limits.nestedDepth;
  tokens = limits.tokens;
  characters = limits.characters;
  regexMilliseconds = limits.regexMilliseconds;
  queries = limits.queries;
  queryMilliseconds = limits.queryMilliseconds;
  lastLook_ = 0;
  searchesToLook_ = kSearchesPerLook;  // a call's first searches are free
}

void TBudget::LookAtClock() {
  using std::chrono::milliseconds;
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &time);  // to a few milliseconds, at an eighth of the price
  const auto since = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  const std::int64_t now = std::chrono::duration_cast<milliseconds>(since).count();
  if (lastLook_ != 0) regexMilliseconds -= now - lastLook_;
  lastLook_ = now;
  searchesToLook_ = kSearchesPerLook;
}

}  // namespace templatenames
