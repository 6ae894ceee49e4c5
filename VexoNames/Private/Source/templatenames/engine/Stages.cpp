// TName: the library's own stages, which cut the text of a value down: one element of a list, a piece by position, the
// first group of a regular expression.
#include "text/Stages.h"

#include <chrono>
#include <ctime>

#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/Attributes.h"
#include "engine/BudgetClock.h"
#include "engine/Entry.h"
#include "regex/Regex.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TRegexLimits;
using templatenames::TRegexOutcome;
using templatenames::TStageError;

namespace {

/// What a stage is to do: the token's attribute, else the name's own; null when there is neither. False when the name's
/// own is no text.
bool ReadSpecification(const NQ_TString& attribute, const NQ_TDict& entry, const NQ_TString& definitionKey,
                       const NQ_TString*& specification) {
  const NQ_TAny* const own = attribute.Empty() ? entry.ValueOfKey(definitionKey) : nullptr;
  specification = own == nullptr ? (attribute.Empty() ? nullptr : &attribute) : templatenames::TextIn(own);
  return own == nullptr || specification != nullptr;
}

TName::TName_Error ErrorCode(TStageError error) {
  switch (error) {
    case TStageError::None:
      break;
    case TStageError::ElemSyntax:
      return TName::TName_ErrorElemSyntax;
    case TStageError::ElemIndex:
      return TName::TName_ErrorElemIndex;
    case TStageError::ExtractIndex:
      return TName::TName_ErrorExtractIndex;
    case TStageError::ExtractSyntax:
      return TName::TName_ErrorExtractSyntax;
  }
  return TName::TName_ErrorNone;
}

constexpr const char* kNoTimeLeft = " More time for regular expressions than the limit allows";

}  // namespace

void TName::TBudget::LookAtClock() {
  using std::chrono::milliseconds;
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &time);  // to a few milliseconds, at an eighth of the price
  const auto since = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  const std::int64_t now = std::chrono::duration_cast<milliseconds>(since).count();
  if (regexLook != 0) regexMilliseconds -= now - regexLook;
  regexLook = now;
  regexSearches = kSearchesPerLook;
}

bool TName::TNameElemHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute,
                             NQ_TDict* entry, TName* names, NQ_TString& result) {
  const bool logs = names->Logs(2);
  if (logs) Log(2, "TName::TNameElemHandler: Key = \"", key, '"');
  const NQ_TString* specification = nullptr;
  if (!ReadSpecification(attribute, *entry, Keys().elem, specification)) return false;
  if (specification == nullptr) return result = input, true;
  if (logs) Log(2, "TName::TNameElemHandler: elem string = \"", *specification, '"');
  std::u16string_view separator;
  int index = 0;
  const TStageError error = templatenames::ParseElem(specification->StringView(), separator, index);
  if (error != TStageError::None) return names->SetError(ErrorCode(error)), false;
  result = NQ_TString(templatenames::Element(input.StringView(), separator, index));
  if (logs) Log(2, "TName::TNameElemHandler: Key = \"", key, "\", value = \"", result, '"');
  return true;
}

bool TName::TNameExtractHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute,
                                NQ_TDict* entry, TName* names, NQ_TString& result) {
  const bool logs = names->Logs(2);
  if (logs) Log(2, "TName::TNameExtractHandler: Key = \"", key, '"');
  const NQ_TString* specification = nullptr;
  if (!ReadSpecification(attribute, *entry, Keys().extract, specification)) return false;
  if (specification == nullptr) return result = input, true;
  if (logs) Log(2, "TName::TNameExtractHandler: extract string = \"", *specification, '"');
  int start = 0;
  int length = 0;
  const TStageError error = templatenames::ParseExtract(specification->StringView(), start, length);
  if (error != TStageError::None) return names->SetError(ErrorCode(error)), false;
  result = NQ_TString(templatenames::Extract(input.StringView(), start, length));
  if (logs) Log(2, "TName::TNameExtractHandler: Key = \"", key, "\", value = \"", result, '"');
  return true;
}

bool TName::TNameRegexHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute,
                              NQ_TDict* entry, TName* names, NQ_TString& result) {
  const bool logs = names->Logs(2);
  if (logs) Log(2, "TName::TNameRegexHandler: Key = \"", key, '"');
  const NQ_TString* specification = nullptr;
  if (!ReadSpecification(attribute, *entry, Keys().regex, specification)) return false;
  if (specification == nullptr) return result = input, true;
  const NQ_TString pattern = *specification;
  if (logs) Log(2, "TName::TNameRegexHandler: RegEx string = \"", pattern, '"');
  if (names->budget_.RegexSpent()) {
    names->LogToken(key, kNoTimeLeft);
    return false;
  }
  names->budget_.LookAtClock();
  templatenames::TBudgetClock clock(names->budget_);
  const TRegexLimits limits{names->limits_.regexMatch, names->limits_.regexRecursion, &clock};
  TRegexOutcome outcome = templatenames::FirstGroup(pattern, input, limits);
  if (outcome.kind != TRegexOutcome::TKind::Matched) names->budget_.characters -= pattern.Length();  // of the message
  switch (outcome.kind) {
    case TRegexOutcome::TKind::CompileError:
      Log(0, "TName:Compilation of regex '", pattern, "' failed at offset ", outcome.errorOffset, ": ",
          outcome.errorText);
      result = input;
      return false;
    case TRegexOutcome::TKind::NoMatch:
      Log(0, "TName:'", input, "' does not match regex '", pattern, '\'');
      result = NQ_TString();
      return true;
    case TRegexOutcome::TKind::MatchError:
      Log(0, "TName:'", input, "' does not match regex '", pattern, "':match error ", outcome.code);
      result = input;
      return false;
    case TRegexOutcome::TKind::TimeSpent:
      names->LogToken(key, kNoTimeLeft);
      result = input;
      return false;
    case TRegexOutcome::TKind::NoGroup:
      Log(0, "TName:'", input, "' matches regex '", pattern, "', but the number of capturing groups is 0");
      result = input;
      return false;
    case TRegexOutcome::TKind::Matched:
      result = std::move(outcome.group);
      if (logs) Log(2, "TName::TNameRegexHandler: Key = \"", key, "\", value = \"", result, '"');
      return true;
  }
  return false;
}
