// Text from any bytes: converted as ICU does it, and what searching, cutting and replacing promise.
//
// Input: a text to look for, a text to put in its place, a wildcard pattern, each on a line; the rest is the text.
#include <unicode/ustring.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Fuzz.h"
#include "NQ_TURL.h"

namespace {

using fuzz::Check;

void CompareWithIcu(std::string_view utf8) {
  std::u16string units(utf8.size() + 1, u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(units.data(), static_cast<std::int32_t>(units.size()), &length, utf8.data(),
                       static_cast<std::int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
  units.resize(static_cast<std::size_t>(length));
  Check(NQ_TString(utf8).Equals(units), "UTF-8 becomes the UTF-16 that ICU makes of it");
}

void CompareWithIcu(std::u16string_view utf16) {
  std::string bytes(utf16.size() * 3 + 1, '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, utf16.data(),
                     static_cast<std::int32_t>(utf16.size()), 0xFFFD, nullptr, &status);
  bytes.resize(static_cast<std::size_t>(length));
  Check(NQ_TString(utf16).Narrow() == bytes, "UTF-16 becomes the UTF-8 that ICU makes of it");
}

// Column by column: which beginnings of the text the pattern so far matches.
bool PlainMatch(std::u16string_view text, std::u16string_view pattern) {
  std::vector<bool> matches(text.size() + 1, false);
  matches[0] = true;
  for (const char16_t wild : pattern) {
    for (std::size_t i = text.size() + 1; wild != u'*' && i-- > 0;)
      matches[i] = i > 0 && matches[i - 1] && text[i - 1] == wild;
    for (std::size_t i = 1; wild == u'*' && i <= text.size(); ++i) matches[i] = matches[i] || matches[i - 1];
  }
  return matches[text.size()];
}

int PlainFind(std::u16string_view text, std::u16string_view needle, std::size_t start, bool reverse) {
  int found = -1;
  for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
    if (text.substr(i, needle.size()) != needle || (reverse ? i > start : i < start)) continue;
    found = static_cast<int>(i);
    if (!reverse) break;
  }
  return found;
}

std::string Decoded(std::string_view encoded) {
  std::string text;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    const bool escape = encoded[i] == '%';
    text += escape ? static_cast<char>(std::stoi(std::string(encoded.substr(i + 1, 2)), nullptr, 16)) : encoded[i];
    i += escape ? 2 : 0;
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TInput input(data, size);
  const NQ_TString from(input.Line());
  const NQ_TString to(input.Line());
  const NQ_TString pattern(input.Line());
  const NQ_TString text(input.Rest());

  CompareWithIcu(input.Rest());
  CompareWithIcu(text.StringView());
  std::u16string units(input.Rest().size() / 2, u'\0');
  std::memcpy(units.data(), input.Rest().data(), units.size() * 2);
  CompareWithIcu(units);
  Check(NQ_TString(text.Narrow()) == text, "text from UTF-8 survives the way to UTF-8 and back");
  Check(Decoded(NQ_TURL::HexEncode(text).Narrow()) == text.Narrow(), "percent-encoded text decodes to the text");

  const unsigned middle = to.Length() < text.Length() ? to.Length() : text.Length();
  const int at = static_cast<int>(middle);
  Check(text.Find(from, at, false) == PlainFind(text.StringView(), from.StringView(), middle, false), "Find");
  Check(text.Find(from, at, true) == PlainFind(text.StringView(), from.StringView(), middle, true), "Find backward");
  Check(text.Match(pattern) == PlainMatch(text.StringView(), pattern.StringView()), "Match");
  Check(text.Substring(0, at) + text.Substring(at) == text, "the parts of a text make up the text");

  const NQ_TString strange(u"\xD800\xD800");  // in no text from UTF-8
  const NQ_TString replaced = text.Replace(from, strange);
  Check(from.Empty() || replaced.Find(from) < 0, "nothing is left of what was replaced");
  Check(replaced.Replace(strange, from) == text, "replacing and replacing back");
  Check(replaced.Replace(strange, to) == text.Replace(from, to), "what is put in is not looked at again");

  NQ_TString grown = to + text;
  std::u16string plain(grown.StringView());
  grown.Append(grown.StringView().substr(0, middle));
  plain += plain.substr(0, middle);
  grown.Append(grown);
  plain += plain;
  Check(grown.Equals(plain) && grown.Hash() == NQ_TString(plain).Hash(), "appending parts of itself");

  NQ_TString upper = text;
  upper.ToUpper();
  const NQ_TString lower = upper.Lowered();
  Check(upper.Narrow().empty() == text.Empty() && lower.Empty() == text.Empty(), "case mapping loses nothing");
  return 0;
}
