#include "Diagnosis.h"

#include <algorithm>

#include "Cause.h"
#include "Suggest.h"
#include "Text.h"

namespace {

constexpr std::size_t kMostFailures = 100;
// What trying tokens may cost: of one token, and of a template in all.
constexpr std::int64_t kMostTokensEach = 10'000;
constexpr std::int64_t kMostTokens = 1'000'000;

NQ_TString Piece(const NQ_TString& text, std::size_t begin, std::size_t end) {
  return NQ_TString(text.StringView().substr(begin, end - begin));
}

}  // namespace

TCounters::TCounters(TName& names) : names_(names) {
  const NQ_TList all = names.GetTNames();
  for (unsigned int i = 0; i < all.Count(); ++i) {
    const auto* const key = all.At(i)->As<NQ_TString>();
    if (names.GetType(*key) == TName::TName_TypeAutoNumber) keys_.push_back(*key);
  }
}

TCounters::TValues TCounters::Save() const {
  TValues values;
  values.reserve(keys_.size());
  for (const NQ_TString& key : keys_) values.push_back(names_.GetValue(key));
  return values;
}

void TCounters::Restore(const TValues& values) {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    if (!values[i].IsIllegal()) names_.SetValue(keys_[i], values[i].AsInt32());
  }
}

/// Prepares a registry for trying tokens, and counts them: quiet, with less to spend, as it was when destroyed.
class TDiagnosis::TTrial final : public TNameWarnLookupHandler {
 public:
  TTrial(TName& names, TEngineLog& log, TServiceCalls& calls)
      : names_(names),
        log_(log),
        calls_(calls),
        said_(calls.Say(false)),
        level_(names.SetDebugLevel(0)),
        forwarding_(log.SetForwarding(false)) {
    TNameLimits less = limits_;
    less.tokens = kMostTokensEach;
    names.SetLimits(less);
    names.SetWarnLookupHandler(this);
    log.Take();
  }
  TTrial(const TTrial&) = delete;
  TTrial& operator=(const TTrial&) = delete;
  ~TTrial() override {
    names_.SetWarnLookupHandler(before_);
    names_.SetLimits(limits_);
    names_.SetDebugLevel(level_);
    log_.Take();
    log_.SetForwarding(forwarding_);
    calls_.Say(said_);
  }

  /// The first name that a try asks for is the token's own.
  void WarnLookup(const NQ_TString& key, TName* names) override {
    if (before_ != nullptr) before_->WarnLookup(key, names);
    if (triedSoFar_++ == 0) key_ = key;
    ++tried_;
  }

  bool Try(const NQ_TString& tokenText, NQ_TString& key) {
    NQ_TString ignored;
    triedSoFar_ = 0;
    const bool ok = names_.ResolveTokenEx(tokenText, ignored);
    key = key_;
    return ok;
  }

  TCause CauseOf(const NQ_TString& tokenText, const NQ_TString& key, TServiceCalls& calls) {
    NQ_TString ignored;
    names_.SetError(TName::TName_ErrorNone);
    log_.Take();
    calls.TakeFailure();
    names_.SetDebugLevel(2);
    names_.ResolveTokenEx(tokenText, ignored);
    names_.SetDebugLevel(0);
    const std::string said = log_.Take();
    return ::CauseOf(key, LastMessage(said), names_.GetError(), calls.TakeFailure());
  }

  bool Spent() const { return tried_ >= kMostTokens; }
  const TNameLimits& Limits() const { return limits_; }

 private:
  TName& names_;
  TEngineLog& log_;
  TServiceCalls& calls_;
  bool said_;
  int level_;
  bool forwarding_;
  TNameWarnLookupHandler* const before_ = names_.GetWarnLookupHandler();
  TNameLimits limits_ = names_.GetLimits();
  NQ_TString key_;
  std::int64_t triedSoFar_ = 0;
  std::int64_t tried_ = 0;
};

