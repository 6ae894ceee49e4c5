#include "Private/WireText.h"

#include <array>

#include "NQ_Utf.h"

namespace nq::wire {

namespace {

bool IsHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

/// The first unpaired surrogate from a position on; npos when there is none.
std::size_t FindUnpaired(std::u16string_view text, std::size_t from) {
  for (std::size_t i = from; i < text.size(); ++i) {
    if ((text[i] & 0xF800) != 0xD800) continue;
    if (!IsHigh(text[i]) || i + 1 == text.size() || !IsLow(text[i + 1])) return i;
    ++i;
  }
  return std::u16string_view::npos;
}

/// The first three bytes that stand for a surrogate; npos when there are none. 0xED begins no other invalid sequence.
std::size_t FindSurrogate(std::string_view bytes, std::size_t from) {
  const auto in = [&](std::size_t i, unsigned low, unsigned high) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    return byte >= low && byte <= high;
  };
  for (std::size_t i = bytes.find('\xED', from); i + 2 < bytes.size() && i != std::string_view::npos;
       i = bytes.find('\xED', i + 1))
    if (in(i + 1, 0xA0, 0xBF) && in(i + 2, 0x80, 0xBF)) return i;
  return std::string_view::npos;
}

}  // namespace

std::string FromText(const NQ_TString& text) {
  const std::u16string_view units = text.StringView();
  std::string bytes;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = FindUnpaired(units, begin);
    AppendUtf8(units.substr(begin, end - begin), bytes);
    if (end == std::u16string_view::npos) return bytes;
    const unsigned unit = units[end];
    for (const unsigned byte : {0xE0 | unit >> 12, 0x80 | (unit >> 6 & 0x3F), 0x80 | (unit & 0x3F)})
      bytes.push_back(static_cast<char>(byte));
    begin = end + 1;
  }
}

NQ_TString ToText(std::string_view bytes) {
  std::size_t end = FindSurrogate(bytes, 0);
  NQ_TString text(bytes.substr(0, end));
  while (end != std::string_view::npos) {
    const unsigned high = static_cast<unsigned char>(bytes[end + 1]) & 0x3F;
    const unsigned low = static_cast<unsigned char>(bytes[end + 2]) & 0x3F;
    text.Append(static_cast<char16_t>(0xD000 | high << 6 | low));
    const std::size_t begin = end + 3;
    end = FindSurrogate(bytes, begin);
    text.Append(NQ_TString(bytes.substr(begin, end - begin)));
  }
  return text;
}

}  // namespace nq::wire
