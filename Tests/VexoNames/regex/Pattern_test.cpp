// What is told from a pattern's text.
#include "regex/Pattern.h"

#include "Support.h"

namespace templatenames {
namespace {

// The text, where it is not the pattern's own, then the traits.
std::string Described(const std::string& pattern) {
  const TPattern read = ReadPattern(pattern);
  return (read.text == pattern ? "" : read.text + " ") + (read.interpreted ? "interpreted " : "") +
         (read.tied ? "tied" : "");
}

TEST(Pattern, Traits) {
  const std::pair<const char*, const char*> cases[] = {
      // Where an escape, a quote, a class or a comment ends.
      {R"(a\G)", R"(a\A )"},
      {R"(C:\\Gerber\\(.))", ""},
      {R"(\\\G)", R"(\\\A )"},
      {R"(\Q\G(*COMMIT)\E\G)", R"(\Q\G(*COMMIT)\E\A )"},
      {R"(\Q\G)", ""},
      {R"(\c\G\G)", R"(\c\G\A )"},
      {R"([]\G]\G)", R"([]\G]\A )"},
      {R"([^]\G]\G)", R"([^]\G]\A )"},
      {R"([^^]\G)", R"([^^]\A )"},
      {R"([\E]\G]\G)", R"([\E]\G]\A )"},
      {R"([\Q]\E\G]\G)", R"([\Q]\E\G]\A )"},
      {R"([[:alpha:]\G][\c]\G])", ""},
      {R"([[:^alpha:][]\G)", R"([[:^alpha:][]\A )"},
      {R"([:]\G)", R"([:]\A )"},
      {R"((?#(*SKIP[)\G)", R"((?#(*SKIP[)\A )"},

      {"(?x)#\\G[\n\\G", "(?x)#\\G[\n\\A "},
      {"((?x))#\\G\n", "((?x))#\\A\n "},
      {"(?x:#\\G\n)#\\G", "(?x:#\\G\n)#\\A "},
      {"(?x)(?-x:#\\G)#\\G\n(?i-x)#\\G", "(?x)(?-x:#\\A)#\\G\n(?i-x)#\\A "},
      {"((?x)#)\n\\G)#\\G", "((?x)#)\n\\A)#\\A "},
      // Constructs.
      {R"((?i-s)(?:a|\bb)+?(?=c)(?<!\p{L}\x{e8})(?>.*)(?<n>\R)(?'m'\d{2,})(?P<o>$))", ""},
      {"a*+", "interpreted "},
      {"a{2}+", "interpreted "},
      {"[*+]", ""},
      {R"((a)\1)", "interpreted "},
      {R"(\K)", "interpreted "},
      {"(?|a)", "interpreted "},
      {"(?(1)a)", "interpreted "},
      {"(?J)", "interpreted "},
      {"(?P>n)", "interpreted "},
      {"(?-1)", "interpreted "},
      {"(*F)", "interpreted "},
      {"(*MARK:COMMIT)", "interpreted "},
      {"(*SKIP:m)", "interpreted tied"},
      {"(*ANYCRLF)", "interpreted tied"},
  };
  for (const auto& [pattern, described] : cases) EXPECT_EQ(Described(pattern), described) << pattern;
}

}  // namespace
}  // namespace templatenames
