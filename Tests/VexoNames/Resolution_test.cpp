// Templates, URLs and values to text.
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TTree.h"
#include "ResolveValue.h"
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
  for (const NQ_TAny& value : {NQ_TAny(5), NQ_TAny::Illegal()}) EXPECT_FALSE(names.Resolve(value, url)) << value;
  EXPECT_EQ(url.Text(), S("file://hxyz<U/>/xyz"));  // values that are no URLs leave it
}

NQ_TAny List(std::initializer_list<NQ_TAny> values) {
  NQ_TList all;
  for (const NQ_TAny& value : values) all.Add(NQ_TAny(value));
  return all;
}

TEST(Resolution, Values) {
  NQ_TDict dict;
  dict["<A/>"] = "<A/>&@&<N/>";
  dict["in"] = List({5, "<N/>", NQ_TURL(S("ftp://h/<A/>/<<A/>>"))});
  NQ_TArray array;
  array.Add(dict);
  NQ_TTree tree;
  tree["t"] = "<A/>";
  NQ_TAny deep("<A/>"), tooDeep = List({});
  for (int i = 0; i < 64; ++i) deep = List({deep}), tooDeep = List({tooDeep});
  const struct {
    NQ_TAny in;
    std::string out;
  } rows[] = {
      {true, "1"},
      {NQ_TAny(), "(null)"},
      {NQ_TAny::Illegal(), "(illegal)"},
      {NQ_TURL(S("ftp://h/<U/>")), "! ftp://h/<U/>"},
      {array, "[{<A/> = x&@&7, in = (5, 7, ftp://h/<A/>/x)}]"},
      {tree, "{t = x}"},
      {List({List({"<A/>", "<U/>", "<A/>"}), "<A/>"}), "! ((x, <U/>, <A/>), <A/>)"},  // the rest is left alone
      {deep, Repeated("(", 64) + "x" + Repeated(")", 64)},
      {tooDeep, "! " + Repeated("(", 65) + Repeated(")", 65)},
      // Texts are resolved piece by piece.
      {"<A/>&@&<U/>&@&<A/>", "! x&@&<U/>&@&"},
      {"&@&&@&<A/>", "&@&&@&x"},
      {"<A&@&/>", "<A&@&/>"},      // a token does not reach over a separator
      {"<<A/>>&@&<A/>", "x&@&x"},  // each piece chooses its markers
      {"<<CDATA/>>&@&<<CDATA/>><A/>", "&@&<A/>"},
      {"x/>&@&<A/>", "x/>&@&x"},
  };
  Names names("text A = x; number N = 7");
  for (const auto& row : rows) {
    const std::string before = Text(row.in);
    NQ_TAny out("left over"), same = row.in;
    const bool ok = templatenames::ResolveValue(row.in, &names, out);
    EXPECT_EQ((ok ? "" : "! ") + Text(out), row.out) << before;
    EXPECT_EQ(Text(row.in), before);
    EXPECT_STREQ(out.ClassName(), row.in.ClassName());
    EXPECT_EQ(templatenames::ResolveValue(same, &names, same), ok);
    EXPECT_EQ(Text(same), Text(out));
  }
  NQ_TString split("left over");
  EXPECT_FALSE(templatenames::ResolveSplit("<A/>, <U/>,", u",", &names, split));
  EXPECT_EQ(split, S("x, <U/>,"));
}

TEST(Resolution, ManyTokens) {
  Names names("text A = x; number N = 7");
  const int count = 100'000;
  std::string text, resolved;
  for (int i = 0; i < count; ++i) {
    text += i % 3 == 0 ? "<A/>_" : i % 3 == 1 ? "<N format=\"%02d\"/>/" : "< U />";
    resolved += i % 3 == 0 ? "x_" : i % 3 == 1 ? "07/" : "< U />";
  }
  for (int time = 1; time <= 2; ++time) EXPECT_TRUE(Resolved(names, text) == "! " + resolved) << time;
  // Texts that could make a scan look at the same characters again and again.
  const std::string opened(400'000, '<'), closed(400'000, '>');
  EXPECT_TRUE(Resolved(names, opened) == opened);
  EXPECT_TRUE(Resolved(names, opened + "A/>" + closed) == opened.substr(2) + "x" + closed.substr(1));
  EXPECT_TRUE(Resolved(names, opened + closed, "<", "<>") == opened.substr(1) + closed.substr(1));
  EXPECT_TRUE(Resolved(names, closed + "/>" + opened) == closed + "/>" + opened);
}

}  // namespace
}  // namespace names_test
