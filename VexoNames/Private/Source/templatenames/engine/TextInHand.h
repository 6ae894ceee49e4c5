// The text of a value on its way to the result.
//
// It stands at the end of the result from the first step on that writes it, or elsewhere (in the registry) as long as
// steps only look at it and cut it, and is then written once, at its end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

template <std::size_t kUnits>
void CopyBlock(const char16_t* from, char16_t* to) {
  std::memcpy(to, from, kUnits * sizeof(char16_t));
}

/// Copies a text of at least so many units and at most twice as many: two blocks, which may overlap.
template <std::size_t kUnits>
void CopyTwoBlocks(std::u16string_view text, char16_t* to) {
  const std::size_t last = text.size() - kUnits;
  CopyBlock<kUnits>(text.data(), to);
  CopyBlock<kUnits>(text.data() + last, to + last);
}

/// Most pieces are so short that a call would take longer than to copy them.
inline void CopyUnits(std::u16string_view text, char16_t* to) {
  const std::size_t length = text.size();
  if (length > 32) {
    std::memcpy(to, text.data(), length * sizeof(char16_t));
  } else if (length >= 16) {
    CopyTwoBlocks<16>(text, to);
  } else if (length >= 8) {
    CopyTwoBlocks<8>(text, to);
  } else if (length >= 4) {
    CopyTwoBlocks<4>(text, to);
  } else {
    for (std::size_t i = 0; i < length; ++i) to[i] = text[i];
  }
}

/// Appends a text that does not lie in the string.
inline void AppendUnits(std::u16string_view text, NQ_TString& out) {
  if (!text.empty()) CopyUnits(text, out.AppendUninitialized(static_cast<unsigned int>(text.size())));
}

/// Whether the text lies in the string, and goes when that grows.
inline bool LiesIn(std::u16string_view text, const NQ_TString& out) {
  const std::u16string_view units = out.StringView();
  return std::less_equal<>()(units.data(), text.data()) && std::less<>()(text.data(), units.data() + units.size());
}

class TTextInHand {
 public:
  /// The text, once written, is what stands in the string from here on.
  explicit TTextInHand(NQ_TString& out) : out_(out), begin_(out.Length()) {}

  std::u16string_view View() const { return written_ ? Written().substr(from_, length_) : elsewhere_; }

  /// It stands there, and stays there until it is written.
  void SetElsewhere(std::u16string_view text) {
    elsewhere_ = text;
    written_ = false;
  }
  /// It is all that was appended to the string.
  void SetWritten() {
    begin_ = std::min(begin_, out_.Length());  // a handler may have changed the caller's string
    from_ = 0;
    length_ = out_.Length() - begin_;
    written_ = true;
  }
  /// It cannot be known without calling somebody; it looks empty from here on.
  void SetUnknown() {
    Replace({});
    unknown_ = true;
  }
  bool IsUnknown() const { return unknown_; }
  /// It is another text, which does not lie in the string.
  void Replace(std::u16string_view text) {
    out_.Truncate(begin_);
    AppendUnits(text, out_);
    SetWritten();
  }
  /// It is that part of itself.
  void Cut(std::u16string_view part) {
    if (!written_) {
      elsewhere_ = part;
      return;
    }
    if (!part.empty()) from_ = static_cast<unsigned int>(part.data() - Written().data());
    length_ = static_cast<unsigned int>(part.size());
  }
  /// It is what was appended behind it; what stood before goes.
  void KeepAppended(unsigned int end) {
    from_ = end - begin_;
    length_ = out_.Length() - end;
    written_ = true;
  }
  /// Makes it all that stands in the string from its begin on.
  void Settle() {
    if (!written_) {
      AppendUnits(elsewhere_, out_);
      SetWritten();
    } else if (length_ != out_.Length() - begin_) {
      char16_t* const begin = out_.AppendUninitialized(0) - (out_.Length() - begin_);
      std::memmove(begin, begin + from_, length_ * sizeof(char16_t));
      out_.Truncate(begin_ + length_);
      from_ = 0;
    }
  }

  NQ_TString& Out() { return out_; }
  unsigned int Begin() const { return begin_; }

 private:
  std::u16string_view Written() const { return out_.StringView().substr(begin_); }

  NQ_TString& out_;
  unsigned int begin_;
  bool written_ = false;
  bool unknown_ = false;
  unsigned int from_ = 0;  // of the text, behind begin_
  unsigned int length_ = 0;
  std::u16string_view elsewhere_;
};

}  // namespace templatenames
