// What a pattern's text tells about how it may be searched for.
//
// PCRE's machine code and its interpreter disagree in corners: verbs, conditions, recursion, back references and the
// like. And a search may be cut into one attempt per place of the text only when no attempt has a say in the next.
//
//   ReadPattern("(a+)b")            neither interpreted nor tied
//   ReadPattern("\\G(a)").text      "\\A(a)"
//   ReadPattern("\\\\G(a)").text    the same as before: G is a letter
//
// Knows escapes, quotes, classes, comments and the option x, so that only what PCRE takes for a construct counts. Of a
// pattern that PCRE refuses the answer means nothing, and its text stays as refused as it was. Pure functions.
#pragma once

#include <string>

namespace templatenames {

struct TPattern {
  /// The pattern, with "\\A" for each "\\G": in a search from the beginning of a text they mean the same, and "\\A"
  /// still does when the search is cut into attempts.
  std::string text;
  /// It holds constructs for which only the interpreter is certain to give what a plain pcre_exec gives.
  bool interpreted = false;
  /// How an attempt ended decides about the places that are tried after it.
  bool tied = false;
};

TPattern ReadPattern(std::string pattern);

}  // namespace templatenames
