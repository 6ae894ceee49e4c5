// TName: what became of the tokens of a template.
#include <utility>

#include "TName.h"
#include "engine/Evaluator.h"

using templatenames::TChecking;
using templatenames::TEngine;
using templatenames::TEvaluator;
using templatenames::TReporting;
using templatenames::TRun;

namespace {

/// Makes the calls within it previews while it lives.
class TPreviewing {
 public:
  TPreviewing(TEngine& engine, bool preview) : budget_(engine.budget), before_(budget_.preview) {
    budget_.preview = before_ || preview;
  }
  TPreviewing(const TPreviewing&) = delete;
  TPreviewing& operator=(const TPreviewing&) = delete;
  ~TPreviewing() { budget_.preview = before_; }

 private:
  templatenames::TBudget& budget_;
  const bool before_;
};

using TStory = std::vector<TNameExplanation::TToken>;

bool ResolveReported(TEngine& engine, const NQ_TString& text, bool preview, NQ_TString& result, TNameReport& report,
                     TStory* story) {
  const NQ_TString source = text;  // result may be the same string
  report.Clear();
  const TRun run(engine);
  const TPreviewing previewing(engine, preview);
  TReporting observer(report, story);
  TEvaluator<TReporting> evaluator(engine, observer);
  result.Clear();
  evaluator.Append(source, result);
  return evaluator.Count() == 0;
}

}  // namespace

bool TName::Resolve(const NQ_TString& text, NQ_TString& result, TNameReport& report) {
  return ResolveReported(*engine_, text, false, result, report, nullptr);
}

bool TName::Check(const NQ_TString& text, TNameReport& report) const {
  report.Clear();
  const TRun run(*engine_);
  TChecking observer(report);
  TEvaluator<TChecking> evaluator(*engine_, observer);
  NQ_TString ignored;
  evaluator.Append(text, ignored);
  return evaluator.Count() == 0;
}

bool TName::Preview(const NQ_TString& text, NQ_TString& result, TNameReport& report) {
  return ResolveReported(*engine_, text, true, result, report, nullptr);
}

TNameExplanation TName::Explain(const NQ_TString& text, bool asPreview) {
  TNameExplanation::TFields fields;
  fields.ok = ResolveReported(*engine_, text, asPreview, fields.result, fields.report, &fields.tokens);
  return TNameExplanation(std::move(fields));
}
