// Who watches an evaluation. The evaluator is compiled once for each policy, so that what nobody asks for costs
// nothing.
//
//   TSilent      nobody: at debug level 0, without a report
//   TLogging     the log
//   TReporting   the log, a report, and an explanation where one is wanted
//   TChecking    a report; nothing is called, asked, counted or logged, and values that cannot be known without that
//                are taken as they come
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "TNameExplanation.h"
#include "TNameReport.h"
#include "engine/Budget.h"
#include "text/Finding.h"

namespace templatenames {

/// Why a token failed.
struct TProblem {
  TNameProblem::TNameProblem_Kind kind = TNameProblem::TNameProblem_KindUndefined;
  TLimit limit = TLimit::None;
  NQ_TString reason;
  NQ_TString suggestion;
};

struct TSilent {
  static constexpr bool kLogs = false;
  static constexpr bool kReports = false;
  static constexpr bool kCalls = true;
};

struct TLogging {
  static constexpr bool kLogs = true;
  static constexpr bool kReports = false;
  static constexpr bool kCalls = true;
};

/// Knows where an evaluation is, and files what is found there.
class TReporting {
 public:
  static constexpr bool kLogs = true;
  static constexpr bool kReports = true;
  static constexpr bool kCalls = true;

  explicit TReporting(TNameReport& report, std::vector<TNameExplanation::TToken>* story = nullptr)
      : report_(report), story_(story) {}

  /// The token in hand. What was in hand before is returned, to be put back when the token is done.
  struct TInHand {
    std::u16string_view written;  // with its markers
    std::u16string_view key;
    TNameExplanation::TToken* explained = nullptr;
  };
  TInHand Take(std::u16string_view written, std::u16string_view key, std::size_t begin, std::size_t end);
  const TInHand& InHand() const { return inHand_; }
  void PutBack(const TInHand& before) { inHand_ = before; }
  /// Between the two, tokens are those of the value of the name in hand.
  void EnterValue();
  void LeaveValue();
  /// The names whose values the evaluation is in, the outermost first.
  const std::vector<NQ_TString>& Within() const { return within_; }

  void Fail(TProblem problem);
  void Note(TNameProblem::TNameProblem_Kind kind, NQ_TString reason, NQ_TString suggestion = {});
  /// A note about a place in the outermost template.
  void NoteAt(TFinding finding, std::size_t begin, std::size_t end, std::u16string_view written);
  /// What the steps of the token in hand find; filed by NoteFindings.
  TFindings& Findings() { return findings_; }
  void NoteFindings();

  bool Explains() const { return story_ != nullptr && inHand_.explained != nullptr; }
  bool WantsStory() const { return story_ != nullptr; }
  void Source(std::string_view source);
  void Step(std::string_view name, std::u16string_view text, std::u16string_view detail = {});
  void Done(std::u16string_view result, bool ok);

 private:
  TNameProblem::TFields Here(TNameProblem::TNameProblem_Kind kind) const;
  TNameExplanation::TToken* NewToken(std::u16string_view written, std::u16string_view key, std::size_t begin,
                                     std::size_t end);

  TNameReport& report_;
  std::vector<TNameExplanation::TToken>* story_;  // where the tokens of the template in hand go; null: nowhere
  std::vector<std::pair<std::vector<TNameExplanation::TToken>*, TInHand>> outer_;
  std::size_t kept_ = 0;   // steps and tokens of the explanation
  std::size_t begin_ = 0;  // of the outermost token
  std::size_t end_ = 0;
  std::vector<NQ_TString> within_;
  TInHand inHand_;
  TFindings findings_;
};

class TChecking : public TReporting {
 public:
  static constexpr bool kLogs = false;
  static constexpr bool kCalls = false;

  using TReporting::TReporting;
};

}  // namespace templatenames
