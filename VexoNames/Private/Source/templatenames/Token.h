// A token in hand: what was scanned, and where its name was found last.
#pragma once

#include "Entry.h"
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

  // The entry that the name had at that version of the registry; null when it had none.
  TEntry* entry = nullptr;
  std::uint64_t entryVersion = 0;
};

}  // namespace templatenames
