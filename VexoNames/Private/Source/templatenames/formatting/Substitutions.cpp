#include "formatting/Substitutions.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace templatenames {

bool TSubstitutions::Add(std::u16string_view find, std::u16string_view replace) {
  if (find.size() != 1 || find.front() >= kAscii || putIn_.Has(find.front()) || count_ == kMost) return false;
  if (TextFor(find.front()) != nullptr) return true;  // no such character is left
  TText& text = texts_[count_++];
  numbers_[find.front()] = static_cast<std::uint8_t>(count_);
  text.length = static_cast<char16_t>(std::min(replace.size(), kShort + 1));
  text.text = replace.data();
  text.textLength = replace.size();
  for (std::size_t i = 0; i < replace.size(); ++i) {
    if (i < kShort) text.units[i] = replace[i];
    if (replace[i] < kAscii) putIn_.Add(replace[i]);
  }
  return true;
}

void TSubstitutions::Clear() {
  numbers_ = {};
  putIn_ = {};
  count_ = 0;
}

// The first position at which something changes, or the length.
std::size_t TSubstitutions::FirstChange(std::u16string_view text, std::size_t from, bool others) const {
  const auto changes = [&](char16_t unit) { return TextFor(unit) != nullptr || (others && unit >= kAscii); };
  return static_cast<std::size_t>(std::find_if(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), changes) -
                                  text.begin());
}

// Writes what becomes of the characters up to `stop`; stops before one that becomes something longer than kShort units.
char16_t* TSubstitutions::ApplyShort(std::u16string_view text, std::size_t& at, std::size_t stop, bool others,
                                     char16_t* out) const {
  for (; at < stop; ++at) {
    const char16_t unit = text[at];
    if (const TText* const put = TextFor(unit)) {
      if (put->length > kShort) break;
      std::memcpy(out, put, sizeof put->units + sizeof put->length);
      out += put->length;
    } else {
      if (others && unit >= kAscii) break;
      *out++ = unit;
    }
  }
  return out;
}

bool TSubstitutions::Apply(NQ_TString& value, std::size_t from, TAddOther addOther) const {
  const bool others = addOther != nullptr;
  const std::u16string_view text = value.StringView();
  std::size_t at = FirstChange(text, from, others);
  if (at == text.size()) return true;
  TRewriting rewriting(value);
  rewriting.Add(text.substr(0, at));
  while (at < text.size() && !rewriting.TooLong()) {
    constexpr std::size_t kTogether = 96;
    constexpr std::size_t kRoom = kTogether * kShort + 1;
    const std::size_t stop = std::min(at + kTogether, text.size());
    rewriting.Took(ApplyShort(text, at, stop, others, rewriting.Room(kRoom)));
    if (at == stop) continue;
    if (const TText* const put = TextFor(text[at])) {
      rewriting.Add({put->text, put->textLength});
      ++at;
    } else {
      addOther(text, at, rewriting);
    }
  }
  return rewriting.Finish();
}

}  // namespace templatenames
