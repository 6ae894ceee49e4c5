// Near misses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "NQ_TString.h"

/// The candidate that the text was most likely meant to be: the one with the fewest typing errors (a character too
/// many, too few, another one, two exchanged), letter case not counted; null when all are too far away. Of equally near
/// ones the first.
const NQ_TString* ClosestTo(const NQ_TString& text, const std::vector<NQ_TString>& candidates);

/// "; did you mean 'x'?", or nothing.
std::string Suggestion(const NQ_TString& text, const std::vector<NQ_TString>& candidates);
