// Why a template did not resolve.
//
// The engine tells that tokens failed, not which and why. A diagnosis tries the template's tokens one by one, follows
// them into the values of names, and asks the registry and the engine's log about each that fails.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "EngineLog.h"
#include "ServiceCalls.h"
#include "TName.h"
#include "Tokens.h"

/// One token that failed.
struct TFailure {
  NQ_TString token;                // as written, with its markers; empty when it is not known which one
  std::string kind;                // a word for programs
  std::string reason;              // for people
  std::vector<NQ_TString> within;  // the names through whose values the token is reached, the outermost first
};

struct TFailures {
  std::vector<TFailure> list;  // in the order in which the tokens stand
  bool more = false;           // there may be more than were looked for
};

/// The values of all counters of a registry: trying a token counts up what it names.
class TCounters {
 public:
  using TValues = std::vector<NQ_TAny>;

  explicit TCounters(TName& names);
  TValues Save() const;
  void Restore(const TValues& values);

 private:
  TName& names_;
  std::vector<NQ_TString> keys_;
};

class TDiagnosis {
 public:
  /// The names defined now are those that suggestions are made of.
  TDiagnosis(TName& names, TEngineLog& log, TServiceCalls& calls);

  /// What fails in a template. The counters must stand where they stood before it was resolved; they are left there.
  TFailures Explain(const NQ_TString& text);

 private:
  class TTrial;

  void Walk(const NQ_TString& text);
  void Examine(const NQ_TString& token, const NQ_TString& tokenText);
  void LookInto(const NQ_TString& key);
  void Report(const NQ_TString& token, std::string kind, std::string reason);
  void ReportCause(const NQ_TString& token, const NQ_TString& tokenText, const NQ_TString& key);
  const std::string& SuggestionFor(const NQ_TString& key);

  TName& names_;
  TEngineLog& log_;
  TServiceCalls& calls_;
  TCounters counters_;
  std::vector<NQ_TString> defined_;
  std::map<NQ_TString, std::string> suggestions_;

  // of the template in hand
  TTrial* trial_ = nullptr;
  TFailures found_;
  std::vector<NQ_TString> within_;
  std::set<NQ_TString> lookedInto_;
};
