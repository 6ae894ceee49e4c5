// The evaluator, third chapter: the stages that cut a text down. For Evaluator.cpp only.
//
// A stage does what the token's attribute says, else what the name's own does; without either it changes nothing.
#pragma once

#include "engine/AttributeKeys.h"
#include "engine/BudgetClock.h"
#include "engine/BuiltIns.h"
#include "engine/EvaluatorSteps.h"
#include "regex/Regex.h"
#include "text/StageFindings.h"

namespace templatenames {

// A stage that is null ends the chain. Which ones there are is asked for anew each time: handlers may change that, and
// what the name does.
template <class TObserver>
inline bool TEvaluator<TObserver>::Cut(TToken& token, TEntry& entry, TTextInHand& text) {
  const THooks& hooks = engine_.hooks;
  if (hooks.areOwn && !Logs(2) && !entry.Recipe().stages && !token.parts.HasStages()) return true;
  const std::u16string_view key = token.parts.key;
  if (hooks.elem == nullptr) return true;
  const TStage elem{key, token.parts.elem, entry.Slots().elem, TNameProblem::TNameProblem_KindElem};
  if (hooks.elem == &TNameElemHandler ? !CutElem(elem, text) : !CutByHandler(hooks.elem, elem, entry, text))
    return false;
  if (hooks.extract == nullptr) return true;
  const TStage extract{key, token.parts.extract, entry.Slots().extract, TNameProblem::TNameProblem_KindExtract};
  if (hooks.extract == &TNameExtractHandler ? !CutExtract(extract, text)
                                            : !CutByHandler(hooks.extract, extract, entry, text))
    return false;
  if (hooks.regex == nullptr) return true;
  const TStage regex{key, token.parts.regex, entry.Slots().regex, TNameProblem::TNameProblem_KindRegex};
  return hooks.regex == &TNameRegexHandler ? CutRegex(regex, &token, text)
                                           : CutByHandler(hooks.regex, regex, entry, text);
}

template <class TObserver>
bool TEvaluator<TObserver>::CutByHandler(TName::TStageFunction function, const TStage& stage, TEntry& entry,
                                         TTextInHand& text) {
  if constexpr (!TObserver::kCalls) return text.SetUnknown(), true;
  const NQ_TString input(text.View());
  NQ_TString result = input;
  const bool ok = ForeignWith(entry, [&] {
    return function(NQ_TString(stage.key), input, NQ_TString(stage.attribute), &entry, &engine_.names, result);
  });
  if (!ok) return Fail(stage.key, {}, [&] { return HandlerProblem(stage.problem, stage.key); });
  text.Replace(result.StringView());
  return true;
}

// What the stage is to do; without a text there is nothing. False when the name's own is no text.
template <class TObserver>
bool TEvaluator<TObserver>::ReadSpecification(const TStage& stage, std::u16string_view& specification) {
  specification = stage.attribute;
  if (!stage.attribute.empty() || stage.own == nullptr) return true;
  const NQ_TString* const own = TextIn(stage.own);
  if (own == nullptr) return Fail(stage.key, {}, [&] { return SpecificationProblem(stage.problem, stage.key); });
  specification = own->StringView();
  return true;
}

// ---- elem and extract

template <class TObserver>
bool TEvaluator<TObserver>::CutElem(const TStage& stage, TTextInHand& text) {
  constexpr TStageLines kLines{"TNameElemHandler", "elem"};
  LogStage(kLines, stage);
  std::u16string_view specification;
  if (!ReadSpecification(stage, specification)) return false;
  if (!stage.Asks()) return true;
  LogSpecification(kLines, specification);
  const TElemSpec spec = ParseElem(specification);
  if (spec.error != TStageError::None) return FailStage(stage, spec.error, specification);
  const TElement element = Element(text.View(), spec.separator, spec.index.value);
  Reported([&](auto& observer) {
    if (!text.IsUnknown()) AddElemFindings(specification, spec, text.View(), element, observer.Findings());
  });
  text.Cut(element.text);
  LogCut(kLines, stage, text);
  Reported([&](auto& observer) { observer.Step("elem", text.View(), specification); });
  return true;
}

template <class TObserver>
bool TEvaluator<TObserver>::CutExtract(const TStage& stage, TTextInHand& text) {
  constexpr TStageLines kLines{"TNameExtractHandler", "extract"};
  LogStage(kLines, stage);
  std::u16string_view specification;
  if (!ReadSpecification(stage, specification)) return false;
  if (!stage.Asks()) return true;
  LogSpecification(kLines, specification);
  const TExtractSpec spec = ParseExtract(specification);
  if (spec.error != TStageError::None) return FailStage(stage, spec.error, specification);
  const TExtract extract = Extract(text.View(), spec.start.value, spec.length.value);
  Reported([&](auto& observer) {
    if (!text.IsUnknown()) AddExtractFindings(specification, spec, text.View(), extract, observer.Findings());
  });
  text.Cut(extract.text);
  LogCut(kLines, stage, text);
  Reported([&](auto& observer) { observer.Step("extract", text.View(), specification); });
  return true;
}

template <class TObserver>
bool TEvaluator<TObserver>::FailStage(const TStage& stage, TStageError error, std::u16string_view specification) {
  if constexpr (TObserver::kCalls) engine_.SetError(ErrorCodeOf(error));
  return Fail(stage.key, {}, [&] { return StageProblem(error, specification); });
}

// ---- regular expressions

template <class TObserver>
bool TEvaluator<TObserver>::CutRegex(const TStage& stage, TToken* token, TTextInHand& text) {
  constexpr TStageLines kLines{"TNameRegexHandler", "RegEx"};
  LogStage(kLines, stage);
  std::u16string_view pattern;
  if (!ReadSpecification(stage, pattern)) return false;
  if (!stage.Asks()) return true;
  LogSpecification(kLines, pattern);
  if (budget_.RegexSpent()) return FailLimit(TLimit::RegexMilliseconds, stage.key);
  budget_.BeginRegex();
  const bool isTokens = token != nullptr && !stage.attribute.empty();
  const TRegex& regex = isTokens ? token->Regex() : KeptRegex(NQ_TString(pattern));
  TBudgetClock clock(budget_);
  const TRegexLimits limits{engine_.limits.regexMatch, engine_.limits.regexRecursion, &clock};
  const unsigned int end = text.Out().Length();
  const TRegexResult result = regex.AppendFirstGroup(text.View(), limits, text.Out());
  if (result.kind == TRegexResult::TKind::Matched) {
    text.KeepAppended(end);
    LogCut(kLines, stage, text);
  } else if (!TakeUnmatched(stage, result, NQ_TString(pattern), text)) {
    return false;
  }
  Reported([&](auto& observer) { observer.Step("regex", text.View(), pattern); });
  return true;
}

// No match leaves nothing of the text; everything else fails the token. The log tells it at every level, and its line
// counts: it repeats the pattern.
template <class TObserver>
bool TEvaluator<TObserver>::TakeUnmatched(const TStage& stage, const TRegexResult& result, const NQ_TString& pattern,
                                          TTextInHand& text) {
  if (result.kind == TRegexResult::TKind::TimeSpent) return FailLimit(TLimit::RegexMilliseconds, stage.key);
  budget_.characters -= pattern.Length();
  const NQ_TString input(text.View());
  if constexpr (TObserver::kCalls) LogUnmatched(result, pattern, input);
  const bool fails = result.kind != TRegexResult::TKind::NoMatch;
  if (fails && (!text.IsUnknown() || result.kind != TRegexResult::TKind::MatchError))
    return Fail(stage.key, {}, [&] { return RegexProblem(result, pattern); });
  Reported([&](auto& observer) {
    if (!text.IsUnknown())
      observer.Findings().Add(TNameProblem::TNameProblem_KindNoMatch, NoMatchSentence(input, pattern));
  });
  text.Replace({});
  return true;
}

// ---- what the log says of a stage

template <class TObserver>
void TEvaluator<TObserver>::LogStage(const TStageLines& lines, const TStage& stage) const {
  if (Logs(2)) Log(2, "TName::", lines.handler, ": Key = \"", NQ_TString(stage.key), '"');
}

template <class TObserver>
void TEvaluator<TObserver>::LogSpecification(const TStageLines& lines, std::u16string_view specification) const {
  if (Logs(2)) Log(2, "TName::", lines.handler, ": ", lines.word, " string = \"", NQ_TString(specification), '"');
}

template <class TObserver>
void TEvaluator<TObserver>::LogCut(const TStageLines& lines, const TStage& stage, const TTextInHand& text) const {
  if (!Logs(2)) return;
  Log(2, "TName::", lines.handler, ": Key = \"", NQ_TString(stage.key), "\", value = \"", NQ_TString(text.View()), '"');
}

}  // namespace templatenames
