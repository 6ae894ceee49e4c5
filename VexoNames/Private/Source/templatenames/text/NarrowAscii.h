// Short ASCII text as bytes, without a call: what a value usually is, and too short for general conversion to be cheap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace templatenames {

/// Copies a block of units, a multiple of four, as bytes; returns the bits of all units, four units side by side.
template <std::size_t kUnits>
inline std::uint64_t NarrowBlock(const char16_t* __restrict in, char* __restrict out) {
  std::uint64_t seen = 0;
  for (std::size_t i = 0; i < kUnits; i += 4) {
    std::uint64_t word = 0;
    std::memcpy(&word, in + i, sizeof word);
    seen |= word;
  }
  for (std::size_t i = 0; i < kUnits; ++i) out[i] = static_cast<char>(in[i]);
  return seen;
}

/// Copies the units as bytes; returns whether all were ASCII. Works in blocks of a fixed size, which become vector
/// code; the last one overlaps the one before.
inline bool NarrowAscii(const char16_t* in, std::size_t length, char* out) {
  std::uint64_t seen = 0;
  if (length >= 16) {
    for (std::size_t at = 0; at + 16 < length; at += 16) seen |= NarrowBlock<16>(in + at, out + at);
    seen |= NarrowBlock<16>(in + length - 16, out + length - 16);
  } else if (length >= 8) {
    seen = NarrowBlock<8>(in, out) | NarrowBlock<8>(in + length - 8, out + length - 8);
  } else if (length >= 4) {
    seen = NarrowBlock<4>(in, out) | NarrowBlock<4>(in + length - 4, out + length - 4);
  } else {
    for (std::size_t at = 0; at < length; ++at) {
      seen |= in[at];
      out[at] = static_cast<char>(in[at]);
    }
  }
  return (seen & 0xFF80'FF80'FF80'FF80) == 0;
}

}  // namespace templatenames
