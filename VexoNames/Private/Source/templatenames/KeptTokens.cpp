#include "KeptTokens.h"

namespace templatenames {

TKeptTokens::TPointer TKeptTokens::Find(std::u16string_view text) {
  if (text.size() > kMaxLength) return nullptr;
  const std::uint64_t hash = NQ_TString::HashOf(text);
  TPlace& place = places_[hash % kPlaces];
  if (place.kept != nullptr && place.kept->source.Equals(text)) return place.kept;
  if (std::exchange(place.missed, hash) != hash) return nullptr;
  place.kept = new TKeptToken(text);
  return place.kept;
}

}  // namespace templatenames
