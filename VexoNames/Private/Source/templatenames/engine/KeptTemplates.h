// Templates kept in split form.
//
// Callers hand over the same few templates as plain strings all day. A text that comes a second time is kept split, so
// that from the third time on nothing is scanned. What is kept is bounded by weight: two generations, of which the
// older one is dropped when the younger one is full; a text that is used moves to the younger one.
#pragma once

#include <absl/container/flat_hash_set.h>

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <vector>

#include "engine/Token.h"

namespace templatenames {

/// A template in split form. Used under the registry lock, hence the plain reference count.
struct TKeptTemplate : boost::intrusive_ref_counter<TKeptTemplate, boost::thread_unsafe_counter> {
  /// A token and the text between it and the one before, as positions in the source.
  struct TPiece {
    std::uint32_t literal = 0;  // begin of that text
    std::uint32_t begin = 0;    // of the token, the end of that text
    std::uint32_t end = 0;      // of the token
    std::uint32_t token = 0;    // index of what stands in it
  };

  TKeptTemplate(const NQ_TString& text, std::uint64_t textHash);
  std::size_t Weight() const;  // bytes, about

  NQ_TString source;
  std::uint64_t hash;
  std::vector<TPiece> pieces;
  std::vector<TToken> tokens;  // each different one once: a name may occur often
  std::size_t done = 0;        // the text after it holds no token
  bool syntaxError = false;
};

class TKeptTemplates {
 public:
  using TPointer = boost::intrusive_ptr<TKeptTemplate>;

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
  std::array<TKeptTemplate*, kRecent> recent_{};
  TGeneration old_;
  std::size_t youngWeight_ = 0;
  // Hashes of texts that came once, the latest first, in the row that their low bits name.
  using TSeen = std::array<std::uint64_t, 4>;
  std::array<TSeen, 64> seen_{};
};

}  // namespace templatenames
