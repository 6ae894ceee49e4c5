// Text on its way to ICU and back, and errors on theirs.
#pragma once

#include <unicode/unistr.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "NQ_EException.h"
#include "NQ_TString.h"

namespace templatenames {

/// The first characters of the text, as many as asked for, with unpaired surrogates replaced as UTF-8 replaces them.
/// Valid while the text is unchanged: where nothing is to be replaced, ICU looks at the text itself.
inline icu::UnicodeString ToIcu(const NQ_TString& text, std::size_t most = std::u16string_view::npos) {
  const std::u16string_view units = text.StringView().substr(0, most);
  const auto isSurrogate = [](char16_t unit) { return (unit & 0xF800) == 0xD800; };
  if (std::none_of(units.begin(), units.end(), isSurrogate))
    return icu::UnicodeString(false, units.data(), static_cast<std::int32_t>(units.size()));
  const NQ_TString start(units);
  const std::string_view utf8 = start.Narrow();
  return icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
}

inline std::u16string_view FromIcu(const icu::UnicodeString& text) {
  return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

/// Throws an NQ_EException with the name of the error and the detail, unless there is none.
template <class TDetail>
void CheckIcu(UErrorCode error, const TDetail& detail, const char* file = __builtin_FILE(),
              unsigned line = __builtin_LINE()) {
  if (U_FAILURE(error) != 0) nq::Throw(NQ_EException(u_errorName(error), detail), file, line);
}

}  // namespace templatenames
