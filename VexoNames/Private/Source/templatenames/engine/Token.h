// A token in hand: what was scanned, and where its name was found last.
#pragma once

#include "engine/Entry.h"
#include "regex/Regex.h"
#include "text/PrintfFormat.h"
#include "text/Scan.h"
#include "text/TokenText.h"

namespace templatenames {

struct TToken {
  /// Splits the token text; the views lie in it.
  explicit TToken(std::u16string_view tokenText)
      : text(tokenText), parts(SplitTokenText(tokenText)), keyHash(NQ_TString::HashOf(parts.key)) {
    if (text.empty() || !parts.format.empty() || !parts.elem.empty() || !parts.extract.empty()) return;
    shape = parts.regex.empty() ? TShape::Bare : TShape::Regex;
  }

  // The entry that the name had at that version of the registry; null when it had none.
  TEntry* entry = nullptr;
  std::uint64_t entryVersion = 0;
  enum class TShape : std::uint8_t { Bare, Regex, Other };  // which attributes there are: none, only that one, others
  TShape shape = TShape::Other;
  bool cleanSyntax = false;
  std::u16string_view text;
  TTokenText parts;
  std::uint64_t keyHash;

  /// The token's format, which is not empty, for values of a kind; null when it is refused. Parsed once, for names
  /// seldom change their kind.
  const TPrintfFormat* Format(TPrintfFormat::TKind kind) {
    if (formatKind != kind) format = TPrintfFormat::Parse(parts.format, kind);
    formatKind = kind;
    return format ? &*format : nullptr;
  }

  /// The token's regular expression, compiled; found once unless it is large. Valid until the next one is asked for.
  const TRegex& Regex() { return regex != nullptr ? *regex : FindItsRegex(); }

  const TRegex& FindItsRegex() {
    const TRegex& found = KeptRegex(NQ_TString(parts.regex));
    if (found.Bytes() <= kMaxRegexBytes) regex = FindRegex(NQ_TString(parts.regex));
    return found;
  }

  /// Whether nothing about the token as written is odd, as far as somebody has looked.
  bool HasCleanSyntax() const { return cleanSyntax; }
  void SetCleanSyntax() { cleanSyntax = true; }

  static constexpr std::size_t kMaxRegexBytes = 8192;  // kept tokens are many
  std::shared_ptr<const TRegex> regex;
  std::optional<TPrintfFormat> format;
  std::optional<TPrintfFormat::TKind> formatKind;  // none: not parsed yet
};

}  // namespace templatenames
