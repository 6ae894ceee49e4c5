#include "engine/TokenCache.h"

#include <utility>

namespace templatenames {
namespace {

std::uint64_t Load(const char16_t* units) {
  std::uint64_t loaded = 0;
  std::memcpy(&loaded, units, sizeof loaded);
  return loaded;
}

// Most tokens are short names: two loads from each end, which may overlap, see all of them. Texts with the same hash
// can at worst push each other out.
std::uint64_t HashOf(std::u16string_view text) {
  const std::size_t length = text.size();
  if (length < 4 || length > 16) return NQ_TString::HashOf(text);
  const char16_t* const begin = text.data();
  const char16_t* const end = begin + length;
  const std::size_t inner = length < 8 ? 0 : 4;
  // Odd numbers with well mixed bits: the primes of XXH64.
  const std::uint64_t hash = Load(begin) * 0x9E3779B185EBCA87 + Load(begin + inner) * 0xC2B2AE3D27D4EB4F +
                             Load(end - 4 - inner) * 0x165667B19E3779F9 + Load(end - 4) * 0x85EBCA77C2B2AE63 + length;
  const std::uint64_t mixed = (hash ^ hash >> 32) * 0x27D4EB2F165667C5;
  return mixed ^ mixed >> 32;
}

}  // namespace

TTokenCache::TPointer TTokenCache::Find(std::u16string_view text) {
  if (text.size() > kMaxLength) return nullptr;
  const std::uint64_t hash = HashOf(text);
  TPlace& first = places_[hash % kPlaces];
  if (first.Holds(text, hash)) return first.kept;
  TPlace& second = places_[hash / kPlaces % kPlaces];
  if (second.Holds(text, hash)) return second.kept;
  TPlace& place = first.kept != nullptr && second.kept == nullptr ? second : first;
  if (std::exchange(place.missed, hash) != hash) return nullptr;
  place.kept = new TKeptToken(text);
  place.hash = hash;
  return place.kept;
}

}  // namespace templatenames
