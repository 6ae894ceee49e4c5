// Appending UTF-8 to text.
#pragma once

#include <algorithm>
#include <string_view>

#include "NQ_TString.h"
#include "NQ_Utf.h"

namespace templatenames {

/// Appends the text; each maximal invalid piece becomes U+FFFD.
inline void AppendFromUtf8(std::string_view utf8, NQ_TString& out) {
  constexpr std::size_t kShort = 128;
  if (utf8.size() <= kShort) {
    char16_t units[kShort];
    const std::size_t length = nq::Utf8ToUtf16(utf8, units);
    std::copy_n(units, length, out.AppendUninitialized(static_cast<unsigned int>(length)));
    return;
  }
  const unsigned int before = out.Length();
  char16_t* const at = out.AppendUninitialized(static_cast<unsigned int>(utf8.size()));
  out.Truncate(before + static_cast<unsigned int>(nq::Utf8ToUtf16(utf8, at)));
}

}  // namespace templatenames
