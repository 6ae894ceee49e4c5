#include "NQ_Utf.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace nq {
namespace {

constexpr std::size_t kBlock = 16;  // units looked at together
constexpr std::uint32_t kReplacement = 0xFFFD;

// A block of bytes and one of UTF-16 units. Written with the compilers' vector types: whether they turn a plain loop
// into vector code depends on the optimisation level.
using TBytes __attribute__((vector_size(kBlock))) = std::uint8_t;
using TUnits __attribute__((vector_size(2 * kBlock))) = std::uint16_t;

template <class Block>
bool IsAscii(const Block& block) {
  std::uint64_t words[sizeof block / 8];
  std::memcpy(words, &block, sizeof block);
  std::uint64_t seen = 0;
  for (const std::uint64_t word : words) seen |= word;
  return (seen & (std::is_same_v<Block, TBytes> ? 0x8080808080808080 : 0xFF80FF80FF80FF80)) == 0;
}

// Copies one block; returns whether it was all ASCII.
template <class From, class To>
bool CopyBlock(const From* in, To* out) {
  using TFrom = std::conditional_t<sizeof(From) == 1, TBytes, TUnits>;
  using TTo = std::conditional_t<sizeof(To) == 1, TBytes, TUnits>;
  TFrom block;
  std::memcpy(&block, in, sizeof block);
  const TTo converted = __builtin_convertvector(block, TTo);
  std::memcpy(out, &converted, sizeof converted);
  return IsAscii(block);
}

// Copies ASCII from the front; returns how many characters were copied. What it writes behind them is overwritten by
// what follows, and never lies past `length`.
template <class From, class To>
std::size_t CopyAscii(const From* in, std::size_t length, To* out) {
  std::size_t done = 0;
  while (length - done >= kBlock && CopyBlock(in + done, out + done)) done += kBlock;
  // The last block may overlap the one before.
  if (length - done < kBlock && length >= kBlock && CopyBlock(in + length - kBlock, out + length - kBlock))
    return length;
  while (done < length && static_cast<std::make_unsigned_t<From>>(in[done]) < 0x80) {
    out[done] = static_cast<To>(in[done]);
    ++done;
  }
  return done;
}

// Writes one code point as UTF-16; returns how many units it takes.
std::size_t Encode(std::uint32_t c, char16_t* out) {
  if (c <= 0xFFFF) return out[0] = static_cast<char16_t>(c), 1;
  return out[0] = static_cast<char16_t>(0xD7C0 + (c >> 10)), out[1] = static_cast<char16_t>(0xDC00 | (c & 0x3FF)), 2;
}

// The code point at a position, which moves past it; an unpaired surrogate gives U+FFFD.
std::uint32_t NextCodePoint(std::u16string_view text, std::size_t& at) {
  const std::uint32_t lead = text[at++];
  if (!U16_IS_SURROGATE(lead)) return lead;
  if (U16_IS_SURROGATE_TRAIL(lead) || at == text.size() || !U16_IS_TRAIL(text[at])) return kReplacement;
  return 0x10000 + ((lead & 0x3FF) << 10) + (text[at++] & 0x3FFU);
}

// Writes one code point of two or more bytes; returns how many they are.
std::size_t Encode(std::uint32_t c, char* out) {
  const auto put = [&](std::size_t i, std::uint32_t byte) { out[i] = static_cast<char>(byte); };
  const auto trail = [&](unsigned shift) { return 0x80 | (c >> shift & 0x3F); };
  if (c < 0x800) return put(0, 0xC0 | c >> 6), put(1, trail(0)), 2;
  if (c < 0x10000) return put(0, 0xE0 | c >> 12), put(1, trail(6)), put(2, trail(0)), 3;
  return put(0, 0xF0 | c >> 18), put(1, trail(12)), put(2, trail(6)), put(3, trail(0)), 4;
}

}  // namespace

std::size_t Utf8ToUtf16(std::string_view utf8, char16_t* out) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
  const std::size_t length = utf8.size();
  std::size_t at = 0;
  std::size_t written = 0;
  while (at < length) {
    const std::size_t ascii = CopyAscii(utf8.data() + at, length - at, out + written);
    at += ascii;
    written += ascii;
    while (at < length && bytes[at] >= 0x80) {
      UChar32 c = 0;
      U8_NEXT_OR_FFFD(bytes, at, length, c);
      written += Encode(static_cast<std::uint32_t>(c), out + written);
    }
  }
  return written;
}

std::size_t MostUtf8Bytes(std::u16string_view utf16) {
  const char16_t* const units = utf16.data();
  const std::size_t length = utf16.size();
  TUnits block = {};
  std::size_t at = 0;
  for (; at + kBlock <= length; at += kBlock) {
    TUnits next;
    std::memcpy(&next, units + at, sizeof next);
    block |= next;
  }
  unsigned seen = 0;
  for (std::size_t i = 0; i < kBlock; ++i) seen |= block[i];
  for (; at < length; ++at) seen |= units[at];
  return length * (seen < 0x80 ? 1 : seen < 0x800 ? 2 : 3);
}

std::size_t AsciiToUtf8(std::u16string_view utf16, char* out) { return CopyAscii(utf16.data(), utf16.size(), out); }

std::size_t Utf16ToUtf8(std::u16string_view utf16, char* out) {
  const std::size_t length = utf16.size();
  std::size_t at = 0;
  std::size_t written = 0;
  while (at < length) {
    const std::size_t ascii = CopyAscii(utf16.data() + at, length - at, out + written);
    at += ascii;
    written += ascii;
    while (at < length && utf16[at] >= 0x80) written += Encode(NextCodePoint(utf16, at), out + written);
  }
  return written;
}

void AppendUtf8(std::u16string_view utf16, std::string& out) {
  const std::size_t before = out.size();
  out.resize(before + MostUtf8Bytes(utf16));
  out.resize(before + Utf16ToUtf8(utf16, out.data() + before));
}

void AppendUtf16(std::wstring_view codePoints, std::u16string& out) {
  out.reserve(out.size() + codePoints.size());
  for (const wchar_t wide : codePoints) {
    auto c = static_cast<std::uint32_t>(wide);
    if (c > 0x10FFFF || U_IS_SURROGATE(c)) c = kReplacement;
    char16_t units[2];
    out.append(units, Encode(c, units));
  }
}

}  // namespace nq
