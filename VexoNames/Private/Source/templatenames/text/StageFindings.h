// Sentences about the stages that cut a value: why a specification cannot be used, and what it left otherwise than was
// probably meant.
//
//   const TElemSpec spec = ParseElem(text);                       // "_,2"
//   if (spec.error != TStageError::None) Fail(StageErrorReason(spec.error, text));
//   const TElement element = Element(value, spec.separator, spec.index.value);
//   if (findings != nullptr) AddElemFindings(text, spec, value, element, *findings);
//
// Any thread may call.
#pragma once

#include <string_view>

#include "NQ_TString.h"
#include "text/Finding.h"
#include "text/Stages.h"

namespace templatenames {

/// Why what the stage was told to do cannot be done, for an error other than None.
NQ_TString StageErrorReason(TStageError error, std::u16string_view spec);
/// The specification that was probably meant; empty where that is not obvious.
NQ_TString StageErrorSuggestion(TStageError error, std::u16string_view spec);

/// Notes about a specification without error: an index that is no number, and an element that leaves nothing of a
/// value. `spec` is the text that `parsed` was read from.
void AddElemFindings(std::u16string_view spec, const TElemSpec& parsed, std::u16string_view input,
                     const TElement& element, TFindings& findings);
/// The same for the extract stage.
void AddExtractFindings(std::u16string_view spec, const TExtractSpec& parsed, std::u16string_view input,
                        const TExtract& extract, TFindings& findings);

}  // namespace templatenames
