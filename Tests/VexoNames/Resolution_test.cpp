// What takes more than a row of Cases.txt: results that are arguments, and long texts.
#include "Support.h"

namespace names_test {
namespace {

TEST(Resolution, ResultsMayBeAnyOfTheArguments) {
  Names names("text A = xyz; text B = <A/><A/>");
  NQ_TString text("a <A/> b <B/> <U/>"), begin("{"), end("}");
  EXPECT_FALSE(names.Resolve(text, text));
  EXPECT_EQ(text, S("a xyz b xyzxyz <U/>"));
  text = "{A}{A}";
  EXPECT_TRUE(names.Resolve(text, begin, end, begin) && names.Resolve(text, S("{"), end, end));
  EXPECT_EQ(begin + end, S("{xyzxyz}xyzxyz"));
  EXPECT_TRUE(names.Resolve(text, S("{"), S("}"), text));
  EXPECT_EQ(text, S("{A}{A}xyzxyz"));
  text = "B";
  EXPECT_TRUE(names.ResolveTokenEx(text, text));
  EXPECT_EQ(text, S("xyzxyz"));
  for (const char* marker : {"", "<", "A"})  // an empty end marker: open but for its end
    EXPECT_LE(Resolved(names, "abc<A/>", marker, "").size(), 20U) << marker;

  NQ_TURL url;
  url.SetScheme("file");
  url.SetHost("h<A/><U/>");
  url.SetPath("<A/>");
  EXPECT_FALSE(names.Resolve(url, url));
  EXPECT_EQ(url.Text(), S("file://hxyz<U/>/xyz"));
}

// A lookup can keep a pointer to the value of its entry.
TEST(Resolution, ResultsMayBeStoredValues) {
  Names names("text A = x");
  NQ_TString& stored = *EntryOf(names, "A")->ValueOfKey("Value")->As<NQ_TString>();
  const std::string value = Repeated("xyz", 400);  // there is no room for another one
  for (const auto& [token, added] : {std::pair("<A/>", value),
                                     {"<A elem=\",,0\"/>", value},
                                     {"<A format=\"%-1203s\"/>", value + "   "},
                                     {"<A regex=\"(.)$\"/>", "z"},
                                     {"<A/><A/>", value + value + value}}) {
    stored = S(value);
    EXPECT_TRUE(names.Resolve(S(token), S("<"), S("/>"), stored));
    EXPECT_EQ(stored, S(value + added)) << token;
  }
}

TEST(Resolution, LongTextsTakeLinearTime) {
  Names names("text A = x; number N = 7");
  const std::string text = Repeated("<A/>_<N format=\"%02d\"/>/< U />", 33'000);
  EXPECT_TRUE(Resolved(names, text) == "! " + Repeated("x_07/< U />", 33'000));
  // Texts that could make a scan look at the same characters again and again.
  const std::string opened(400'000, '<'), closed(400'000, '>');
  EXPECT_TRUE(Resolved(names, opened + "A/>" + closed) == opened.substr(2) + "x" + closed.substr(1));
  EXPECT_TRUE(Resolved(names, opened + closed, "<", "<>") == "! " + opened + closed);
  EXPECT_TRUE(Resolved(names, closed + "/>" + opened) == closed + "/>" + opened);
}

}  // namespace
}  // namespace names_test
