// Replacing single characters by texts, many of them in one pass.
//
//   TSubstitutions substitutions;
//   substitutions.Add(u"&", u"&amp;");
//   substitutions.Add(u"<", u"&lt;");
//   if (!substitutions.Apply(most, value)) ...      // the result would be longer than that
//
// The result is that of replacing every occurrence of the first character, then every occurrence of the second in what
// came out, and so on. Therefore Add refuses a character that an earlier one puts in: to be replaced afterwards. Texts
// are not copied and must outlive the object. Applying takes time linear in value and result. Any thread may apply one
// object at the same time.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <string_view>
#include <vector>

#include "NQ_TString.h"
#include "formatting/text/Rewriting.h"
#include "text/Find.h"

namespace templatenames {

class TSubstitutions {
 public:
  /// `rare`, if given, is all characters that will be added. It says that most of the text is free of them, and is
  /// worth looking at in blocks; no `addOther` then.
  explicit TSubstitutions(std::u16string_view rare = {});

  /// Adds what `find` is replaced by; false, with nothing added, when `find` is not one ASCII character, or is put in
  /// by an earlier one.
  bool Add(std::u16string_view find, std::u16string_view replace);

  /// Replaces in the value, behind its first `from` characters; false, with the value unchanged, when the result would
  /// be longer than `most` and longer than the value. `addOther`, if given, adds what becomes of the character beyond
  /// ASCII at that position, and moves the position past it.
  using TAddOther = void (*)(std::u16string_view text, std::size_t& at, TRewriting& rewriting);
  [[nodiscard]] bool Apply(std::size_t most, NQ_TString& value, std::size_t from = 0,
                           TAddOther addOther = nullptr) const;

 private:
  static constexpr std::size_t kAscii = 128;
  static constexpr std::size_t kTogether = 96;  // characters for which there is room at once

  // What becomes of a character. All units and the length are copied, sixteen bytes at once, whatever the length is:
  // a branch that depends on the text costs more.
  static constexpr std::size_t kShort = 7;
  struct TText {
    char16_t units[kShort];
    char16_t length;  // kShort + 1 when the text is longer: units[0] is its place in long_
  };
  static_assert(sizeof(TText) == 16);

  bool PutShort(char16_t unit, bool others, char16_t*& out) const;
  bool PutTwo(char16_t first, char16_t second, char16_t*& out) const;
  std::size_t PutAll(std::u16string_view text, std::size_t at, std::size_t stop, bool others, char16_t*& out) const;
  std::size_t PutBlocks(std::u16string_view text, std::size_t at, std::size_t stop, char16_t*& out) const;

  std::array<TText, kAscii> texts_;  // at first, each character becomes itself
  std::vector<std::u16string_view> long_;
  std::bitset<kAscii> replaced_;
  std::bitset<kAscii> putIn_;
  std::vector<TUnitBlock> rare_;
};

}  // namespace templatenames
