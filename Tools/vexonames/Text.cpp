#include "Text.h"

#include <unicode/uchar.h>

#include <cstdint>
#include <cstdio>
#include <vector>

#include "NQ_TString.h"

namespace {

/// Calls visit(code point, bytes) for each character of the text, which must be valid.
template <class Visit>
void ForEachCharacter(std::string_view utf8, Visit visit) {
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(utf8[at]); };
  for (std::size_t at = 0; at < utf8.size();) {
    const unsigned int lead = byteAt(at);
    const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    UChar32 character = static_cast<UChar32>(size == 1 ? lead : lead & (0xFFU >> (size + 1)));
    for (std::size_t i = 1; i < size; ++i) character = (character << 6) | (byteAt(at + i) & 0x3F);
    visit(character, utf8.substr(at, size));
    at += size;
  }
}

// These reorder what stands beside them, so that a name could be made to read like another one.
bool IsDirectionMark(UChar32 c) { return u_hasBinaryProperty(c, UCHAR_BIDI_CONTROL) != 0; }

bool Controls(UChar32 c) { return u_iscntrl(c) != 0 || IsDirectionMark(c); }

void AppendEscaped(UChar32 c, std::string& out) {
  if (c == '\t') {
    out += "\\t";
  } else if (c == '\n') {
    out += "\\n";
  } else {
    char code[16];
    std::snprintf(code, sizeof code, c < 0x100 ? "\\x%02X" : "\\u%04X", static_cast<unsigned int>(c));
    out += code;
  }
}

}  // namespace

std::string Printable(std::string_view text) {
  const NQ_TString valid(text);
  const std::string_view utf8 = valid.Narrow();
  std::string out;
  out.reserve(utf8.size());
  ForEachCharacter(utf8, [&](UChar32 c, std::string_view bytes) {
    if (Controls(c)) {
      AppendEscaped(c, out);
    } else {
      out += bytes;
    }
  });
  return out;
}

std::string PrintableJson(std::string_view json) {
  std::string out;
  out.reserve(json.size());
  ForEachCharacter(json, [&](UChar32 c, std::string_view bytes) {
    if (!Controls(c)) {
      out += bytes;
      return;
    }
    char code[16];
    std::snprintf(code, sizeof code, "\\u%04X", static_cast<unsigned int>(c));
    out += code;
  });
  return out;
}

std::string Shortened(std::string_view text, std::size_t limit) {
  // Of a very long text only the ends are looked at: a character has at most four bytes.
  const std::size_t enough = limit * 4;
  if (text.size() > 3 * enough) {
    std::string ends(text.substr(0, enough));
    ends += text.substr(text.size() - enough);
    return Shortened(ends, limit);
  }
  const NQ_TString valid(text);
  const std::string_view utf8 = valid.Narrow();
  std::vector<std::size_t> begins;
  ForEachCharacter(utf8, [&](UChar32, std::string_view bytes) {
    begins.push_back(static_cast<std::size_t>(bytes.data() - utf8.data()));
  });
  if (begins.size() <= limit) return std::string(utf8);
  const std::size_t head = limit * 2 / 3;
  const std::size_t tail = limit - head;
  return std::string(utf8.substr(0, begins[head])) + "..." + std::string(utf8.substr(begins[begins.size() - tail]));
}

std::size_t DisplayWidth(std::string_view text) {
  const NQ_TString valid(text);
  std::size_t width = 0;
  ForEachCharacter(valid.Narrow(), [&](UChar32 c, std::string_view) {
    const std::uint32_t category = U_GET_GC_MASK(c);
    if ((category & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK)) != 0) return;
    const int wide = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    width += wide == U_EA_WIDE || wide == U_EA_FULLWIDTH ? 2 : 1;
  });
  return width;
}

std::string Padded(std::string_view text, std::size_t width) {
  const std::size_t own = DisplayWidth(text);
  return std::string(text) + std::string(own < width ? width - own : 0, ' ');
}
