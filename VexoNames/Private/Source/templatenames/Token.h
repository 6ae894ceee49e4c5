// A token in hand: what was scanned, and where its name was found last.
#pragma once

#include "Entry.h"
#include "text/PrintfFormat.h"
#include "text/Regex.h"
#include "text/Scan.h"
#include "text/TokenText.h"

namespace templatenames {

struct TToken {
  /// Splits the token text; the views lie in it.
  explicit TToken(std::u16string_view tokenText)
      : text(tokenText), parts(SplitTokenText(tokenText)), keyHash(NQ_TString::HashOf(parts.key)) {}

  std::u16string_view text;
  TTokenText parts;
  std::uint64_t keyHash;

  /// The token's format for integers, parsed once; null when the token gives none or it is refused.
  const TPrintfFormat* IntegerFormat() {
    if (!formatParsed && !parts.format.empty())
      integerFormat = TPrintfFormat::Parse(parts.format, TPrintfFormat::TKind::Integer);
    formatParsed = true;
    return integerFormat ? &*integerFormat : nullptr;
  }

  /// The token's regular expression, compiled; found once unless it is large. Valid until the next one is asked for.
  const TRegex& Regex() {
    constexpr std::size_t kLarge = 8192;  // bytes; kept tokens are many, and what they hold counts nowhere else
    if (regex != nullptr) return *regex;
    const TRegex& found = KeptRegex(NQ_TString(parts.regex));
    if (found.Bytes() <= kLarge) regex = FindRegex(NQ_TString(parts.regex));
    return found;
  }

  std::shared_ptr<const TRegex> regex;
  std::optional<TPrintfFormat> integerFormat;
  bool formatParsed = false;

  // The entry that the name had at that version of the registry; null when it had none.
  TEntry* entry = nullptr;
  std::uint64_t entryVersion = 0;
};

}  // namespace templatenames
