// Formatting options as they stand in a context file.
#pragma once

#include "JsonNode.h"
#include "NQ_TDict.h"

/// Reads an object of options: texts, booleans, 32-bit integers, and for "CustomEncoding" a list of objects of texts.
/// Which keys there are is the library's business: it ignores those that it does not know.
NQ_TDict ReadFormattingOptions(const TJsonNode& options);
