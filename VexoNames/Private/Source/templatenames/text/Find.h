// Finding single characters in UTF-16 text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace templatenames {

inline constexpr std::size_t kNone = std::u16string_view::npos;

/// Whether the character is among the eight units at that address. Written with the compilers' vector types: whether
/// they turn a plain loop into vector code depends on the optimisation level.
inline bool HasUnitInBlock(const char16_t* units, char16_t unit) {
  using TBlock __attribute__((vector_size(16))) = std::uint16_t;
  const TBlock wanted = {unit, unit, unit, unit, unit, unit, unit, unit};
  TBlock block;
  std::memcpy(&block, units, sizeof block);
  const auto equal = block == wanted;
  std::uint64_t halves[2];
  std::memcpy(halves, &equal, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

/// The first position at or after `from` of the character, or kNone. Looks at blocks first:
/// std::u16string_view::find compares one unit at a time.
inline std::size_t FindUnit(std::u16string_view text, char16_t unit, std::size_t from) {
  constexpr std::size_t kBlock = 8;
  const char16_t* const units = text.data();
  const std::size_t length = text.size();
  while (from + kBlock <= length && !HasUnitInBlock(units + from, unit)) from += kBlock;
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
