#include "formatting/text/Substitutions.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "text/Find.h"

namespace templatenames {

TSubstitutions::TSubstitutions(std::u16string_view rare) {
  for (const char16_t unit : rare) rare_.push_back(UnitBlock(unit));
  for (std::size_t i = 0; i < kAscii; ++i) texts_[i] = {{static_cast<char16_t>(i)}, 1};
}

bool TSubstitutions::Add(std::u16string_view find, std::u16string_view replace) {
  if (find.size() != 1 || find.front() >= kAscii || putIn_[find.front()]) return false;
  if (replaced_[find.front()]) return true;  // no such character is left
  TText& text = texts_[find.front()];
  if (replace.size() <= kShort) {
    replace.copy(text.units, kShort);
    text.length = static_cast<char16_t>(replace.size());
  } else {
    text = {{static_cast<char16_t>(long_.size())}, kShort + 1};
    long_.push_back(replace);
  }
  replaced_.set(find.front());
  for (const char16_t unit : replace)
    if (unit < kAscii) putIn_.set(unit);
  return true;
}

// Writes what becomes of a character; false when that takes more than copying sixteen bytes.
inline bool TSubstitutions::PutShort(char16_t unit, bool others, char16_t*& out) const {
  if (unit >= kAscii) {
    if (!others) *out++ = unit;
    return !others;
  }
  const TText& put = texts_[unit];
  const std::size_t length = put.length;
  if (length > kShort) return false;
  std::memcpy(out, &put, sizeof put);
  out += length;
  return true;
}

// The same for two ASCII characters, with half the checks: lengths are below kShort + 1, a power of two, or equal to
// it.
inline bool TSubstitutions::PutTwo(char16_t first, char16_t second, char16_t*& out) const {
  if ((first | second) >= static_cast<int>(kAscii)) return false;
  const TText& one = texts_[first];
  const TText& two = texts_[second];
  const std::size_t length = one.length, next = two.length;
  if ((length | next) > kShort) return false;
  std::memcpy(out, &one, sizeof one);
  std::memcpy(out + length, &two, sizeof two);
  out += length + next;
  return true;
}

// Writes what becomes of the characters from `at` up to `stop`; returns the first one for which PutShort does not do.
std::size_t TSubstitutions::PutAll(std::u16string_view text, std::size_t at, std::size_t stop, bool others,
                                   char16_t*& out) const {
  char16_t* end = out;  // local: for all that the compiler knows, what is written could lie anywhere
  // By twos, and one by itself where that does not do. The plainer forms of this loop take up to a tenth longer.
  do {
    while (at + 1 < stop && PutTwo(text[at], text[at + 1], end)) at += 2;
  } while (at < stop && PutShort(text[at], others, end) && ++at < stop);
  out = end;
  return at;
}

// The same where most blocks have nothing to replace.
std::size_t TSubstitutions::PutBlocks(std::u16string_view text, std::size_t at, std::size_t stop,
                                      char16_t*& out) const {
  char16_t* end = out;
  while (at < stop) {
    const std::size_t next = std::min(at + kUnitBlock, stop);
    if (next - at == kUnitBlock && !HasUnitInBlock(&text[at], rare_)) {
      end = std::copy_n(&text[at], kUnitBlock, end);
      at = next;
    }
    while (at < next && PutShort(text[at], false, end)) ++at;
    if (at < next) break;
  }
  out = end;
  return at;
}

bool TSubstitutions::Apply(std::size_t most, NQ_TString& value, std::size_t from, TAddOther addOther) const {
  const std::u16string_view text = value.StringView();
  TRewriting rewriting(most, value);
  if (from > 0) rewriting.Add(text.substr(0, from));
  for (std::size_t at = from; at < text.size() && !rewriting.TooLong();) {
    const std::size_t stop = std::min(at + kTogether, text.size());
    char16_t* out = rewriting.Room(kTogether * kShort + 1);
    at = rare_.empty() ? PutAll(text, at, stop, addOther != nullptr, out) : PutBlocks(text, at, stop, out);
    rewriting.Took(out);
    if (at == stop) continue;
    if (text[at] < kAscii) {
      rewriting.Add(long_[texts_[text[at++]].units[0]]);
    } else {
      addOther(text, at, rewriting);
    }
  }
  return rewriting.Finish();
}

}  // namespace templatenames
