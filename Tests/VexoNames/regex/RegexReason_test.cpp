// What template authors are told.
#include "regex/RegexReason.h"

#include "Support.h"

namespace templatenames {
namespace {

using names_test::Repeated;
using names_test::S;
using names_test::Text;
using std::string;

TEST(RegexReason, Sentences) {
  struct {
    string pattern;
    const char* value;
    const char* sentence;  // after the pattern
    const char* suggestion;
  } const cases[] = {
      {"(a", "a",
       " cannot be used: missing ) at its end; close the bracket, or write \\( for a bracket that is part of the text",
       ""},
      {"\u00f8a))", "a",
       " cannot be used: unmatched parentheses at character 3, where \")\" stands; open the bracket before it, or "
       "write \\) for a bracket that is part of the text",
       ""},
      {"a(?\u00f8)", "a",
       " cannot be used: unrecognized character after (? or (?- at character 4, where \"\u00f8\" stands", ""},
      {"(z)", "a", " matches no part of the value", ""},
      {"a|b", "a",
       " matches, but nothing in it says which part to take: put round brackets around the part that is wanted",
       "(a|b)"},
      {"\\Qa", "a",
       " matches, but nothing in it says which part to take: put round brackets around the part that is wanted", ""},
      {"(*UTF8)a", "a",
       " matches, but nothing in it says which part to take: put round brackets around the part that is wanted", ""},
      {"(b)|a", "a",
       " matches, but its first pair of round brackets has no part in that: put the first pair around the part that is "
       "wanted, and write (?: for pairs that only hold together",
       ""},
      {"(?:a+)+(\\d)", "aaaaaaaaaaaaaaaaaa?",
       " takes more steps than the limit regexMatch allows: repeats within repeats, such as (a+)+, are slow", ""},
      {"((?(?=a)(?1)|b))", "a", " calls itself at the same place of the value for ever", ""},
      {"(a)", "a", nullptr, ""},
  };
  for (const auto& row : cases) {
    const TRegexOutcome outcome = FirstGroup(S(row.pattern), S(row.value), {1'000, 1'000});
    const string begin = "the regular expression \"" + row.pattern + "\"";
    EXPECT_EQ(Text(RegexReason(outcome, S(row.pattern))), row.sentence == nullptr ? "" : begin + row.sentence);
    EXPECT_EQ(Text(RegexSuggestion(outcome, S(row.pattern))), row.suggestion) << row.pattern;
  }
}

TEST(RegexReason, ShortensLongPatterns) {
  const TRegexResult none{TRegexResult::TKind::NoMatch};
  const string clef = "\U0001D11E";
  EXPECT_EQ(Text(RegexReason(none, S("x" + Repeated(clef, 40)))),
            "the regular expression \"x" + Repeated(clef, 29) + "\u2026\" matches no part of the value");
}

}  // namespace
}  // namespace templatenames
