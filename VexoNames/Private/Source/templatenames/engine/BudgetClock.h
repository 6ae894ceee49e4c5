// The time that a call's budget leaves for regular expressions, as a search asks for it.
#pragma once

#include "engine/Budget.h"
#include "regex/RegexLimits.h"

namespace templatenames {

class TBudgetClock final : public TRegexClock {
 public:
  explicit TBudgetClock(TBudget& budget) : budget_(budget) {}

  bool Spent() override {
    budget_.LookAtClock();
    return budget_.RegexSpent();
  }

 private:
  TBudget& budget_;
};

}  // namespace templatenames
