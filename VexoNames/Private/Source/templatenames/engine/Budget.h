// What one outermost public call may still do.
//
// Every limit of a call is spent here, and named here when it ran out; handlers that call back share the budget of the
// call that they run in. Used under the registry lock.
//
//   budget.Begin(limits);                                              // the outermost call begins
//   if (const TLimit limit = budget.Exceeded(); limit != TLimit::None) // before each token
//     ... NameOf(limit)                                                // "tokens"
//   budget.TakeToken();
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "NQ_TString.h"
#include "TNameLimits.h"

namespace templatenames {

/// The limits that a token can reach, in the order of TNameLimits.
enum class TLimit : std::uint8_t {
  None,
  NestedDepth,
  Tokens,
  Characters,
  Queries,
  QueryMilliseconds,
  RegexMatch,
  RegexRecursion,
  RegexMilliseconds,
};

/// The limit's name, that of the member of TNameLimits; empty for None.
std::string_view NameOf(TLimit limit);
/// What the log says of a token that reached it, behind the token's name.
const char* LogTextOf(TLimit limit);
/// What a template author is told.
NQ_TString SentenceOf(TLimit limit, const TNameLimits& limits);

class TBudget {
 public:
  /// Sets everything to what the limits allow.
  void Begin(const TNameLimits& limits);

  /// The limit that the resolution in hand has reached.
  TLimit Exceeded() const {
    if (depth - 1 > nestedDepth) return TLimit::NestedDepth;  // the outermost template is not nested
    if (tokens <= 0) return TLimit::Tokens;
    return characters < 0 ? TLimit::Characters : TLimit::None;
  }

  // ---- regular expressions

  bool RegexSpent() const { return regexMilliseconds <= 0; }
  /// To be called before a regular expression is asked for. From a look at the clock on all time counts, until
  /// PauseRegex.
  void BeginRegex() {
    if (--searchesToLook_ <= 0) LookAtClock();
  }
  /// To be called before handlers, which may take their time.
  void PauseRegex() {
    if (lastLook_ != 0) LookAtClock();
    lastLook_ = 0;
    searchesToLook_ = 0;
  }
  void LookAtClock();

  // ---- requests to services

  TLimit QueriesExceeded() const {
    if (queries <= 0) return TLimit::Queries;
    return queryMilliseconds <= 0 ? TLimit::QueryMilliseconds : TLimit::None;
  }

  int depth = 0;  // of resolutions within each other: nested values, and calls of handlers
  int nestedDepth = 0;
  std::int64_t tokens = 0;
  std::int64_t characters = 0;
  std::int64_t regexMilliseconds = 0;  // left for compiling and running regular expressions
  int queries = 0;
  std::int64_t queryMilliseconds = 0;  // left for requests that are not answered
  bool preview = false;                // counters stand still, services are not asked

 private:
  static constexpr int kSearchesPerLook = 8;  // a look for each search would cost as much as the search

  std::int64_t lastLook_ = 0;  // at the clock, in milliseconds; 0: the clock stands still
  int searchesToLook_ = 0;
};

/// Counts a text on its way through the steps of one value. It counts once, by its longest form: formats and stages may
/// leave little of much.
class TCharge {
 public:
  explicit TCharge(TBudget& budget) : budget_(budget), before_(budget.characters) {}
  /// What was left when the value came.
  std::int64_t Before() const { return before_; }
  void Text(std::size_t length) {
    budget_.characters = std::min(budget_.characters, before_ - static_cast<std::int64_t>(length));
  }

 private:
  TBudget& budget_;
  const std::int64_t before_;
};

}  // namespace templatenames
