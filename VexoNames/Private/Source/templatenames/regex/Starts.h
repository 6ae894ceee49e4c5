// The places of a text at which a match of a pattern can begin, as far as PCRE knows that beforehand.
//
//   for (std::size_t at = starts.Next(text, 0); at != TStarts::kNone; at = starts.Next(text, at + 1)) ...
//
// These are the places that a search by PCRE tries too, so that trying them one by one finds the same match.
#pragma once

#include <pcre.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace templatenames {

class TStarts {
 public:
  static constexpr std::size_t kNone = std::string_view::npos;

  TStarts() = default;  // none at all
  /// The study may be null.
  TStarts(const pcre* code, const pcre_extra* study);

  /// The first place from there on, in UTF-8 text; kNone when there is no other.
  std::size_t Next(std::string_view text, std::size_t from) const;
  /// How many there are, or the first number above `most`.
  std::size_t Count(std::string_view text, std::size_t most) const;
  /// None lies behind this one: after it the text has no character of those that every match holds; −1 when there is
  /// none at all.
  std::ptrdiff_t Last(std::string_view text) const;

 private:
  enum class TKind { Nowhere, Beginning, Lines, Bytes };

  void AllowBytes(const pcre* code, const pcre_extra* study);

  TKind kind_ = TKind::Nowhere;
  std::array<bool, 256> first_{};  // of Bytes: with what a match can begin
  bool atEnd_ = false;             // of Bytes: it can begin at the end of the text
  char required_ = 0;              // a character of every match, a letter in either case
};

}  // namespace templatenames
