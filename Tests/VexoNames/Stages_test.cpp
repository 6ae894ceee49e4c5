// The element, extract and regex stages, as tokens and definitions use them: what they leave, what they tell.
#include "Support.h"

namespace names_test {
namespace {

using std::string_literals::operator""s;

TEST(Stages, ResultsAndErrors) {
  const struct {
    const char *stage, *value, *specification;
    const char* result;  // "!4": the token fails and leaves error 4
    const char* message = "";
  } rows[] = {
      {"elem", "a/b/c/d", "/,2", "c"},
      {"elem", "abc", "/,0", "abc"},
      {"elem", "a/b", "/,5", ""},
      {"elem", "x,y,z", ",,1", "y"},
      {"elem", "a--b--c", "--,1", "-b"},  // the next piece begins one character after the separator did
      {"elem", "a/b", "/, +1x", "b"},
      {"elem", "a/b", "/2", "!4"},
      {"elem", "a/b", ",2", "!4"},
      {"elem", "a/b", "", "!4"},
      {"elem", "a/b", "/,-1", "!5"},
      {"elem", "A/a", "a,1", ""},
      {"extract", "abcdefg", "2,3", "cde"},
      {"extract", "abcdefg", "2,-1", "cdefg"},
      {"extract", "abcdefg", "-1,2", "!6"},
      {"extract", "abcdefg", "3", "!7"},
      {"extract", "abcdefg", ",3", "!7"},
      {"extract", "abcdefg", "", "!7"},
      {"extract", "abcdefg", "100,-1", ""},
      {"extract", "abcdefg", "x,2,9", "ab"},
      {"extract", "J\xC3\xB8rg", "1,2", "\xC3\xB8r"},
      {"regex", "job123x", "([0-9]+)", "123"},
      {"regex", "ab", "(a)(b)", "a"},
      {"regex", "b", "(a)?(b)", ""},
      {"regex", "\xC3\xB8x", "(\\w)", "x"},  // letters are the plain ones
      {"regex", "say \"x\"", "\"(.)\"", "x"},
      {"regex", "job", "([0-9]+)", "", "TName:'job' does not match regex '([0-9]+)'\n"},
      {"regex", "%s%n", "%n(x)", "", "TName:'%s%n' does not match regex '%n(x)'\n"},
      {"regex", "123", "[0-9]+", "!0", "TName:'123' matches regex '[0-9]+', but the number of capturing groups is 0\n"},
      // A group that took no part, and none after it, is as no group at all.
      {"regex", "b", "(a)?b", "!0", "TName:'b' matches regex '(a)?b', but the number of capturing groups is 0\n"},
      {"regex", "job", "", "!0", "TName:'job' matches regex '', but the number of capturing groups is 0\n"},
      {"regex", "v", "(", "!0", "TName:Compilation of regex '(' failed at offset 1: missing )\n"},
  };
  for (const auto& row : rows) {
    const bool fails = *row.result == '!';
    const std::string specification = row.specification;
    for (const bool inToken : {true, false}) {
      // A token cannot hold a quote, and an empty attribute of a token is none.
      if (inToken && (specification.empty() || specification.find('"') != specification.npos)) continue;
      SCOPED_TRACE(std::string(row.stage) + " " + specification + (inToken ? " in the token" : " in the definition"));
      Names names(std::string("text A = <<CDATA/>>") + row.value);
      if (!inToken) Do(names, row.stage + " A = "s + specification);
      for (int time = 1; time <= 2; ++time) {
        Output output;
        EXPECT_EQ(ResolvedToken(names, inToken ? "A "s + row.stage + "=\"" + specification + "\"" : "A"),
                  fails ? "!" : row.result);
        EXPECT_EQ(output.Take(), row.message);
        EXPECT_EQ(names.GetError(), fails ? row.result[1] - '0' : 0);
      }
    }
  }
}

TEST(Stages, AZeroCharacterIsOneOfTheText) {
  Names names("text A = x");
  names.SetValue("A", S("a\0b/c"s));
  EXPECT_EQ(ResolvedToken(names, "A elem=\"/,0\""), "a\0b"s);
  EXPECT_EQ(ResolvedToken(names, "A extract=\"1,2\""), "\0b"s);
  EXPECT_EQ(ResolvedToken(names, "A regex=\"(b.*)\""), "b/c");
  EXPECT_EQ(Resolved(names, "\0<A/>\0"s), "\0a\0b/c\0"s);
}

TEST(Stages, WorkOneAfterTheOther) {
  const struct {
    const char *definition, *token, *resolved;
  } rows[] = {
      {"", "A elem=\"_,1\" extract=\"1,-1\" regex=\"([0-9])\"", "1"},
      {"elem A = _,1", "A", "b12"},
      {"elem A = _,1", "A elem=\"_,2\"", "c34"},
      {"elem A = _,1", "A elem=\"\"", "b12"},
      {"elem A = _,1; extract A = 1,1; regex A = (.)", "A", "1"},
      {"elem A = _,1; extract A = 1,1; regex A = (x)", "A extract=\"0,1\" regex=\"(.)\"", "b"},
      {"elem A = bad", "A elem=\"_,0\"", "aa"},
      {"format A = %s_z", "A elem=\"_,3\"", "z"},
  };
  for (const auto& row : rows) {
    Names names("text A = aa_b12_c34");
    Do(names, row.definition);
    for (int time = 1; time <= 2; ++time) EXPECT_EQ(ResolvedToken(names, row.token), row.resolved) << row.token;
  }
  // On numbers, URLs and counters too: they cut the text that the type handler gave.
  Names names("number N = 1234; url L = file://srv/a/b; auto K = 98; text B = <N/>_<N/>");
  EXPECT_EQ(Resolved(names, "<N extract=\"1,2\"/>|<L elem=\"/,2\"/>|<K regex=\"(.)$\"/>|<B elem=\"_,1\"/>"),
            "23|srv|9|1234");
}

}  // namespace
}  // namespace names_test
