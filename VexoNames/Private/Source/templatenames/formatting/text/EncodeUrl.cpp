#include "formatting/text/EncodeUrl.h"

#include <unicode/utf16.h>

#include <array>
#include <cstddef>
#include <string_view>

#include "NQ_TURL.h"
#include "NQ_Utf.h"
#include "formatting/text/Substitutions.h"

namespace templatenames {
namespace {

// The encoder's answer for every ASCII character.
struct TUrlCharacters {
  TUrlCharacters() {
    Add(u'%');  // first: the others put it in
    for (std::size_t c = 0; c < encoded.size(); ++c) Add(static_cast<char16_t>(c));
  }
  void Add(char16_t c) {
    const std::u16string_view character(&c, 1);
    encoded[c] = NQ_TURL::HexEncode(NQ_TString(character));
    if (encoded[c].StringView() != character) substitutions.Add(character, encoded[c].StringView());
  }

  std::array<NQ_TString, 128> encoded;
  TSubstitutions substitutions;
};

// Percent-encodes the bytes of one character.
void AddBytes(std::u16string_view text, std::size_t& at, TRewriting& rewriting) {
  constexpr char16_t kHex[] = u"0123456789ABCDEF";
  const bool pair = U16_IS_LEAD(text[at]) && at + 1 < text.size() && U16_IS_TRAIL(text[at + 1]);
  const std::size_t units = pair ? 2 : 1;
  char bytes[4];
  const std::size_t count = nq::Utf16ToUtf8(text.substr(at, units), bytes);
  at += units;
  char16_t* end = rewriting.Room(3 * sizeof bytes);
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    *end++ = u'%';
    *end++ = kHex[byte >> 4];
    *end++ = kHex[byte & 15];
  }
  rewriting.Took(end);
}

bool IsLetter(char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); }

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// The place after a run of such characters.
std::size_t PastRun(std::u16string_view text, std::size_t from, bool (*belongs)(char16_t unit)) {
  while (from < text.size() && belongs(text[from])) ++from;
  return from;
}

// How much of a URL is kept as it is: its scheme and, if it has all of them, host, port and the separators.
//
//   url  = { letter } ":" rest
//   rest = "//" { letter } ":" { digit } "/" path | anything
std::size_t KeptOfUrl(std::u16string_view url) {
  const auto isAt = [&](std::size_t at, std::u16string_view what) {
    return at <= url.size() && url.substr(at).starts_with(what);
  };
  const std::size_t scheme = PastRun(url, 0, IsLetter);
  if (!isAt(scheme, u":")) return 0;
  if (!isAt(scheme, u"://")) return scheme + 1;
  const std::size_t host = PastRun(url, scheme + 3, IsLetter);
  if (!isAt(host, u":")) return scheme + 1;
  const std::size_t port = PastRun(url, host + 1, IsDigit);
  return isAt(port, u"/") ? port + 1 : scheme + 1;
}

}  // namespace

bool EncodeUrl(NQ_TString& value) {
  static const auto* const characters = new TUrlCharacters;  // never destroyed, as EncodeXml's
  return characters->substitutions.Apply(value, KeptOfUrl(value.StringView()), AddBytes);
}

}  // namespace templatenames
