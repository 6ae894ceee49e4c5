// Templates, URLs and values to text.
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TTree.h"
#include "ResolveValue.h"
#include "Support.h"

namespace names_test {
namespace {

TEST(Resolution, Templates) {
  const struct {
    const char *text, *resolved;
  } rows[] = {
      {"a <A/> b", "a x b"},
      {"<N format=\"%03d\"/>", "007"},
      {"a <U/> b <A/>", "! a <U/> b x"},
      {"p <<A/>> <A/>", "p x <A/>"},
      {"<<CDATA/>>a <A/>", "a <A/>"},
      {"<B/>", "x-x"},
      {"x/> <A/>", "x/> <A/>"},
      {"<A/> x/> <A/><U/>", "x x/> <A/><U/>"},  // nothing is resolved, or counted, after a stray end marker
      {"</>", ""},
      {"a</>b<</>", "ab<"},
      {"< />", "! < />"},
      {"< A />", "x"},
      {"<A", "<A"},
      {"no token", "no token"},
      {"", ""},
      {"<a/>", "! <a/>"},
      {"<A unknown=\"1\"/>", "x"},
      {"<U elem=\"_,1\" format=\"%s\"/>", "! <U elem=\"_,1\" format=\"%s\"/>"},
      {"<Double/>", "<x>"},  // a value chooses its own markers
      {"<<Double/>>", "<x>"},
      {"<Marked/>", "<A/>"},          // and may be literal
      {"<Bad/>|<A/>", "! x<U/>y|x"},  // a token that fails inside a value counts; the value is used
      {"<Stray/>", "x/><A/>"},
      {"<Deep/>", "[x-x][x-x]"},
      {"<A/><N/><K/><K/>", "x767"},  // counted from 5
      {"J\xC3\xB8rg<A/>\xF0\x9F\x98\x80", "J\xC3\xB8rgx\xF0\x9F\x98\x80"},
      {"\xFF<A/>", "\xEF\xBF\xBDx"},
      {"<L/>", "file://h/a b/x"},
      {"<L format=\"%5s\"/>", "file://h/a b/x"},
      {"<\xC3\xA9 t/>", "accent"},
      {"<Empty/><Empty/>", ""},
      {"//srv/<A/>//", "//srv/x//"},
  };
  for (const auto& row : rows) {
    Names names(
        "text A = x; number N = 7; auto K = 5; text B = <A/>-<A/>; text Double = <<<A/>>>; text Empty = ; "
        "text Marked = <<CDATA/>><A/>; text Bad = <A/><U/>y; text Stray = <A/>/><A/>; text \xC3\xA9 t = accent; "
        "text Deep = [<B/>][<B/>]; url L = file://h/a b/x");
    EXPECT_EQ(Resolved(names, row.text), row.resolved) << row.text;
  }
}

TEST(Resolution, WithMarkersOfTheCaller) {
  const struct {
    const char *text, *begin, *end, *resolved, *before = "";
  } rows[] = {
      {"a ${A} {U}", "${", "}", "a x {U}"},
      {"${U}${A}", "${", "}", "! ${U}x"},
      {"<<CDATA/>><A/>", "<", "/>", "! <<CDATA/>>x"},  // neither literal texts nor a choice of markers
      {"<<A/>>", "<", "/>", "<x>"},
      {"{A}", "{", "}", "beforex", "before"},
      {"[[A]]-[[U]]", "[[", "]]", "! x-[[U]]"},
      {"[[A]]]", "[[", "]]", "x]"},
      {"{B}", "{", "}", "x"},  // values are read with the usual markers
      {"%A%", "%", "%", "A"},  // an end that is its own beginning: empty tokens
      {"xAy", "xA", "Ay", ""},
      {"a..b", "..", ".", "a.b"},
      {"a{b", "", "{", "ab"},
      {"{A}", "{", "{", "A}"},
      {"{A}}{A}", "{", "}", "x}{A}"},
  };
  for (const auto& row : rows) {
    Names names("text A = x; text B = <A/>");
    for (int time = 1; time <= 3; ++time)
      EXPECT_EQ(Resolved(names, row.text, row.begin, row.end, row.before), row.resolved) << row.text << " " << time;
  }
  Names names("text A = x");
  for (const char* begin : {"", "<", "A"})  // an empty end marker: open but for its end
    for (const char* text : {"", "A", "<A/>", "abc<A"}) EXPECT_LE(Resolved(names, text, begin, "").size(), 20U) << text;
}

TEST(Resolution, ResultMayBeTheTemplate) {
  Names names("text A = xyz; text B = <A/><A/>");
  NQ_TString text("a <A/> b <B/> <U/>");
  EXPECT_FALSE(names.Resolve(text, text));
  EXPECT_EQ(text, S("a xyz b xyzxyz <U/>"));
  text = "<<CDATA/>>x";
  EXPECT_TRUE(names.Resolve(text, text));
  EXPECT_EQ(text, S("x"));
  text = "{A}";
  EXPECT_TRUE(names.Resolve(text, S("{"), S("}"), text));
  EXPECT_EQ(text, S("{A}xyz"));
  text = "B";
  EXPECT_TRUE(names.ResolveTokenEx(text, text));
  EXPECT_EQ(text, S("xyzxyz"));
}

std::string UrlText(bool ok, const NQ_TURL& url) {
  return (ok ? "" : "! ") + Text(url.Scheme()) + "|" + Text(url.Host()) + "|" + Text(url.Path());
}

TEST(Resolution, TemplatesToUrls) {
  const struct {
    const char *text, *url;
  } rows[] = {
      {"//srv/share/<A/>", "file|srv|share/x"},
      {"file://srv/x", "file|srv|x"},
      {"//<A/>/", "file|x|"},
      {"<Share/>/<A/>", "file|srv|sh/x"},
      {"//srv/<U/>", "! file|srv|<U/>"},  // a failed token is told; the URL is set
      {"//<U/>/x", "! file|<U|>/x"},
      {"http://srv/x", "file|srv|x"},  // any five characters
      {"12345//srv/x//y", "file|srv|x//y"},
      {"///", "file||"},
      {"<<CDATA/>>//srv/<A/>", "file|srv|<A/>"},
      {"Z:/x", "! old|h|p"},
      {"https://srv/x", "! old|h|p"},
      {"//srv", "! old|h|p"},
      {"a//b//c/d", "! old|h|p"},
      {"", "! old|h|p"},
  };
  for (const auto& row : rows) {
    Names names("text A = x; text Share = //srv/sh");
    NQ_TURL url(S("old://h/p"));
    bool ok = names.Resolve(S(row.text), url);
    EXPECT_EQ(UrlText(ok, url), row.url) << row.text;
    url = NQ_TURL(S("old://h/p"));
    ok = names.Resolve(NQ_TAny(row.text), url);
    EXPECT_EQ(UrlText(ok, url), row.url) << "as a value: " << row.text;
  }
}

TEST(Resolution, UrlsToUrls) {
  const struct {
    const char *in, *out;
  } rows[] = {
      {"ftp://<A/>/p/<N/>", "ftp|<A|>/p/7"},  // the "/" of an end marker ends the host of a URL that is parsed
      {"ftp://srv/<A/>/<<N/>>", "ftp|srv|<A/>/7"},
      {"ftp://srv/<A/>/<U/>", "! ftp|srv|x/<U/>"},
      {"<A/>://srv/p", "<A/>|srv|p"},
  };
  Names names("text A = x; number N = 7");
  for (const auto& row : rows) {
    NQ_TURL out(S("old://h/p"));
    const NQ_TURL in(S(row.in));
    const bool ok = names.Resolve(in, out);
    EXPECT_EQ(UrlText(ok, out), row.out) << row.in;
    EXPECT_EQ(names.Resolve(NQ_TAny(in), out), ok);
  }
  NQ_TURL url;
  url.SetScheme("file");
  url.SetHost("h<N/>");
  url.SetPath("<A/>/<U/>");
  EXPECT_EQ(UrlText(names.Resolve(url, url), url), "! file|h7|x/<U/>");
  for (const NQ_TAny& value : {NQ_TAny(5), NQ_TAny(), NQ_TAny::Illegal(), NQ_TAny(NQ_TDict())})
    EXPECT_EQ(UrlText(names.Resolve(value, url), url), "! file|h7|x/<U/>") << value;  // no URLs: unchanged
}

TEST(Resolution, SplitAtSeparators) {
  const struct {
    const char *text, *resolved, *separator = "&@&";
  } rows[] = {
      {"<A/>&@&<U/>&@&<A/>", "! x&@&<U/>&@&"},
      {"&@&&@&<A/>", "&@&&@&x"},
      {"<A&@&/>", "<A&@&/>"},      // a token does not reach over a separator
      {"<<A/>>&@&<A/>", "x&@&x"},  // each piece chooses its markers
      {"<<CDATA/>>&@&<<CDATA/>><A/>", "&@&<A/>"},
      {"x/>&@&<A/>", "x/>&@&x"},
      {"<A/>, <U/>,", "! x, <U/>,", ","},
  };
  Names names("text A = x");
  for (const auto& row : rows) {
    NQ_TString result("left over");
    const bool ok =
        templatenames::ResolveSplit(S(row.text), std::u16string_view(S(row.separator).StringView()), &names, result);
    EXPECT_EQ((ok ? "" : "! ") + Text(result), row.resolved) << row.text;
    if (std::string(row.separator) != "&@&") continue;
    NQ_TAny value;
    EXPECT_EQ(templatenames::ResolveValue(NQ_TAny(row.text), &names, value), ok);
    EXPECT_EQ((ok ? "" : "! ") + Text(value), row.resolved) << row.text;
  }
}

TEST(Resolution, Values) {
  const auto list = [](std::initializer_list<NQ_TAny> values) {
    NQ_TList all;
    for (const NQ_TAny& value : values) all.Add(NQ_TAny(value));
    return NQ_TAny(all);
  };
  NQ_TDict dict;
  dict["<A/>"] = "<A/>&@&<N/>";
  dict["n"] = 5;
  dict["in"] = list({"<N/>", NQ_TURL(S("ftp://h/<A/>/<<A/>>"))});
  NQ_TArray array;
  array.Add("<A/>");
  array.Add(dict);
  NQ_TTree tree;
  tree["t"] = "<A/>";
  const struct {
    NQ_TAny in;
    const char* out;
  } rows[] = {
      {NQ_TAny(5), "5"},
      {NQ_TAny(true), "1"},
      {NQ_TAny(), "(null)"},
      {NQ_TAny::Illegal(), "(illegal)"},
      {NQ_TURL(S("ftp://h/<A/>")), "ftp://h/x"},
      {NQ_TURL(S("ftp://h/<U/>")), "! ftp://h/<U/>"},
      {dict, "{<A/> = x&@&7, n = 5, in = (7, ftp://h/<A/>/x)}"},
      {array, "[x, {<A/> = x&@&7, n = 5, in = (7, ftp://h/<A/>/x)}]"},
      {tree, "{t = x}"},
      {list({}), "()"},
      {list({"<A/>", "<U/>x", "<A/>"}), "! (x, <U/>x, <A/>)"},  // the rest is left alone
      {list({list({"<A/>", "<U/>", "<A/>"}), "<A/>"}), "! ((x, <U/>, <A/>), <A/>)"},
  };
  Names names("text A = x; number N = 7");
  for (const auto& row : rows) {
    const std::string before = Text(row.in);
    NQ_TAny out("left over");
    const bool ok = templatenames::ResolveValue(row.in, &names, out);
    EXPECT_EQ((ok ? "" : "! ") + Text(out), row.out) << before;
    EXPECT_EQ(Text(row.in), before);
    EXPECT_STREQ(out.ClassName(), row.in.ClassName());
    NQ_TAny same = row.in;
    EXPECT_EQ(templatenames::ResolveValue(same, &names, same), ok);
    EXPECT_EQ(Text(same), Text(out));
  }
}

TEST(Resolution, TemplatesSeenBeforeSeeTheNamesAsTheyAre) {
  const struct {
    const char *change, *resolved;
  } steps[] = {
      {"", "! [<A/>|<B/>]"},
      {"text A = x", "! [x|<B/>]"},
      {"text B = <A/>!", "[x|x!]"},
      {"string A = y", "[y|y!]"},
      {"format A = (%s)", "[(y)|(y)!]"},
      {"elem B = !,1", "[(y)|]"},
      {"elem B = ", "! [(y)|<B/>]"},  // there, but no specification
      {"number A = 7", "! [7|<B/>]"},
      {"text B = <A/>", "[7|7]"},
      {"increment A", "[8|8]"},
      {"format A = %04d", "[0008|0008]"},
      {"remove A", "! [<A/>|<A/>]"},
      {"undefine A", "! [<A/>|<A/>]"},
      {"url A = file://h/p", "[file://h/p|file://h/p]"},
      {"link A = file://h/q", "[file://h/q|file://h/q]"},
      {"regex A = (.)$", "[q|q]"},
      {"extract A = 0,4", "[e|e]"},
      {"no extract", "[file://h/q|file://h/q]"},
      {"undefine", "! [<A/>|<B/>]"},
      {"text A = z", "! [z|<B/>]"},
      {"lookup A = 3", "! [<A/>|<B/>]"},
      {"lookup A = 0", "! [z|<B/>]"},
      {"no type A", "! [<A/>|<B/>]"},
  };
  TName names;
  for (const auto& step : steps) {
    Do(names, step.change);
    for (int time = 1; time <= 3; ++time)
      EXPECT_EQ(Resolved(names, "[<A/>|<B/>]"), step.resolved) << step.change << ", time " << time;
  }
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
