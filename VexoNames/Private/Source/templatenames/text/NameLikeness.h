// How far a key lies from a name that it may stand for.
//
//   TNameLikeness key(u"Job_CustmerName");
//   key.DistanceTo(u"jobcustomername").edits   // 1: case and separators do not count
//
// The distance is that of the cheapest way to write the one for the other: up to three edits, words exchanged
// ("namecustomer" for "customername"), or a part left out ("jobname" for "jobcustomername"). Which letters make a word
// is not known and need not be: exchanged words leave the letters as they are, and nearly all neighbours neighbours.
// Pure, any thread.
#pragma once

#include <string>
#include <string_view>
#include <tuple>

namespace templatenames {

/// What is compared of a name: its units without case and without separators ("_", "-", ".", ":" and blanks).
std::u16string LettersOf(std::u16string_view name);

struct TNameDistance {
  unsigned letters = 0;      // of the letters; kEdit for one edit
  bool otherDigits = false;  // "customerinfo2" and "customerinfo3" are further from each other than they look
  unsigned separators = 0;   // edits of the texts with their separators
  bool otherFirst = false;   // they begin with different letters
  int added = 0;             // letters that the key has more: one left out is likelier than just that one put in

  static constexpr unsigned kEdit = 1'000;
  static constexpr unsigned kFar = 1'000'000;

  auto operator<=>(const TNameDistance&) const = default;  // NOLINT(modernize-use-nullptr): clang-tidy 14 misreads it
};

class TNameLikeness {
 public:
  explicit TNameLikeness(std::u16string_view key);

  const std::u16string& Letters() const { return letters_; }
  TNameDistance DistanceTo(std::u16string_view name) const;

 private:
  unsigned LetterDistance(std::u16string_view other) const;
  bool HasWordsExchanged(std::u16string_view other) const;
  bool IsPartOf(std::u16string_view other) const;

  std::u16string folded_;
  std::u16string letters_;
  std::u16string sorted_;  // the letters in order
  std::u16string digits_;
};

}  // namespace templatenames
