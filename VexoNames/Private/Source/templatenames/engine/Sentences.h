// What a template author is told of a token that failed: one sentence for each way to fail.
//
// Each names what was found and what would do, with the nearest right text where there is one.
#pragma once

#include <string_view>

#include "engine/Engine.h"
#include "engine/Observer.h"
#include "engine/Token.h"
#include "text/Sentence.h"
#include "text/Stages.h"

namespace templatenames {

/// The name in single quotes; a long one is cut short.
NQ_TString Named(std::u16string_view key);

TProblem LimitProblem(TLimit limit, const TNameLimits& limits);
TProblem CycleProblem(std::u16string_view key);
TProblem UndefinedProblem(TEngine& engine, std::u16string_view key);
TProblem OverlapProblem();
TProblem NoLookupProblem(std::u16string_view key);
TProblem NoValueProblem(std::u16string_view key);
TProblem SqlProblem(std::u16string_view key);
TProblem HandlerProblem(TNameProblem::TNameProblem_Kind kind, std::u16string_view key);
/// `said` is what the service's failure had to say.
TProblem ServiceProblem(std::u16string_view key, const NQ_TString& said);
TProblem NoTypeProblem(std::u16string_view key);
TProblem TypeProblem(std::u16string_view key, const NQ_TAny* value, TRecipe::TWriting writing);
TProblem CounterProblem(std::u16string_view key);
TProblem FormatProblem(std::u16string_view format, TPrintfFormat::TKind kind);
TProblem TimeFormatProblem(std::u16string_view format);
TName::TName_Error ErrorCodeOf(TStageError error);
TProblem StageProblem(TStageError error, std::u16string_view specification);
TProblem SpecificationProblem(TNameProblem::TNameProblem_Kind kind, std::u16string_view key);
TProblem RegexProblem(const TRegexResult& result, const NQ_TString& pattern);
/// For an exception that leaves the formatting options.
TProblem OptionsProblem(const NQ_EException& error, const NQ_TDict& options);
NQ_TString NoMatchSentence(const NQ_TString& input, const NQ_TString& pattern);
NQ_TString NoConversionSentence(std::u16string_view format);
NQ_TString UnusedFormatSentence(std::u16string_view format);
/// For the exception in hand that a handler has thrown.
TProblem ExceptionProblem(std::u16string_view key);

/// What the log says of a search that found nothing, at every level.
void LogUnmatched(const TRegexResult& result, const NQ_TString& pattern, const NQ_TString& input);

}  // namespace templatenames
