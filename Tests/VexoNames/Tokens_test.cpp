// How a token is written: markers, key and attributes.
#include "Support.h"

namespace names_test {
namespace {

TEST(Tokens, LiteralTextMarker) {
  const struct {
    std::string text, added, removed;
    bool marked;
  } rows[] = {
      {"<<CDATA/>>abc", "<<CDATA/>>abc", "abc", true},
      {"<<CDATA/>>", "<<CDATA/>>", "", true},
      {"<<CDATA/>><<CDATA/>>", "<<CDATA/>><<CDATA/>>", "<<CDATA/>>", true},
      {"abc", "<<CDATA/>>abc", "abc", false},
      {"", "<<CDATA/>>", "", false},
      {" <<CDATA/>>", "<<CDATA/>> <<CDATA/>>", " <<CDATA/>>", false},
      {"<<cdata/>>", "<<CDATA/>><<cdata/>>", "<<cdata/>>", false},
      {"<<CDATA/>", "<<CDATA/>><<CDATA/>", "<<CDATA/>", false},
      {"<CDATA/>x", "<<CDATA/>><CDATA/>x", "<CDATA/>x", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TName::IsMarked(S(row.text)), row.marked) << row.text;
    EXPECT_EQ(Text(TName::AddMarker(S(row.text))), row.added) << row.text;
    EXPECT_EQ(Text(TName::RemoveMarker(S(row.text))), row.removed) << row.text;
  }
}

TEST(Tokens, Encode) {
  const struct {
    const char *text, *encoded;
  } rows[] = {
      {"50% a/b<c>", "50%25%20a%2Fb%3Cc%3E"},     {"", ""},         {"%20", "%2520"}, {"%%", "%25%25"},
      {"J\xC3\xB8rg\t\"=&", "J\xC3\xB8rg\t\"=&"}, {"  ", "%20%20"},
  };
  for (const auto& row : rows) EXPECT_EQ(Text(TName::Encode(S(row.text))), row.encoded) << row.text;
}

TEST(Tokens, EncodedTextsAreUsableKeys) {
  TName names;
  const std::string key = "jp." + Text(TName::Encode(S("50% a/b<c>")));
  Do(names, "text " + key + " = v");
  EXPECT_EQ(Resolved(names, "<" + key + " elem=\",,0\"/>"), "v");
  EXPECT_EQ(Resolved(names, "<<" + key + "/>>"), "v");
}

TEST(Tokens, Split) {
  const struct {
    const char *token, *parts;  // key|format|elem|extract|regex
  } rows[] = {
      {"Name", "Name||||"},
      {"  Name  ", "Name||||"},
      {"Name format=\"%04d\" elem=\"-,1\"", "Name|%04d|-,1||"},
      {"Name format=\"abc", "Name|abc|||"},
      {"A B  regex=\"x\"", "A B||||x"},
      {" A  B ", "A  B||||"},
      {"A regex=\"r\" extract=\"x\" elem=\"e\" format=\"f\"", "A|f|e|x|r"},
      {"A elem=\"1\" elem=\"2\"", "A||1||"},
      {"A elem=\"\" elem=\"2\"", "A||||"},
      {"A Elem=\"1\" FORMAT=\"2\"", "A||||"},
      {"A elem =\"1\"", "A elem||||"},
      {"A elem= \"1\"", "A||||"},
      // An attribute is found inside another one's value too.
      {"A regex=\"elem=\"", "A||||elem="},
      {"A regex=\"x elem=\"2\"", "A||2||x elem="},
      {"A format=\"regex=\"", "A|regex=|||"},
      // Without a key the first character is one.
      {"format=\"%d\"", "f|%d|||"},
      {"  =", "=||||"},
      {"A =", "A||||"},
      // Only spaces are spaces.
      {"A\tformat=\"x\"", "A|x|||"},
      {"\tA\t", "\tA\t||||"},
      {" ", "||||"},
      {"J\xC3\xB8rg\xF0\x9F\x98\x80 elem=\"\xE2\x82\xAC,1\"", "J\xC3\xB8rg\xF0\x9F\x98\x80||\xE2\x82\xAC,1||"},
  };
  TName names;
  names.SetDebugLevel(2);
  for (const auto& row : rows) {
    std::string expected = "TName::ResolveTokenEx: \tKey: \"" + std::string(row.parts) + "\"\n";
    for (const char* next : {"\"; Format: \"", "\"; Elem: \"", "\"; Extract: \"", "\" RegEx: \""})
      expected.replace(expected.find('|'), 1, next);
    Output output;
    ResolvedToken(names, row.token);
    EXPECT_TRUE(output.Take().starts_with(expected)) << row.token << " should give " << expected;
  }
}

TEST(Tokens, ChoiceOfMarkers) {
  const struct {
    const char *text, *resolved;
  } rows[] = {
      {"x <A/> y", "x 1 y"},
      {"x <<A/>> y <A/>", "x 1 y <A/>"},
      {"<A/> <<A/>>", "<A/> 1"},
      {"a/>>b<A/>", "a/>>b<A/>"},  // single markers, and an end marker without a beginning
      {"<A/>>", "1>"},             // no "<<" before "/>>": single markers
      {"<A/>>b<<A/>>", "1>b<1>"},  // the first "/>>" decides
      {"<<A/>", "<1"},             // no "/>>"
      {"<<A/> <<A/>>", "<<A/> 1"},
      {"<<<A/>>>", "<1>"},
      {"<<A<</>>", "<<A"},
      {"<<<</>>", "<<"},
      {"<</>>", ""},
      {"</>", ""},
      {"<B<A/>/>", "<B1/>"},  // the rest is an end marker without a beginning
      {"<A//>", "! <A//>"},
      {"<A/>/>", "1/>"},
  };
  Names names("text A = 1");
  for (const auto& row : rows) EXPECT_EQ(Resolved(names, row.text), row.resolved) << row.text;
}

}  // namespace
}  // namespace names_test
