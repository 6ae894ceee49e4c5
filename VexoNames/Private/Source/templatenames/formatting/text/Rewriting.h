// Writing a text anew, piece by piece, in place of the text that the pieces are made from.
//
//   TRewriting rewriting(most, value);
//   rewriting.Add(u"a"); ...
//   return rewriting.Finish();
//
// Pieces may lie in the value, which is unchanged until Finish. A short result takes no memory but the value's.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "NQ_TString.h"

namespace templatenames {

class TRewriting {
 public:
  /// The new text may have that many units, or as many as the old one has when those are more. A few replacements that
  /// double the text would exhaust the memory otherwise.
  TRewriting(std::size_t most, NQ_TString& value) : value_(value), most_(std::max<std::size_t>(most, value.Length())) {}

  /// Room for that many units, at most kRoom, to be written from there on; Took says up to where they were.
  char16_t* Room(std::size_t units) {
    if (static_cast<std::size_t>(std::end(units_) - end_) < units) Flush();
    return end_;
  }
  void Took(char16_t* end) { end_ = end; }
  void Add(std::u16string_view piece) {
    if (piece.size() > kRoom / 4) {
      Flush();
      AppendToWritten(piece);
    } else {
      char16_t* const at = Room(piece.size());
      Took(std::copy(piece.begin(), piece.end(), at));
    }
  }
  /// Whether the result has become too long; what is added from then on is lost.
  bool TooLong() const { return tooLong_; }
  /// Gives the value its new text; false, with the value unchanged, when that is too long.
  bool Finish() {
    if (written_.Empty() && !tooLong_ && Collected().size() <= most_) {
      const std::u16string_view collected = Collected();
      value_.Clear();
      collected.copy(value_.AppendUninitialized(static_cast<unsigned int>(collected.size())), collected.size());
      return true;
    }
    Flush();
    if (tooLong_) return false;
    value_ = std::move(written_);
    return true;
  }

  static constexpr std::size_t kRoom = 1024;

 private:
  std::u16string_view Collected() const { return {units_, static_cast<std::size_t>(end_ - units_)}; }
  void Flush() {
    AppendToWritten(Collected());
    end_ = units_;
  }
  void AppendToWritten(std::u16string_view piece) {
    tooLong_ = tooLong_ || piece.size() > most_ || written_.Length() > most_ - piece.size();
    if (!tooLong_) written_.Append(piece);
  }

  NQ_TString& value_;
  const std::size_t most_;
  NQ_TString written_;
  bool tooLong_ = false;
  char16_t* end_ = units_;
  char16_t units_[kRoom];
};

}  // namespace templatenames
