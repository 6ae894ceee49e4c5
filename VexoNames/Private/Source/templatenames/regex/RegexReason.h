// What a template author is told about a search that gave no group.
//
//   RegexReason(result, "[0-9]+")   the regular expression "[0-9]+" matches, but nothing in it says which part to take:
//                                   put round brackets around the part that is wanted
//   RegexSuggestion(result, "[0-9]+")   ([0-9]+)
//
// Pure functions.
#pragma once

#include "NQ_TString.h"
#include "regex/Regex.h"

namespace templatenames {

/// One sentence, what was found and what would do; empty for Matched. Long patterns are shortened in it.
NQ_TString RegexReason(const TRegexResult& result, const NQ_TString& pattern);

/// The pattern to write in place of that one: with brackets around all of it when it has none. Empty when there is no
/// such pattern.
NQ_TString RegexSuggestion(const TRegexResult& result, const NQ_TString& pattern);

}  // namespace templatenames
