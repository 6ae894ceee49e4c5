// What the steps of a value notice: facts about their input that cannot be seen in their result.
//
// A step that reads a number in part, finds no match or takes a default says so to whoever asks:
//
//   if (findings != nullptr) findings->Add(TNameProblem::TNameProblem_KindUnreadRest, "...", suggestion);
//
// Nobody asks where no report is filled: then the pointer is null, and no sentence is made.
#pragma once

#include <utility>
#include <vector>

#include "TNameReport.h"

namespace templatenames {

struct TFinding {
  TNameProblem::TNameProblem_Kind kind;
  NQ_TString reason;      // one sentence for a template author
  NQ_TString suggestion;  // the nearest right text, or empty
};

class TFindings {
 public:
  void Add(TNameProblem::TNameProblem_Kind kind, NQ_TString reason, NQ_TString suggestion = {}) {
    if (all_.size() < kMost) all_.push_back({kind, std::move(reason), std::move(suggestion)});
  }
  const std::vector<TFinding>& All() const { return all_; }
  void Clear() { all_.clear(); }

 private:
  static constexpr std::size_t kMost = 100;  // of one token

  std::vector<TFinding> all_;
};

}  // namespace templatenames
