// Conversion between UTF-8, UTF-16 and code points. ASCII goes through plain loops that the compiler turns into vector
// code; everything else through ICU's macros.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "NQ_Export.h"

namespace nq {

/// Writes the UTF-16 form of the text; room for as many units as the text has bytes is enough. Returns the number of
/// units. Each maximal invalid piece becomes U+FFFD.
NQ_EXPORT std::size_t Utf8ToUtf16(std::string_view utf8, char16_t* out);

/// Room in bytes that is enough for the UTF-8 form of the text; just enough when it is ASCII.
NQ_EXPORT std::size_t MostUtf8Bytes(std::u16string_view utf16);

/// Writes the ASCII at the front of the text; returns its length. There must be room for the text's length.
NQ_EXPORT std::size_t AsciiToUtf8(std::u16string_view utf16, char* out);

/// Writes the UTF-8 form of the text; returns the number of bytes. An unpaired surrogate becomes U+FFFD.
NQ_EXPORT std::size_t Utf16ToUtf8(std::u16string_view utf16, char* out);

/// Appends the UTF-8 form of the text. An unpaired surrogate becomes U+FFFD.
NQ_EXPORT void AppendUtf8(std::u16string_view utf16, std::string& out);

/// Appends the UTF-16 form of code points. What is no code point becomes U+FFFD.
NQ_EXPORT void AppendUtf16(std::wstring_view codePoints, std::u16string& out);

}  // namespace nq
