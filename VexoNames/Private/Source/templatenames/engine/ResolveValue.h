// Resolving what is not a plain template.
#pragma once

#include "TName.h"

namespace templatenames {

/// Separates the pieces of a string value that are resolved one by one.
inline constexpr std::u16string_view kValueSeparator = u"&@&";

/// Resolves a text piece by piece; the separators stay. Stops at the first piece in which a token failed: the result
/// then ends with the separator after that piece. True when no token failed.
bool ResolveSplit(const NQ_TString& text, std::u16string_view separator, TName* names, NQ_TString& result);

/// Resolves a value: a string between its separators, a URL, or every element of a container, until one fails; what is
/// left then stays unresolved. Anything else is copied. True when nothing failed. Containers that nest deeper than the
/// limit on nested templates count as failed.
bool ResolveValue(const NQ_TAny& in, TName* names, NQ_TAny& out);

}  // namespace templatenames
