// Replacing by a list of pairs.
#pragma once

#include <cstddef>

#include "NQ_TArray.h"
#include "NQ_TString.h"

namespace templatenames {

/// Replaces in the value by each pair of the list in turn: an NQ_TDict with a text "Find" and a text "Replace". Each
/// pair replaces every occurrence in what the one before has made; an empty "Find" replaces nothing.
///
/// False when a pair would make the value longer than `most`, and longer than it is: the value is what some of the
/// pairs before that one have made. An element that is no dictionary, or lacks one of its texts, throws NQ_EException;
/// the value is what the pairs before it have made.
///
/// Each thread keeps what it has made of the small lists that it used last; whether a list is one of them is found by
/// comparing all its texts. Any thread may call.
[[nodiscard]] bool ReplacePairs(const NQ_TArray& list, std::size_t most, NQ_TString& value);

}  // namespace templatenames
