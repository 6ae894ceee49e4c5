#include "KeptTokens.h"

namespace templatenames {

TKeptTokens::TPointer TKeptTokens::Find(std::u16string_view text) {
  if (text.size() > kMaxLength) return nullptr;
  const std::uint64_t hash = NQ_TString::HashOf(text);
  TPlace& first = places_[hash % kPlaces];
  if (first.kept != nullptr && first.kept->source.Equals(text)) return first.kept;
  TPlace& second = places_[hash / kPlaces % kPlaces];
  if (second.kept != nullptr && second.kept->source.Equals(text)) return second.kept;
  TPlace& place = first.kept != nullptr && second.kept == nullptr ? second : first;
  if (std::exchange(place.missed, hash) != hash) return nullptr;
  place.kept = new TKeptToken(text);
  return place.kept;
}

}  // namespace templatenames
