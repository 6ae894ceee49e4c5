// Tokens kept in split form.
//
// The same tokens occur in many templates, so a token text that comes a second time is kept: split, its name found, its
// format and its regular expression read. A table of fixed size holds them, each in one of the two places
// that its hash names; what comes later to places that are taken moves in when it comes twice in a row.
#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "engine/Token.h"

namespace templatenames {

/// Used under the registry lock, hence the plain reference count.
struct TKeptToken : boost::intrusive_ref_counter<TKeptToken, boost::thread_unsafe_counter> {
  explicit TKeptToken(std::u16string_view tokenText) : source(tokenText), token(source.StringView()) {}

  NQ_TString source;
  TToken token;
};

class TTokenCache {
 public:
  using TPointer = boost::intrusive_ptr<TKeptToken>;

  /// The kept form of a token text; null when it is not kept.
  TPointer Find(std::u16string_view text);

 private:
  struct TPlace {
    TPointer kept;
    std::uint64_t hash = 0;    // of what is kept
    std::uint64_t missed = 0;  // of the last text that was not found here

    bool Holds(std::u16string_view text, std::uint64_t textHash) const {
      return hash == textHash && kept != nullptr && kept->source.Equals(text);
    }
  };

  static constexpr std::size_t kPlaces = 512;     // several times the names that the templates of one task use
  static constexpr std::size_t kMaxLength = 256;  // units; longer tokens are rare and not worth their memory

  std::array<TPlace, kPlaces> places_;
};

}  // namespace templatenames
