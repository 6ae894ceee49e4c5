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

// What a token text is split into, as the log tells it.
std::string Split(TName& names, std::string_view token) {
  Output output;
  NQ_TString ignored;
  names.ResolveTokenEx(S(token), ignored);
  const std::string log = output.Take();
  return log.substr(0, log.find('\n'));
}

TEST(Tokens, Split) {
  const struct {
    const char *token, *key, *format = "", *elem = "", *extract = "", *regex = "";
  } rows[] = {
      {.token = "Name", .key = "Name"},
      {.token = "  Name  ", .key = "Name"},
      {.token = "Name format=\"%04d\" elem=\"-,1\"", .key = "Name", .format = "%04d", .elem = "-,1"},
      {.token = "Name format=\"abc", .key = "Name", .format = "abc"},
      {.token = "A B  regex=\"x\"", .key = "A B", .regex = "x"},
      {.token = "A B", .key = "A B"},
      {.token = " A  B ", .key = "A  B"},
      {.token = "A regex=\"r\" extract=\"x\" elem=\"e\" format=\"f\"",
       .key = "A",
       .format = "f",
       .elem = "e",
       .extract = "x",
       .regex = "r"},
      {.token = "A elem=\"1\" elem=\"2\"", .key = "A", .elem = "1"},
      {.token = "A elem=\"\" elem=\"2\"", .key = "A"},
      {.token = "A Elem=\"1\" FORMAT=\"2\"", .key = "A"},
      {.token = "A elem =\"1\"", .key = "A elem"},
      {.token = "A elem= \"1\"", .key = "A"},
      {.token = "A elem=1", .key = "A"},
      {.token = "A xelem=\"1\"", .key = "A", .elem = "1"},
      // An attribute is found inside another one's value too.
      {.token = "A regex=\"elem=\"", .key = "A", .regex = "elem="},
      {.token = "A regex=\"x elem=\"2\"", .key = "A", .elem = "2", .regex = "x elem="},
      {.token = "A format=\"regex=\"", .key = "A", .format = "regex="},
      // Without a key the first character is one.
      {.token = "format=\"%d\"", .key = "f", .format = "%d"},
      {.token = "AB=", .key = "A"},
      {.token = "=", .key = "="},
      {.token = "  =", .key = "="},
      {.token = " x= y", .key = "x"},
      {.token = "A =", .key = "A"},
      {.token = "A  = B", .key = "A"},
      {.token = "A\tformat=\"x\"", .key = "A", .format = "x"},
      {.token = "\tA\t", .key = "\tA\t"},
      {.token = " ", .key = ""},
      {.token = "    ", .key = ""},
      {.token = "J\xC3\xB8rg\xF0\x9F\x98\x80 elem=\"\xE2\x82\xAC,1\"",
       .key = "J\xC3\xB8rg\xF0\x9F\x98\x80",
       .elem = "\xE2\x82\xAC,1"},
      {.token = "A format=\"a\" \"b\"", .key = "A", .format = "a"},
      {.token = "A format=\"", .key = "A"},
      {.token = "A \"", .key = "A \""},
  };
  TName names;
  names.SetDebugLevel(2);
  for (const auto& row : rows) {
    const std::string expected = std::string("TName::ResolveTokenEx: \tKey: \"") + row.key + "\"; Format: \"" +
                                 row.format + "\"; Elem: \"" + row.elem + "\"; Extract: \"" + row.extract +
                                 "\" RegEx: \"" + row.regex + "\"";
    EXPECT_EQ(Split(names, row.token), expected) << row.token;
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
      {"<<", "<<"},
      {"/>>", "/>>"},
      {"<</>>", ""},
      {"</>", ""},
      {"<", "<"},
      {"/>", "/>"},
      {"", ""},
      {"</", "</"},
      {"<A/ >", "<A/ >"},
      {"<<<A/>", "<<1"},
      {"<B<A/>/>", "<B1/>"},  // the rest is an end marker without a beginning
      {"<A//>", "! <A//>"},
      {"<A/>/>", "1/>"},
  };
  Names names("text A = 1");
  for (const auto& row : rows) EXPECT_EQ(Resolved(names, row.text), row.resolved) << row.text;
}

}  // namespace
}  // namespace names_test
