// Replacing single characters by texts, many of them in one pass.
//
//   TSubstitutions substitutions;
//   substitutions.Add(u"&", u"&amp;");
//   substitutions.Add(u"<", u"&lt;");
//   substitutions.Apply(value);
//
// The result is that of replacing every occurrence of the first character, then every occurrence of the second in what
// came out, and so on. Therefore Add refuses a character that an earlier one puts in: to be replaced afterwards. Texts
// are not copied and must outlive the object. Applying takes time linear in value and result. Any thread may apply one
// object at the same time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "NQ_TString.h"
#include "formatting/Rewriting.h"

namespace templatenames {

class TSubstitutions {
 public:
  /// Adds what `find` is replaced by; false, with nothing added, when `find` is not one ASCII character, is put in by
  /// an earlier one, or when there are too many.
  bool Add(std::u16string_view find, std::u16string_view replace);
  void Clear();

  /// Replaces in the value, behind its first `from` characters; false, with the value unchanged, when the result is too
  /// long (kMostRewritten). `addOther`, if given, adds what becomes of the character beyond ASCII at that position, and
  /// moves the position past it.
  using TAddOther = void (*)(std::u16string_view text, std::size_t& at, TRewriting& rewriting);
  bool Apply(NQ_TString& value, std::size_t from = 0, TAddOther addOther = nullptr) const;

 private:
  static constexpr std::size_t kAscii = 128;
  static constexpr std::size_t kMost = 64;

  // A short text is copied with all its units and its length, sixteen bytes at once.
  static constexpr std::size_t kShort = 7;
  struct TText {
    char16_t units[kShort];
    char16_t length;  // kShort + 1 when the text is longer
    const char16_t* text;
    std::size_t textLength;
  };

  // A set of ASCII characters.
  class TSet {
   public:
    bool Has(char16_t unit) const { return unit < kAscii && (words_[unit / 64] >> unit % 64 & 1) != 0; }
    void Add(char16_t ascii) { words_[ascii / 64] |= std::uint64_t{1} << ascii % 64; }

   private:
    std::array<std::uint64_t, kAscii / 64> words_{};
  };

  std::size_t FirstChange(std::u16string_view text, std::size_t from, bool others) const;
  char16_t* ApplyShort(std::u16string_view text, std::size_t& at, std::size_t stop, bool others, char16_t* out) const;

  const TText* TextFor(char16_t unit) const {
    const std::size_t number = unit < kAscii ? numbers_[unit] : 0;
    return number == 0 ? nullptr : &texts_[number - 1];
  }

  TSet putIn_;
  std::size_t count_ = 0;
  std::array<std::uint8_t, kAscii> numbers_{};  // of the text for a character, from 1 on; 0: it stays
  std::array<TText, kMost> texts_;              // the first count_ are set
};

}  // namespace templatenames
