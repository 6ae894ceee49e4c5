// The text formatter: trims a value, changes its case and encodes it, in this order, as the options of a name say.
//
//   RemoveSpaces     true: characters up to U+0020 go from both ends; those within stay
//   Transformation   "UPPERCASE" or "LOWERCASE"
//   Encoding         "XML"     & " < > ' as entities
//                    "URL"     percent-encoded, but for what a URL begins with (EncodeUrl.h)
//                    "CUSTOM"  the pairs of CustomEncoding
//   CustomEncoding   a list of dictionaries with a text "Find" and a text "Replace"; each pair in turn replaces every
//                    occurrence in what the one before has made; an empty "Find" replaces nothing
//
//   options["Encoding"] = NQ_TString("URL");
//   if (!FormatText(options, most, value)) ...   // smb://server:445/a b: smb://server:445/a%20b
//
// Other words select nothing. Cases are those of Unicode, whatever the locale. Each step takes time linear in what it
// reads and writes. Any thread may call, also with the same options, as long as nobody changes them.
#pragma once

#include <cstddef>

#include "NQ_TDict.h"
#include "NQ_TString.h"

namespace templatenames {

/// Formats the value in place. False when the encoding would make it longer than `most` characters, and longer than it
/// is: then it is not encoded, but trimmed, and of CustomEncoding some pairs may have been applied. An element of
/// CustomEncoding that is no dictionary, or lacks one of its two texts, throws NQ_EException; the value is what the
/// pairs before it have made.
[[nodiscard]] bool FormatText(const NQ_TDict& options, std::size_t most, NQ_TString& value);

}  // namespace templatenames
