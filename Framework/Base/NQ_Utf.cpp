#include "NQ_Utf.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <type_traits>

namespace nq {
namespace {

constexpr std::size_t kBlock = 32;  // units looked at together
constexpr std::uint32_t kReplacement = 0xFFFD;

// Copies ASCII from the front block by block; returns how many characters were copied.
template <class From, class To>
std::size_t CopyAscii(const From* in, std::size_t length, To* out) {
  std::size_t done = 0;
  while (length - done >= kBlock) {
    unsigned seen = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
      const auto unit = static_cast<std::make_unsigned_t<From>>(in[done + i]);
      seen |= unit;
      out[done + i] = static_cast<To>(unit);
    }
    if (seen >= 0x80) break;
    done += kBlock;
  }
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

void AppendUtf8(std::u16string_view utf16, std::string& out) {
  const std::size_t length = utf16.size();
  std::size_t most = length;  // a unit takes at most 1, 2 or 3 bytes
  for (const char16_t unit : utf16) most += (unit >= 0x80 ? 1U : 0U) + (unit >= 0x800 ? 1U : 0U);
  std::size_t written = out.size();
  out.resize(written + most);
  std::size_t at = 0;
  while (at < length) {
    const std::size_t ascii = CopyAscii(utf16.data() + at, length - at, out.data() + written);
    at += ascii;
    written += ascii;
    while (at < length && utf16[at] >= 0x80) {
      written += Encode(NextCodePoint(utf16, at), out.data() + written);
    }
  }
  out.resize(written);
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
