#include "engine/Sentences.h"

#include <algorithm>
#include <exception>

#include "NQ_EException.h"
#include "NQ_ENoSuchUnit.h"
#include "NQ_ENoSuchUnitCategory.h"
#include "NQ_TBoxed.h"
#include "formatting/number/Units.h"
#include "regex/RegexReason.h"
#include "text/Log.h"
#include "text/PrintfRefusal.h"
#include "text/StageFindings.h"

namespace templatenames {
namespace {

using P = TNameProblem;

TProblem Problem(P::TNameProblem_Kind kind, NQ_TString reason, NQ_TString suggestion = {}) {
  return {kind, TLimit::None, std::move(reason), std::move(suggestion)};
}

const char* WordOf(P::TNameProblem_Kind kind) {
  switch (kind) {
    case P::TNameProblem_KindElem:
      return "elem";
    case P::TNameProblem_KindExtract:
      return "extract";
    case P::TNameProblem_KindRegex:
      return "regex";
    default:
      return "type";
  }
}

const char* KindOfValue(const NQ_TAny* value) {
  if (value == nullptr || value->As<NQ_TString>() != nullptr) return "a text";
  if (value->As<NQ_TInt32>() != nullptr) return "a number";
  if (value->As<NQ_TTime>() != nullptr) return "a time";
  if (value->As<NQ_TURL>() != nullptr) return "a URL";
  return value->IsNull() || value->IsIllegal() ? "nothing" : value->ClassName();
}

const char* KindWritten(TRecipe::TWriting writing) {
  switch (writing) {
    case TRecipe::TWriting::Integer:
      return "a number";
    case TRecipe::TWriting::Time:
      return "a time";
    default:
      return "a text";
  }
}

// What a stage that cannot be used leaves behind.
struct TStageErrorRow {
  TStageError error;
  TName::TName_Error code;
  P::TNameProblem_Kind kind;
};

constexpr TStageErrorRow kStageErrors[] = {
    {TStageError::ElemSyntax, TName::TName_ErrorElemSyntax, P::TNameProblem_KindElem},
    {TStageError::ElemIndex, TName::TName_ErrorElemIndex, P::TNameProblem_KindElem},
    {TStageError::ExtractIndex, TName::TName_ErrorExtractIndex, P::TNameProblem_KindExtract},
    {TStageError::ExtractSyntax, TName::TName_ErrorExtractSyntax, P::TNameProblem_KindExtract},
};

const TStageErrorRow& RowOf(TStageError error) {
  return *std::ranges::find(kStageErrors, error, &TStageErrorRow::error);  // None is no error
}

}  // namespace

NQ_TString Named(std::u16string_view key) {
  NQ_TString quoted = Quoted(key);
  const std::u16string_view inner = quoted.StringView();
  return Sentence(u"'", inner.substr(1, inner.size() - 2), u"'");
}

TProblem LimitProblem(TLimit limit, const TNameLimits& limits) {
  return {P::TNameProblem_KindLimit, limit, SentenceOf(limit, limits), {}};
}

TProblem CycleProblem(std::u16string_view key) {
  return {P::TNameProblem_KindCycle,
          TLimit::NestedDepth,
          NQ_TString("the value of ") + Named(key) + " leads back to itself; take the name out of its own value",
          {}};
}

TProblem UndefinedProblem(TEngine& engine, std::u16string_view key) {
  const NQ_TString nearest = engine.suggestions.NearestName(NQ_TString(key), engine.store);
  NQ_TString reason = NQ_TString("there is no name ") + Named(key);
  if (!nearest.Empty()) reason = reason + "; did you mean " + Named(nearest.StringView()) + "?";
  return Problem(P::TNameProblem_KindUndefined, std::move(reason), nearest);
}

TProblem OverlapProblem() {
  return Problem(P::TNameProblem_KindUndefined,
                 "the begin and the end marker overlap, so that no name stands between them; use two different ones");
}

TProblem NoLookupProblem(std::u16string_view key) {
  return Problem(P::TNameProblem_KindLookup, NQ_TString("nothing says where to look up ") + Named(key));
}

TProblem NoValueProblem(std::u16string_view key) {
  return Problem(P::TNameProblem_KindNoValue, NQ_TString("there is no value for ") + Named(key));
}

TProblem SqlProblem(std::u16string_view key) {
  return Problem(P::TNameProblem_KindLookup,
                 NQ_TString("the value of ") + Named(key) + " is an SQL query, which is not carried out");
}

TProblem HandlerProblem(P::TNameProblem_Kind kind, std::u16string_view key) {
  return Problem(kind, NQ_TString("the program's own ") + WordOf(kind) + " handler refused the value of " + Named(key));
}

TProblem ServiceProblem(std::u16string_view key, const NQ_TString& said) {
  return Problem(P::TNameProblem_KindService, NQ_TString("no value came for ") + Named(key) + ": " + said);
}

TProblem NoTypeProblem(std::u16string_view key) {
  return Problem(P::TNameProblem_KindType, NQ_TString("nothing says how to write ") + Named(key));
}

TProblem TypeProblem(std::u16string_view key, const NQ_TAny* value, TRecipe::TWriting writing) {
  return Problem(P::TNameProblem_KindType, NQ_TString("the value of ") + Named(key) + " is " + KindOfValue(value) +
                                               ", and it is written as " + KindWritten(writing));
}

TProblem CounterProblem(std::u16string_view key) {
  return Problem(P::TNameProblem_KindCounter,
                 NQ_TString("2147483647 is the last number; it was reached by ") + Named(key));
}

TProblem FormatProblem(std::u16string_view format, TPrintfFormat::TKind kind) {
  TPrintfFormat::TRefusal refusal;
  TPrintfFormat::Parse(format, kind, &refusal);
  return Problem(P::TNameProblem_KindFormat, RefusalReason(format, kind, refusal),
                 RefusalSuggestion(format, kind, refusal));
}

TProblem TimeFormatProblem(std::u16string_view format) {
  return Problem(P::TNameProblem_KindFormat,
                 NQ_TString("format ") + Quoted(format) + ": the text is over 65536 bytes, or the year out of range");
}

TName::TName_Error ErrorCodeOf(TStageError error) { return RowOf(error).code; }

TProblem StageProblem(TStageError error, std::u16string_view specification) {
  return Problem(RowOf(error).kind, StageErrorReason(error, specification),
                 StageErrorSuggestion(error, specification));
}

TProblem SpecificationProblem(P::TNameProblem_Kind kind, std::u16string_view key) {
  return Problem(kind, NQ_TString("what ") + Named(key) + " has for " + WordOf(kind) + " is no text");
}

TProblem RegexProblem(const TRegexResult& result, const NQ_TString& pattern) {
  TProblem problem =
      Problem(P::TNameProblem_KindRegex, RegexReason(result, pattern), RegexSuggestion(result, pattern));
  const std::string_view limit = ExceededLimit(result);
  for (const TLimit known : {TLimit::RegexMatch, TLimit::RegexRecursion})
    if (NameOf(known) == limit) problem.limit = known;
  return problem;
}

NQ_TString NoMatchSentence(const NQ_TString& input, const NQ_TString& pattern) {
  return NQ_TString("regex ") + Quoted(pattern.StringView()) + " does not match " + Quoted(input.StringView()) +
         ", so nothing is left of it";
}

NQ_TString NoConversionSentence(std::u16string_view format) {
  return NQ_TString("format ") + Quoted(format) + " does not write the value; %s writes a text, %d a number";
}

NQ_TString UnusedFormatSentence(std::u16string_view format) {
  return NQ_TString("format ") + Quoted(format) + " is not used: a URL is written as it is";
}

TProblem OptionsProblem(const NQ_EException& error, const NQ_TDict& options) {
  const NQ_TString& message = error.NQ_Message();
  if (dynamic_cast<const NQ_ENoSuchUnitCategory*>(&error) != nullptr)
    return Problem(P::TNameProblem_KindUnit, UnknownCategoryReason(message), NearestCategory(message));
  if (dynamic_cast<const NQ_ENoSuchUnit*>(&error) != nullptr) {
    const auto* const category = options.Get<NQ_TString>("ConvertUnitCategory");
    const NQ_TString& known = category == nullptr ? NQ_TString::sEmpty : *category;
    return Problem(P::TNameProblem_KindUnit, UnknownUnitReason(known, message), NearestUnit(known, message));
  }
  return Problem(P::TNameProblem_KindOptions, NQ_TString("the formatting options cannot be used: ") + message);
}

TProblem ExceptionProblem(std::u16string_view key) {
  NQ_TString what("an unknown exception");
  try {
    throw;
  } catch (const NQ_EException& error) {
    what = NQ_TString(error.ClassName()) + ": " + error.NQ_Message();
  } catch (const std::exception& error) {
    what = NQ_TString(error.what());
  } catch (...) {
  }
  return Problem(P::TNameProblem_KindException, NQ_TString("a handler of ") + Named(key) + " threw " + what);
}

void LogUnmatched(const TRegexResult& result, const NQ_TString& pattern, const NQ_TString& input) {
  switch (result.kind) {
    case TRegexResult::TKind::CompileError:
      return Log(0, "TName:Compilation of regex '", pattern, "' failed at offset ", result.errorOffset, ": ",
                 result.errorText);
    case TRegexResult::TKind::NoMatch:
      return Log(0, "TName:'", input, "' does not match regex '", pattern, '\'');
    case TRegexResult::TKind::MatchError:
      return Log(0, "TName:'", input, "' does not match regex '", pattern, "':match error ", result.code);
    case TRegexResult::TKind::NoGroup:
      return Log(0, "TName:'", input, "' matches regex '", pattern, "', but the number of capturing groups is 0");
    case TRegexResult::TKind::TimeSpent:
    case TRegexResult::TKind::Matched:
      return;
  }
}

}  // namespace templatenames
