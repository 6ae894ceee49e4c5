#include "formatting/date/DatePatternParts.h"

namespace templatenames {
namespace {

// From the first letter to the last stands between quotes.
std::u16string Quoted(const std::u16string& literal) {
  static constexpr char16_t kLetters[] = u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::size_t first = literal.find_first_of(kLetters), last = literal.find_last_of(kLetters);
  std::u16string pattern;
  for (std::size_t i = 0; i < literal.size(); ++i) {
    if (i == first) pattern += u'\'';
    pattern.append(literal[i] == u'\'' ? 2 : 1, literal[i]);
    if (i == last) pattern += u'\'';
  }
  return pattern;
}

}  // namespace

std::vector<TDatePart> PartsOf(std::u16string_view pattern) {
  std::vector<TDatePart> parts;
  const auto addField = [&](char16_t letter, std::size_t count) {
    parts.push_back({true, std::u16string(count, letter)});
    return true;
  };
  const auto addLiteral = [&](char16_t unit) {
    if (parts.empty() || parts.back().isField) parts.push_back({false, {}});
    parts.back().text += unit;
  };
  ForEachDatePart(pattern, addField, addLiteral);
  return parts;
}

std::u16string PatternOf(const std::vector<TDatePart>& parts) {
  std::u16string pattern, literal;  // literals that stand together are one: quotes between them would be an apostrophe
  for (const TDatePart& part : parts) {
    if (!part.isField) {
      literal += part.text;
      continue;
    }
    pattern += Quoted(literal) + part.text;
    literal.clear();
  }
  return pattern + Quoted(literal);
}

}  // namespace templatenames
