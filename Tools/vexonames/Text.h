// Text on its way to people. Takes any bytes; what is no UTF-8 becomes U+FFFD.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The text with what could change the terminal or the direction of writing made visible: control characters
/// become \t, \n, \x1B and the like, direction marks \u202E. Everything else stays, backslashes too.
std::string Printable(std::string_view text);

/// JSON that says the same, with the characters that `Printable` makes visible as its \u escapes.
std::string PrintableJson(std::string_view json);

/// The text, or its beginning and its end with "..." between them, when it has more than that many characters.
std::string Shortened(std::string_view text, std::size_t limit = 200);

/// Columns that the text takes on a terminal: none for combining marks, two for wide East Asian characters.
std::size_t DisplayWidth(std::string_view text);

/// The text and as many spaces as bring it to that width.
std::string Padded(std::string_view text, std::size_t width);
