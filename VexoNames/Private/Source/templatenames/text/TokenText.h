// What stands in a token.
//
//   token-text = { " " } key [ " " { " " } { attribute } ]
//   attribute  = ( "format" | "elem" | "extract" | "regex" ) "=" quote value quote
//
// There is no escape: a value runs to the next double quote, or to the end of the token text.
#pragma once

#include <string_view>

namespace templatenames {

inline constexpr std::u16string_view kAttributeNames[] = {u"format", u"elem", u"extract", u"regex"};

/// A token text, split. The views lie in the token text; an absent attribute is empty.
struct TTokenText {
  std::u16string_view key;
  std::u16string_view format;
  std::u16string_view elem;
  std::u16string_view extract;
  std::u16string_view regex;

  bool HasStages() const { return !(elem.empty() && extract.empty() && regex.empty()); }
};

/// Splits a token text. The key reaches from the first character that is no space (U+0020) to the last one before the
/// attributes; each attribute is found by its first occurrence anywhere in the text.
TTokenText SplitTokenText(std::u16string_view text);

}  // namespace templatenames
