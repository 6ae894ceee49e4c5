// What a date pattern is made of: fields, each a run of one letter, and text between them.
//
//   PartsOf(u"d. MMMM 'um' H");       // d | ". " | MMMM | " um " | H
//
//   pattern = { letter { the same letter } | "''" | "'" { literal | "''" } "'" | literal }
//
// Whether a letter means anything is not looked at. Nothing here fails; any thread may call.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace templatenames {

/// Calls onField(letter, count), until it returns false, and onLiteral(unit). Returns whether it came to the end.
template <class TOnField, class TOnLiteral>
bool ForEachDatePart(std::u16string_view pattern, const TOnField& onField, const TOnLiteral& onLiteral) {
  const auto isLetter = [](char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); };
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size();) {
    const char16_t unit = pattern[i];
    const std::size_t next = std::min(pattern.find_first_not_of(unit, i), pattern.size());
    if (unit == u'\'' && next - i == 1) {
      quoted = !quoted;
      ++i;
    } else if (unit == u'\'') {
      onLiteral(unit);
      i += 2;
    } else if (quoted || !isLetter(unit)) {
      onLiteral(unit);
      ++i;
    } else {
      if (!onField(unit, next - i)) return false;
      i = next;
    }
  }
  return true;
}

/// Whether one of the letters is that of a field.
inline bool HasFieldOf(std::u16string_view letters, std::u16string_view pattern) {
  const auto isOther = [&](char16_t letter, std::size_t) { return letters.find(letter) == std::u16string_view::npos; };
  return !ForEachDatePart(pattern, isOther, [](char16_t) {});
}

struct TDatePart {
  bool isField;
  std::u16string text;  // without quotes

  char16_t Letter() const { return isField ? text.front() : u'\0'; }
};

std::vector<TDatePart> PartsOf(std::u16string_view pattern);
/// The pattern that has these parts; quotes stand only where letters are text.
std::u16string PatternOf(const std::vector<TDatePart>& parts);

}  // namespace templatenames
