// A template in split form: where its tokens are, and what stands in each.
//
// Parsing knows nothing of the registry. Each different token text is one TToken, however often it occurs.
#pragma once

#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <memory>
#include <vector>

#include "engine/Token.h"
#include "text/TokenNotes.h"

namespace templatenames {

/// A template in split form. Used under the registry lock, hence the plain reference count.
struct TTemplate : boost::intrusive_ref_counter<TTemplate, boost::thread_unsafe_counter> {
  /// A token and the text between it and the one before, as positions in the source.
  struct TPiece {
    std::uint32_t literal = 0;  // begin of that text
    std::uint32_t begin = 0;    // of the token, the end of that text
    std::uint32_t end = 0;      // of the token
    std::uint32_t token = 0;    // index of what stands in it
  };

  TTemplate(const NQ_TString& text, std::uint64_t textHash);
  std::size_t Weight() const;  // bytes, about

  NQ_TString source;
  std::uint64_t hash;
  std::vector<TPiece> pieces;
  std::vector<TToken> tokens;  // each different one once: a name may occur often
  std::size_t done = 0;        // the text after it holds no token
  bool syntaxError = false;
  std::unique_ptr<const std::vector<TSyntaxNote>> notes;  // what is odd outside the tokens; null: not looked for yet
};

}  // namespace templatenames