TDiagnosis::TDiagnosis(TName& names, TEngineLog& log, TServiceCalls& calls)
    : names_(names), log_(log), calls_(calls), counters_(names) {
  const NQ_TList all = names.GetTNames();
  for (unsigned int i = 0; i < all.Count(); ++i) defined_.push_back(*all.At(i)->As<NQ_TString>());
}

TFailures TDiagnosis::Explain(const NQ_TString& text) {
  TTrial trial(names_, log_, calls_);
  trial_ = &trial;
  found_ = {};
  lookedInto_.clear();
  const TCounters::TValues before = counters_.Save();
  Walk(text);
  counters_.Restore(before);
  trial_ = nullptr;
  if (found_.list.empty()) {
    const TNameLimits& limits = trial.Limits();
    Report({}, "limit",
           "the template needs more than " + std::to_string(limits.tokens) + " tokens, " +
               std::to_string(limits.characters) + " characters, " + std::to_string(limits.queries) +
               " requests to services or " + std::to_string(limits.queryMilliseconds / 1000) +
               " s for them, or values nested " + std::to_string(limits.nestedDepth) + " deep");
  }
  return std::move(found_);
}

void TDiagnosis::Walk(const NQ_TString& text) {
  for (const TTokenPlace& place : ScanTemplate(text.StringView()).tokens) {
    if (found_.list.size() == kMostFailures || trial_->Spent()) {
      found_.more = true;
      return;
    }
    if (place.textBegin == place.textEnd) continue;  // the empty token is empty text
    Examine(Piece(text, place.begin, place.end), Piece(text, place.textBegin, place.textEnd));
  }
}

void TDiagnosis::Examine(const NQ_TString& token, const NQ_TString& tokenText) {
  const auto deepest = static_cast<std::size_t>(trial_->Limits().nestedDepth);
  if (within_.size() > deepest)
    return Report(token, "limit", "values are nested more than " + std::to_string(deepest) + " deep");
  const TCounters::TValues before = counters_.Save();
  NQ_TString key;
  const bool ok = trial_->Try(tokenText, key);
  const TCounters::TValues after = counters_.Save();
  if (std::ranges::find(within_, key) != within_.end())
    return Report(token, "cycle", "the value of '" + Printable(key.Narrow()) + "' leads back to itself");
  counters_.Restore(before);
  if (!ok) ReportCause(token, tokenText, key);
  counters_.Restore(before);
  LookInto(key);
  counters_.Restore(after);
}

// The failures of tokens that stand in the value of a name, once per name.
void TDiagnosis::LookInto(const NQ_TString& key) {
  if (!names_.IsDefined(key) || !lookedInto_.insert(key).second) return;
  const NQ_TAny value = names_.GetValue(key);
  const auto* const text = value.As<NQ_TString>();
  if (text == nullptr) return;
  within_.push_back(key);
  Walk(*text);
  within_.pop_back();
}

void TDiagnosis::Report(const NQ_TString& token, std::string kind, std::string reason) {
  found_.list.push_back({token, std::move(kind), std::move(reason), within_});
}

void TDiagnosis::ReportCause(const NQ_TString& token, const NQ_TString& tokenText, const NQ_TString& key) {
  if (!names_.IsDefined(key)) {
    const std::string name = Printable(Shortened(key.Narrow()));
    return Report(token, "undefined", "there is no name '" + name + '\'' + SuggestionFor(key));
  }
  TCause cause = trial_->CauseOf(tokenText, key, calls_);
  Report(token, std::move(cause.kind), std::move(cause.reason));
}

// Looked for once per name: a batch of templates repeats its mistakes.
const std::string& TDiagnosis::SuggestionFor(const NQ_TString& key) {
  constexpr std::size_t kMostKept = 10'000;
  if (suggestions_.size() >= kMostKept) suggestions_.clear();
  const auto [place, isNew] = suggestions_.try_emplace(key);
  if (isNew) place->second = Suggestion(key, defined_);
  return place->second;
}
