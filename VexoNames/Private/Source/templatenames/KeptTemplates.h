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

#include "Token.h"

namespace templatenames {

/// A template in split form. Used under the registry lock, hence the plain reference count.
struct TKeptTemplate : boost::intrusive_ref_counter<TKeptTemplate, boost::thread_unsafe_counter> {
  struct TPiece {
    TScannedToken place;
    TToken token;
  };

  explicit TKeptTemplate(const NQ_TString& text);
  std::size_t Weight() const;  // bytes, about

  NQ_TString source;
  std::vector<TPiece> pieces;
  std::size_t done = 0;  // the text after it holds no token
  bool syntaxError = false;
};

class TKeptTemplates {
 public:
  using TPointer = boost::intrusive_ptr<TKeptTemplate>;

  /// The split form of a text that does not begin with the literal marker; null the first time a text comes, and for
  /// texts too large to keep.
  TPointer Find(const NQ_TString& text);

 private:
  /// Templates by text.
  struct THash {
    using is_transparent = void;
    std::size_t operator()(const TPointer& kept) const { return HashOf(kept->source); }
    std::size_t operator()(const NQ_TString& text) const { return HashOf(text); }
  };
  struct TSameText {
    using is_transparent = void;
    bool operator()(const TPointer& a, const TPointer& b) const { return a == b; }
    bool operator()(const TPointer& kept, const NQ_TString& text) const { return kept->source == text; }
    bool operator()(const NQ_TString& text, const TPointer& kept) const { return kept->source == text; }
  };
  using TGeneration = absl::flat_hash_set<TPointer, THash, TSameText>;

  static std::uint64_t HashOf(const NQ_TString& text);
  bool SeenBefore(const NQ_TString& text);
  void Keep(const TPointer& kept);

  TGeneration young_;
  TGeneration old_;
  std::size_t youngWeight_ = 0;
  std::array<std::uint64_t, 256> seen_{};  // hashes of texts that came once, each in the place its low bits name
};

}  // namespace templatenames
