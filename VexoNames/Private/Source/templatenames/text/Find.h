// Finding single characters in UTF-16 text.
#pragma once

#include <cstddef>
#include <string_view>

namespace templatenames {

inline constexpr std::size_t kNone = std::u16string_view::npos;

/// The first position at or after `from` of the character, or kNone. Looks at blocks first, in a loop that the compiler
/// turns into vector code: std::u16string_view::find compares one unit at a time.
inline std::size_t FindUnit(std::u16string_view text, char16_t unit, std::size_t from) {
  constexpr std::size_t kBlock = 16;
  const char16_t* const units = text.data();
  const std::size_t length = text.size();
  for (; from + kBlock <= length; from += kBlock) {
    unsigned short seen = 0;
    for (std::size_t i = 0; i < kBlock; ++i) seen |= static_cast<unsigned short>(units[from + i] == unit ? 1 : 0);
    if (seen != 0) break;
  }
  for (; from < length; ++from)
    if (units[from] == unit) return from;
  return kNone;
}

/// The first position at or after `from` of the text, or kNone. The text must not be empty.
inline std::size_t FindText(std::u16string_view text, std::u16string_view what, std::size_t from) {
  for (;; ++from) {
    from = FindUnit(text, what.front(), from);
    if (from == kNone) return kNone;
    if (text.substr(from).starts_with(what)) return from;
  }
}

/// The last position in [from, to] at which the text begins, or kNone. The text must not be empty.
inline std::size_t FindTextBackward(std::u16string_view text, std::u16string_view what, std::size_t to,
                                    std::size_t from) {
  if (what.size() > text.size()) return kNone;
  for (std::size_t at = to < text.size() - what.size() ? to + 1 : text.size() - what.size() + 1; at > from; --at)
    if (text[at - 1] == what.front() && text.substr(at - 1).starts_with(what)) return at - 1;
  return kNone;
}

}  // namespace templatenames
