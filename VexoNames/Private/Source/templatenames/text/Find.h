// Finding single characters in UTF-16 text, a block at a time: std::u16string_view::find compares one unit at a time.
#pragma once

#include <bit>
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

/// Which of the eight units at an address are that of one of the blocks, each of which holds one unit eight times.
class TUnitMatches {
 public:
  TUnitMatches(const char16_t* units, std::span<const TUnitBlock> wanted) {
    TUnitBlock block;
    std::memcpy(&block, units, sizeof block);
    auto equal = block == wanted.front();
    for (const TUnitBlock& other : wanted.subspan(1)) equal |= block == other;
    std::memcpy(halves_, &equal, sizeof halves_);
  }

  bool Any() const { return (halves_[0] | halves_[1]) != 0; }
  /// Index of the first and of the last one; there must be one.
  std::size_t First() const { return halves_[0] != 0 ? Lowest(halves_[0]) : 4 + Lowest(halves_[1]); }
  std::size_t Last() const { return halves_[1] != 0 ? 4 + Highest(halves_[1]) : Highest(halves_[0]); }

 private:
  static_assert(std::endian::native == std::endian::little, "the first unit lies in the lowest bits");

  static std::size_t Lowest(std::uint64_t half) { return static_cast<std::size_t>(std::countr_zero(half)) / 16; }
  static std::size_t Highest(std::uint64_t half) { return 3 - static_cast<std::size_t>(std::countl_zero(half)) / 16; }

  std::uint64_t halves_[2];  // sixteen bits a unit
};

inline bool HasUnitInBlock(const char16_t* units, std::span<const TUnitBlock> wanted) {
  return TUnitMatches(units, wanted).Any();
}

/// The first position at or after `from` of the character, or kNone.
inline std::size_t FindUnit(std::u16string_view text, char16_t unit, std::size_t from) {
  const TUnitBlock wanted[] = {UnitBlock(unit)};
  const char16_t* const units = text.data();
  const std::size_t length = text.size();
  for (; from + kUnitBlock <= length; from += kUnitBlock) {
    const TUnitMatches matches(units + from, wanted);
    if (matches.Any()) return from + matches.First();
  }
  for (; from < length; ++from)
    if (units[from] == unit) return from;
  return kNone;
}

/// The first position at or after `from` of one of the characters, each given as a block, or kNone.
inline std::size_t FindAnyUnit(std::u16string_view text, std::span<const TUnitBlock> wanted, std::size_t from) {
  const char16_t* const units = text.data();
  for (; from + kUnitBlock <= text.size(); from += kUnitBlock) {
    const TUnitMatches matches(units + from, wanted);
    if (matches.Any()) return from + matches.First();
  }
  for (; from < text.size(); ++from)
    for (const TUnitBlock& block : wanted)
      if (units[from] == block[0]) return from;
  return kNone;
}

/// The last position in [from, to) of the character, or kNone. `to` must not lie past the end.
inline std::size_t FindUnitBackward(std::u16string_view text, char16_t unit, std::size_t to, std::size_t from) {
  const TUnitBlock wanted[] = {UnitBlock(unit)};
  const char16_t* const units = text.data();
  for (; to >= from + kUnitBlock; to -= kUnitBlock) {
    const TUnitMatches matches(units + to - kUnitBlock, wanted);
    if (matches.Any()) return to - kUnitBlock + matches.Last();
  }
  for (; to > from; --to)
    if (units[to - 1] == unit) return to - 1;
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
  std::size_t end = to < text.size() - what.size() ? to + 1 : text.size() - what.size() + 1;
  while (end > from) {
    const std::size_t at = FindUnitBackward(text, what.front(), end, from);
    if (at == kNone || text.substr(at).starts_with(what)) return at;
    end = at;
  }
  return kNone;
}

}  // namespace templatenames
