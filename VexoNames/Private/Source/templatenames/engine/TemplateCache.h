// Templates kept in split form.
//
// Callers hand over the same few templates as plain strings all day. A text that comes a second time is kept split, so
// that from the third time on nothing is scanned. What is kept is bounded by weight: two generations, of which the
// older one is dropped when the younger one is full; a text that is used moves to the younger one.
#pragma once

#include <absl/container/flat_hash_set.h>

#include <array>
#include <boost/intrusive_ptr.hpp>

#include "engine/Template.h"

namespace templatenames {

class TTemplateCache {
 public:
  using TPointer = boost::intrusive_ptr<TTemplate>;

  /// The split form of a text that does not begin with the literal marker; null the first time a text comes, and for
  /// texts too large to keep.
  TPointer Find(const NQ_TString& text);

 private:
  /// A text that is looked for.
  struct TWanted {
    const NQ_TString& text;
    std::uint64_t hash;
  };
  /// Templates by text.
  struct THash {
    using is_transparent = void;
    std::size_t operator()(const TPointer& kept) const { return kept->hash; }
    std::size_t operator()(const TWanted& wanted) const { return wanted.hash; }
  };
  struct TSameText {
    using is_transparent = void;
    bool operator()(const TPointer& a, const TPointer& b) const { return a == b; }
    bool operator()(const TPointer& kept, const TWanted& wanted) const {
      return kept->hash == wanted.hash && kept->source == wanted.text;
    }
    bool operator()(const TWanted& wanted, const TPointer& kept) const { return (*this)(kept, wanted); }
  };
  using TGeneration = absl::flat_hash_set<TPointer, THash, TSameText>;

  static std::uint64_t HashOf(const NQ_TString& text);
  TPointer Search(const TWanted& wanted);
  bool SeenBefore(std::uint64_t hash);
  void Keep(const TPointer& kept);

  TGeneration young_;
  // Some of the younger generation, each in the place that the low bits of its hash name: found without a search.
  static constexpr std::size_t kRecent = 16;
  std::array<TTemplate*, kRecent> recent_{};
  TGeneration old_;
  std::size_t youngWeight_ = 0;
  // Hashes of texts that came once, the latest first, in the row that their low bits name.
  using TSeen = std::array<std::uint64_t, 4>;
  std::array<TSeen, 64> seen_{};
};

}  // namespace templatenames
