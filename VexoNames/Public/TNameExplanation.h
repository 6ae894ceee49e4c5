// How each token of a template came to its text.
//
//   const TNameExplanation explained = names.Explain("<<file elem=\"_,1\"/>>");
//   for (const TNameExplanation::TStep& step : explained.Tokens()[0].steps)
//     std::cout << step.name << ": " << step.text << '\n';   // value: job_0815_cover, elem: 0815
//
// Values; one thread at a time.
#pragma once

#include <vector>

#include "TNameReport.h"

class NQ_EXPORT TNameExplanation {
 public:
  /// One step of a token's value, in the order of their names here:
  ///   value     what the lookup gave; the detail says where from
  ///   nested    the tokens in it resolved
  ///   format    written as text; the detail is the format
  ///   elem, extract, regex   cut; the detail is the text of the attribute
  ///   options   the formatting options applied; the detail is the data format
  struct TStep {
    std::string_view name;
    NQ_TString detail;
    NQ_TString text;  // after the step
  };

  struct TToken {
    NQ_TString token;  // as written, with its markers
    NQ_TString key;
    std::size_t begin = 0;  // in the text that it stands in: the template, or the value of the token around it
    std::size_t end = 0;
    /// Where the value comes from: "set", "clock", "counter", "service", "kept reply", "handler", "hook"; empty when it
    /// did not get that far.
    std::string_view source;
    std::vector<TStep> steps;
    std::vector<TToken> nested;  // the tokens of its value
    bool ok = true;
    NQ_TString result;  // what stands in the result: of a token that failed, the token
  };

  /// The resolved template; true when no token failed.
  const NQ_TString& Result() const { return result_; }
  bool Ok() const { return ok_; }
  const std::vector<TToken>& Tokens() const { return tokens_; }
  const TNameReport& Report() const { return report_; }

  /// So many steps and tokens are kept in all; what comes after is resolved, not explained.
  static constexpr std::size_t kMostKept = 10'000;

  /// For the engine that fills it.
  struct TFields;
  explicit TNameExplanation(TFields fields);

 private:
  NQ_TString result_;
  bool ok_ = true;
  std::vector<TToken> tokens_;
  TNameReport report_;
};

struct TNameExplanation::TFields {
  NQ_TString result;
  bool ok = true;
  std::vector<TToken> tokens;
  TNameReport report;
};

inline TNameExplanation::TNameExplanation(TFields fields)
    : result_(std::move(fields.result)),
      ok_(fields.ok),
      tokens_(std::move(fields.tokens)),
      report_(std::move(fields.report)) {}
