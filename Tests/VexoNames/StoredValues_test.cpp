// Values that are written from plans: the same as by handlers, and never those of attributes that have changed since.
#include <functional>

#include "Support.h"

namespace names_test {
namespace {

/// Resolves the token by the template form, which takes the short way where it can, and by the token form, which always
/// goes the long one; returns what both gave, with what they wrote, or both when they differ.
std::string BothWays(TName& names, const std::string& token) {
  const auto told = [&names](const auto& resolve) {
    names.SetError(TName::TName_ErrorNone);
    Output output;
    const std::string text = resolve();
    const std::string written = output.Take();
    return text + " error " + std::to_string(names.GetError()) + (written.empty() ? "" : " " + written);
  };
  const std::string failed = "! <<" + token + "/>>";
  const std::string shortWay = told([&] {
    const std::string resolved = Resolved(names, "<<" + token + "/>>");
    return resolved == failed ? "!" : resolved;
  });
  const std::string longWay = told([&] { return ResolvedToken(names, token); });
  return shortWay == longWay ? shortWay : "short: " + shortWay + ", long: " + longWay;
}

TEST(StoredValues, TheShortWayLeadsWhereTheLongOneDoes) {
  const std::vector<std::string> definitions = {
      "text A = job_0815_cover",
      "text A = ",
      "text A = J\xC3\xB8rgen_\xF0\x9F\x96\xA8_x",
      "text A = <N/>_b",
      "text A = x_y; format A = [%5s]",
      "text A = x_y; format A = %d",
      "text A = x_y_z; elem A = _,1",
      "text A = x_y_z; elem A = bad",
      "text A = abcdef; extract A = 1,3; regex A = (c.*)",
      "text A = abcdef; format A = <%s>; regex A = (<a)",
      "text A = abc; regex A = (",
      "text A = " + Repeated("ab_", 3000),
      "number A = 407",
      "number A = -7; format A = %05d",
      "number A = 7; format A = %s",
      "number A = 1234; extract A = 1,2",
      "url A = file://host/a_b/c",
      "url A = file://host/a_b/c; format A = %d; elem A = /,3",
  };
  const char* const attributes[] = {
      "",
      " format=\"%s\"",
      " format=\"%8s|\"",
      " format=\"%03d\"",
      " format=\"%n\"",
      " elem=\"_,1\"",
      " elem=\"_,9\"",
      " elem=\"_\"",
      " extract=\"1,2\"",
      " extract=\"-1,2\"",
      " regex=\"([0-9]+)\"",
      " regex=\"([a-z]+)_\"",
      " regex=\"(x)?.\"",
      " regex=\"[a-z]+\"",
      " regex=\"(\"",
      " regex=\"a\\K(?=.(.))\"",
      " elem=\"_,0\" regex=\"^(.).\"",
      " format=\"<%s>\" extract=\"1,4\" regex=\"(.)$\"",
      " format=\"%08d\" extract=\"5,-1\"",
  };
  for (const std::string& definition : definitions) {
    Names names("number N = 7; " + definition);
    for (const char* attribute : attributes) {
      const std::string first = BothWays(names, std::string("A") + attribute);
      EXPECT_FALSE(first.starts_with("short")) << definition.substr(0, 60) << ": " << attribute << ": " << first;
      for (int again = 0; again < 3; ++again) EXPECT_EQ(BothWays(names, std::string("A") + attribute), first);
    }
  }
}

NQ_TDict* entryOfA = nullptr;
bool Grab(const NQ_TString& key, NQ_TDict* entry, TName*, NQ_TAny&) {
  if (key == "A") entryOfA = entry;
  return false;
}
NQ_TString* written = nullptr;  // lies in a value
NQ_TString elsewhere;           // referred to by a value

TEST(StoredValues, ChangesOfAttributesShowAtOnce) {
  const struct {
    const char* what;
    void (*change)(TName& names, NQ_TDict& entry);
    const char* resolved;  // of <A/><A regex="(.)$"/>
  } rows[] = {
      {"set", [](TName& n, NQ_TDict&) { n.SetValue("A", "yz"); }, "yzz"},
      {"added", [](TName&, NQ_TDict& e) { e.Add("Value", S("yz")); }, "yzz"},
      {"written", [](TName&, NQ_TDict& e) { e["Value"] = "uv"; }, "uvv"},
      {"lent", [](TName&, NQ_TDict& e) { *(written = e["Value"].As<NQ_TString>()) = "qr"; }, "qrr"},
      {"written to later", [](TName&, NQ_TDict&) { *written = "st"; }, "stt"},
      {"appended to later", [](TName&, NQ_TDict&) { written->Append(S("!")); }, "st!!"},
      {"another one", [](TName& n, NQ_TDict&) { n.SetValue("A", "yz"); }, "yzz"},
      {"removed", [](TName&, NQ_TDict& e) { e.Remove("Value"); }, "! <A/><A regex=\"(.)$\"/>"},
      {"emptied", [](TName&, NQ_TDict& e) { e.Clear(); }, "! <A/><A regex=\"(.)$\"/>"},
      {"defined anew", [](TName& n, NQ_TDict&) { Do(n, "text A = ab"); }, "abb"},
      {"undefined", [](TName& n, NQ_TDict&) { n.UnDefine("A"); }, "! <A/><A regex=\"(.)$\"/>"},
      {"another type", [](TName& n, NQ_TDict&) { Do(n, "number A = 12"); }, "122"},
      {"counted", [](TName& n, NQ_TDict&) { n.Increment("A"); }, "133"},
      {"formatted", [](TName& n, NQ_TDict&) { Do(n, "format A = %04d"); }, "00133"},
      {"a URL", [](TName& n, NQ_TDict&) { Do(n, "url A = file://h/p"); }, "file://h/pp"},
      {"another URL", [](TName& n, NQ_TDict&) { n.SetValue("A", NQ_TURL(S("file://h/q"))); }, "file://h/qq"},
      {"a template", [](TName& n, NQ_TDict&) { Do(n, "text A = <N/>8"); }, "788"},
      {"no template", [](TName& n, NQ_TDict&) { n.SetValue("A", "N"); }, "NN"},
      {"stage of its own", [](TName& n, NQ_TDict&) { Do(n, "text A = a_b; elem A = _,0"); }, "aa"},
      {"another handler", [](TName& n, NQ_TDict&) { n.SetLookupHandler("A", TName::TName_LookupSQLQuery); },
       "! <A/><A regex=\"(.)$\"/>"},
  };
  Names names("number N = 7; text A = x");
  const auto grab = [&names] {
    names.SetUserLookupHandler(Grab);
    Resolved(names, "<A/>");
    names.SetUserLookupHandler(nullptr);
  };
  for (const auto& row : rows) {
    for (int time = 0; time < 3; ++time) Resolved(names, "<A/><A regex=\"(.)$\"/>");
    grab();
    row.change(names, *entryOfA);
    for (int time = 0; time < 3; ++time)
      EXPECT_EQ(Resolved(names, "<A/><A regex=\"(.)$\"/>"), row.resolved) << row.what;
  }
}

TEST(StoredValues, ValuesThatOthersCanWriteAreReadAnew) {
  NQ_TAny lent(S("1"));
  NQ_TString* const inside = lent.As<NQ_TString>();
  NQ_TDict other;
  other.Add("Value", S("1"));
  const struct {
    const char* what;
    std::function<void(NQ_TDict& entry)> store;
    std::function<void(NQ_TDict& entry, const char* text)> write;
  } rows[] = {
      {"held by reference", [](NQ_TDict& e) { e.Add("Value", NQ_TAny(static_cast<const NQ_TObject*>(&elsewhere))); },
       [](NQ_TDict&, const char* text) { elsewhere = text; }},
      {"lent before it was stored", [&](NQ_TDict& e) { e.Add("Value", std::move(lent)); },
       [&](NQ_TDict&, const char* text) { *inside = text; }},
      {"assigned as a whole", [](NQ_TDict&) {},
       [&](NQ_TDict& e, const char* text) {
         NQ_TDict copy = e;
         copy.Add("Value", S(text));
         e = copy;
         copy.Add("Value", S("of the copy"));
       }},
  };
  for (const auto& row : rows) {
    Names names("text A = x");
    names.SetUserLookupHandler(Grab);
    Resolved(names, "<A/>");
    names.SetUserLookupHandler(nullptr);
    row.store(*entryOfA);
    for (const char* text : {"a", "<A", "cc"}) {
      row.write(*entryOfA, text);
      for (int time = 0; time < 3; ++time) EXPECT_EQ(Resolved(names, "<A/>"), text) << row.what;
    }
  }
}

}  // namespace
}  // namespace names_test
