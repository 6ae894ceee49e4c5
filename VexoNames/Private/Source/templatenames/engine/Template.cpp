#include "engine/Template.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <cstring>

namespace templatenames {
namespace {

/// Text as a key: hashed and compared as memory, not unit by unit.
struct TUnits {
  std::u16string_view units;

  bool operator==(const TUnits& other) const {
    return units.size() == other.units.size() &&
           (units.empty() || std::memcmp(units.data(), other.units.data(), units.size() * sizeof(char16_t)) == 0);
  }
  template <class H>
  friend H AbslHashValue(H hash, const TUnits& key) {
    return H::combine(std::move(hash), NQ_TString::HashOf(key.units));
  }
};

}  // namespace

// A copy of the text: the caller's may share much more memory than it shows.
TTemplate::TTemplate(const NQ_TString& text, std::uint64_t textHash) : source(text.StringView()), hash(textHash) {
  const std::u16string_view units = source.StringView();
  const auto position = [](std::size_t at) { return static_cast<std::uint32_t>(at); };  // kMaxTemplateLength at most
  absl::flat_hash_map<TUnits, std::uint32_t> known;
  TScanner scanner(units, ChooseMarkers(units));
  for (TScannedToken place; scanner.Next(place);) {
    const std::u16string_view inside = place.TextIn(units);
    const auto [token, added] = known.try_emplace(TUnits{inside}, position(tokens.size()));
    if (added) tokens.emplace_back(inside);
    pieces.push_back({position(place.literal), position(place.begin), position(place.end), token->second});
  }
  pieces.shrink_to_fit();
  tokens.shrink_to_fit();
  done = scanner.Done();
  syntaxError = scanner.SyntaxError();
}

// Regular expressions are compiled later, when a token first needs its own.
std::size_t TTemplate::Weight() const {
  const auto regexes =
      std::count_if(tokens.begin(), tokens.end(), [](const TToken& token) { return !token.parts.regex.empty(); });
  return sizeof *this + source.Length() * sizeof(char16_t) + pieces.size() * sizeof(TPiece) +
         tokens.size() * sizeof(TToken) + static_cast<std::size_t>(regexes) * TToken::kMaxRegexBytes;
}

}  // namespace templatenames
