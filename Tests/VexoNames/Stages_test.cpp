// The element, extract and regex stages, as tokens and definitions use them.
#include "Support.h"

namespace names_test {
namespace {

struct Row {
  const char *value, *specification;
  const char* result;  // "!4": the token fails and leaves error 4
};

/// Resolves a text name of that value with the specification once in the token and once in the definition.
void Check(const Row& row, const std::string& attribute) {
  const std::string result = row.result;
  const bool fails = result.starts_with("!");
  const int error = fails && result.size() > 1 ? std::stoi(result.substr(1)) : 0;
  for (const bool inToken : {true, false}) {
    SCOPED_TRACE(std::string(row.value) + " by " + attribute + " " + row.specification +
                 (inToken ? " in the token" : " in the definition"));
    Names names;
    names.Define("A", TName::TName_TypeString, TName::TName_LookupValue);
    names.SetValue("A", S("<<CDATA/>>") + S(row.value));
    std::string token = "A";
    if (inToken) {
      if (std::string_view(row.specification).find('"') != std::string_view::npos) continue;
      if (*row.specification == 0) continue;  // stands for no attribute
      token += " " + attribute + "=\"" + row.specification + "\"";
    } else {
      Given(names, attribute + " A = " + row.specification);
    }
    for (int time = 1; time <= 2; ++time) {
      Output messages;
      EXPECT_EQ(ResolvedToken(names, token), fails ? "!" : result);
      EXPECT_EQ(names.GetError(), error);
    }
  }
}

TEST(Stages, Elements) {
  const Row rows[] = {
      {"a/b/c/d", "/,2", "c"},
      {"abc", "/,0", "abc"},
      {"a/b", "/,5", ""},
      {"x,y,z", ",,1", "y"},
      {"a/b", "/2", "!4"},
      {"a/b", ",2", "!4"},
      {"a/b", "", "!4"},
      {"a/b", ",", "!4"},
      {"a/b", "/,-1", "!5"},
      {"a/b", "/,", "a"},
      {"a/b", "/,x", "a"},
      {"a/b", "/, 1", "b"},
      {"a/b", "/,+1x", "b"},
      {"a/b", "/,-0", "a"},
      {"a/b/", "/,2", ""},
      {"/a", "/,0", ""},
      {"/a", "/,1", "a"},
      {"", "/,0", ""},
      {"", "/,1", ""},
      {"a//b", "/,1", ""},
      {"a//b", "/,2", "b"},
      // The next piece begins one character after the separator did, however long that is.
      {"a--b", "--,0", "a"},
      {"a--b", "--,1", "-b"},
      {"a---b", "--,1", ""},
      {"a---b", "--,2", "-b"},
      {"aXYbXYc", "XY,1", "Yb"},
      {"aXYbXYc", "XY,2", "Yc"},
      {"a,1,b", ",1,,1", "1,b"},
      {"a b", " ,1", "b"},
      {"A/a", "a,1", ""},
      {"J\xC3\xB8rg\xC3\xB8n", "\xC3\xB8,2", "n"},
      {"a\xF0\x9F\x98\x80"
       "b",
       "\xF0\x9F\x98\x80,1",
       "\xEF\xBF\xBD"
       "b"},  // the second half of a pair
  };
  for (const Row& row : rows) Check(row, "elem");
}

TEST(Stages, Extracts) {
  const Row rows[] = {
      {"abcdefg", "2,3", "cde"},
      {"abcdefg", "2,-1", "cdefg"},
      {"abcdefg", "2,-5", "cdefg"},
      {"abcdefg", "-1,2", "!6"},
      {"abcdefg", "3", "!7"},
      {"abcdefg", ",3", "!7"},
      {"abcdefg", "", "!7"},
      {"abcdefg", "0,0", ""},
      {"abcdefg", "5,100", "fg"},
      {"abcdefg", "7,1", ""},
      {"abcdefg", "100,1", ""},
      {"abcdefg", "100,-1", ""},
      {"abcdefg", "x,y", ""},
      {"abcdefg", "x,2", "ab"},
      {"abcdefg", " 1, 2,3", "bc"},
      {"abcdefg", "1,", ""},
      {"abcdefg", "+1,+2", "bc"},
      {"abcdefg", "2147483647,2147483647", ""},
      {"abcdefg", "1,2147483647", "bcdefg"},
      {"", "0,1", ""},
      {"J\xC3\xB8rg", "1,2", "\xC3\xB8r"},
  };
  for (const Row& row : rows) Check(row, "extract");
}

TEST(Stages, RegularExpressions) {
  const Row rows[] = {
      {"job123x", "([0-9]+)", "123"},
      {"job123x", "[0-9]+", "!"},
      {"job", "([0-9]+)", ""},
      {"job", "(", "!"},
      {"job", "", "!"},
      {"ab", "(a)(b)", "a"},  // only the first group counts, however many there are
      {"ab", "(?:a)(b)", "b"},
      {"ab", "()", ""},
      {"b", "(a)?b", "!"},  // a group that took no part, and none after it, is as no group at all
      {"b", "(a)?(b)", ""},
      {"b", "(a)|(b)", ""},
      {"aB", "(?i)(b)", "B"},
      {"a\nb", "^(b)", ""},
      {"a\nb", "(?m)^(b)", "b"},
      {"J\xC3\xB8rg", "J(.)r", "\xC3\xB8"},
      {"\xC3\xB8x", "(\\w)", "x"},  // letters are the plain ones
      {"a\xF0\x9F\x98\x80"
       "b",
       "a(.)b", "\xF0\x9F\x98\x80"},
      {"aa/bb", "/(?<n>.*)", "bb"},
      {"", "(x*)", ""},
      {"x\\y", "\\\\(y)", "y"},
      {"say \"x\"", "\"(.)\"", "x"},
  };
  for (const Row& row : rows) Check(row, "regex");
}

TEST(Stages, MessagesOfTheRegexStage) {
  const struct {
    const char *value, *pattern, *message;
  } rows[] = {
      {"v", "(", "TName:Compilation of regex '(' failed at offset 1: missing )\n"},
      {"v", "a**(", nullptr},
      {"%s%n", "(x)", "TName:'%s%n' does not match regex '(x)'\n"},
      {"v", "%n(x)", "TName:'v' does not match regex '%n(x)'\n"},
      {"v", "v", "TName:'v' matches regex 'v', but the number of capturing groups is 0\n"},
      {"J\xC3\xB8", "(\xC3\xB8)", ""},
  };
  for (const auto& row : rows) {
    Names names;
    Given(names, std::string("text A = ") + row.value);
    for (int time = 1; time <= 2; ++time) {  // whatever the level, and every time
      Output output;
      ResolvedToken(names, std::string("A regex=\"") + row.pattern + "\"");
      const std::string message = output.Take();
      if (row.message != nullptr)
        EXPECT_EQ(message, row.message);
      else
        EXPECT_EQ(message.find("TName:Compilation of regex 'a**(' failed at offset "), 0U) << message;
    }
  }
}

TEST(Stages, AZeroCharacterIsOneOfTheText) {
  using std::string_literals::operator""s;
  Names names{"text A = x"};
  names.SetValue("A", S("a\0b/c"s));
  EXPECT_EQ(ResolvedToken(names, "A"), "a\0b/c"s);
  EXPECT_EQ(ResolvedToken(names, "A elem=\"/,0\""), "a\0b"s);
  EXPECT_EQ(ResolvedToken(names, "A extract=\"1,2\""), "\0b"s);
  EXPECT_EQ(ResolvedToken(names, "A regex=\"(b.*)\""), "b/c");
  EXPECT_EQ(Resolved(names, "\0<A/>\0"s), "\0a\0b/c\0"s);
}

TEST(Stages, WorkOneAfterTheOther) {
  const struct {
    std::vector<const char*> lines;
    const char *token, *resolved;
  } rows[] = {
      {{}, "A elem=\"_,1\" extract=\"1,-1\" regex=\"([0-9])\"", "1"},
      {{"elem A = _,1"}, "A", "b12"},
      {{"elem A = _,1"}, "A elem=\"_,2\"", "c34"},
      {{"elem A = _,1"}, "A elem=\"\"", "b12"},
      {{"elem A = _,1", "extract A = 1,1", "regex A = (.)"}, "A", "1"},
      {{"elem A = _,1", "extract A = 1,1", "regex A = (x)"}, "A extract=\"0,1\" regex=\"(.)\"", "b"},
      {{"elem A = bad"}, "A elem=\"_,0\"", "aa"},
      {{"regex A = ("}, "A elem=\"_,0\"", "!"},
      {{"format A = %s_z"}, "A elem=\"_,3\"", "z"},
  };
  for (const auto& row : rows) {
    Names names{"text A = aa_b12_c34"};
    for (const char* line : row.lines) Given(names, line);
    Output messages;
    for (int time = 1; time <= 2; ++time) EXPECT_EQ(ResolvedToken(names, row.token), row.resolved) << row.token;
  }
  // On numbers, URLs and times too: they cut the text that the type handler gave.
  Names names{"number N = 1234", "url L = file://srv/a/b", "auto K = 98", "text B = <N/>_<N/>"};
  EXPECT_EQ(Resolved(names, "<N extract=\"1,2\"/>|<L elem=\"/,2\"/>|<K regex=\"(.)$\"/>|<B elem=\"_,1\"/>"),
            "23|srv|9|1234");
}

TEST(Stages, ManyPatternsKeepApart) {
  Names names{"text A = <<CDATA/>>p17 p18 p19"};
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 1500; ++i) {
      const std::string number = std::to_string(i);
      const bool matches = i == 1 || (i >= 17 && i <= 19);
      Output messages;
      EXPECT_EQ(ResolvedToken(names, "A regex=\"p(" + number + ")\""), matches ? number : "");
    }
  }
}

}  // namespace
}  // namespace names_test
