// Finding single characters in UTF-16 text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace templatenames {

inline constexpr std::size_t kNone = std::u16string_view::npos;

/// Eight units. Written with the compilers' vector types: whether they turn a plain loop into vector code depends on
/// the optimisation level.
using TUnitBlock __attribute__((vector_size(16))) = std::uint16_t;
inline constexpr std::size_t kUnitBlock = 8;

inline TUnitBlock UnitBlock(char16_t unit) { return TUnitBlock{unit, unit, unit, unit, unit, unit, unit, unit}; }

/// Whether one of the units at that address is that of one of the blocks, each of which holds one unit eight times.
inline bool HasUnitInBlock(const char16_t* units, std::span<const TUnitBlock> wanted) {
  TUnitBlock block;
  std::memcpy(&block, units, sizeof block);
  auto equal = block == wanted.front();
  for (const TUnitBlock& other : wanted.subspan(1)) equal |= block == other;
  std::uint64_t halves[2];
  std::memcpy(halves, &equal, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

/// The first position at or after `from` of the character, or kNone. Looks at blocks first:
/// std::u16string_view::find compares one unit at a time.
inline std::size_t FindUnit(std::u16string_view text, char16_t unit, std::size_t from) {
  const TUnitBlock wanted[] = {UnitBlock(unit)};
  const char16_t* const units = text.data();
  const std::size_t length = text.size();
  while (from + kUnitBlock <= length && !HasUnitInBlock(units + from, wanted)) from += kUnitBlock;
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
