// How the value of one token comes about: hooks, lookups, type handlers, formats.
#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

std::string calls;  // what the handlers below were called with, in order

bool Own(const NQ_TString& key, NQ_TDict*, TName*, NQ_TAny& value) {
  calls += "own(" + Text(key) + "," + Text(value) + ") ";
  value = "<N/>o";
  return true;
}
bool Fails(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  calls += "fails ";
  value = "ignored";
  return false;
}
bool User(const NQ_TString& key, NQ_TDict*, TName*, NQ_TAny& value) {
  calls += "user(" + Text(key) + ") ";
  value = "<N/>u";
  return key == "A";
}
bool Type(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict*, TName*,
          NQ_TString& result) {
  calls += "type(" + Text(key) + "," + Text(value) + "," + Text(format) + ") ";
  result = S("<A/>t");
  return true;
}
template <char kName, bool kSucceeds = true>
bool Stage(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict*, TName*,
           NQ_TString& result) {
  calls +=
      std::string(1, kName) + "(" + Text(key) + "," + Text(input) + "," + Text(attribute) + "," + Text(result) + ") ";
  result = S("<") + input + S(std::string(1, kName));
  return kSucceeds;
}
void Warn(const NQ_TString& key, TName*) { calls += "warn(" + Text(key) + ") "; }

const struct OwnObject : TNameLookupHandler {
  bool Lookup(const NQ_TString& key, NQ_TDict*, TName*, NQ_TAny& value) const override {
    calls += "object(" + Text(key) + "," + Text(value) + ") ";
    value = "ob";
    return true;
  }
} ownObject;
struct WarnObject : TNameWarnLookupHandler {
  void WarnLookup(const NQ_TString& key, TName*) override { calls += "object warns(" + Text(key) + ") "; }
} warnObject;

/// What "use X" in the table below installs, for the name A where it takes a name.
constexpr struct {
  std::string_view word;
  void (*install)(TName&);
} kInstall[] = {
    {"own", [](TName& n) { n.SetLookupHandler("A", Own, false); }},
    {"own of B", [](TName& n) { n.SetLookupHandler("B", Own, false); }},
    {"fails", [](TName& n) { n.SetLookupHandler("A", Fails, false); }},
    {"object", [](TName& n) { n.SetLookupHandler("A", &ownObject, false); }},
    {"user", [](TName& n) { n.SetUserLookupHandler(User); }},
    {"type", [](TName& n) { n.SetTypeHandler("A", Type); }},
    {"e", [](TName& n) { n.SetElemHandler(Stage<'e'>); }},
    {"x", [](TName& n) { n.SetExtractHandler(Stage<'x'>); }},
    {"x fails", [](TName& n) { n.SetExtractHandler(Stage<'x', false>); }},
    {"r", [](TName& n) { n.SetRegExHandler(Stage<'r'>); }},
    {"warn", [](TName& n) { n.SetWarnLookupHandler(Warn); }},
    {"warn object", [](TName& n) { n.SetWarnLookupHandler(&warnObject); }},
};

void Set(TName& names, std::string_view what) {
  for (const auto& [word, install] : kInstall)
    if (what == word) return install(names);
  Do(names, what);
}

TEST(Production, CallsHandlersInOrder) {
  const struct {
    std::vector<const char*> set;
    const char *token, *resolved, *called;
  } rows[] = {
      {{"own"}, "A", "7o", "own(A,(null)) "},
      {{"object"}, "A", "ob", "object(A,(null)) "},
      {{"own", "object"}, "A", "ob", "object(A,(null)) "},
      {{"object", "own"}, "A", "7o", "own(A,(null)) "},
      {{"user", "own"}, "A", "7u", "user(A) user(N) "},
      // A hook that declines leaves nothing behind.
      {{"user", "own of B"}, "B", "7o", "user(B) own(B,(null)) user(N) "},
      {{"user", "no lookup A"}, "A", "!", ""},
      {{"user", "no object A"}, "A", "!", ""},
      {{"user", "no user"}, "A", "x", ""},
      {{"fails", "type"}, "A", "!", "fails "},
      {{"own", "type"}, "A format=\"f\"", "<A/>t", "own(A,(null)) type(A,7o,f) "},
      {{"e", "x", "r"},
       "A regex=\"1\" elem=\"2\" extract=\"3\"",
       "<<<xexr",
       "e(A,x,2,x) x(A,<xe,3,<xe) r(A,<<xex,1,<<xex) "},
      {{"e", "x fails", "r"}, "A", "!", "e(A,x,,x) x(A,<xe,,<xe) "},
      {{"no elem", "x", "r"}, "A elem=\"bad\" extract=\"bad\" regex=\"(\"", "x", ""},
      {{"e", "no extract", "r"}, "A", "<xe", "e(A,x,,x) "},
      {{"warn"}, "A", "x", "warn(A) "},
      {{"warn object"}, "A", "x", "object warns(A) "},
      {{"warn", "warn object"}, "A", "x", "object warns(A) "},
      {{"warn object", "warn"}, "A", "x", "warn(A) "},
      {{"warn", "no warn object"}, "A", "x", ""},
      {{"warn object", "no warn"}, "A", "x", ""},
      {{"warn"}, "U", "!", "warn(U) "},
      {{"warn"}, "", "", ""},
      {{"warn"}, "B", "7<U/>", "warn(B) warn(N) warn(U) "},
      {{"warn", "user", "fails"}, "A", "7u", "warn(A) user(A) warn(N) user(N) "},
  };
  for (const auto& row : rows) {
    Names names("text A = x; number N = 7; text B = <N/><U/>");
    for (const char* what : row.set) Set(names, what);
    for (int time = 1; time <= 3; ++time) {
      SCOPED_TRACE(testing::Message() << row.set[0] << ", ... : " << row.token << ", time " << time);
      calls.clear();
      EXPECT_EQ(ResolvedToken(names, row.token), row.resolved);
      EXPECT_EQ(calls, row.called);
      calls.clear();
      const std::string resolved = row.resolved;
      EXPECT_EQ(Resolved(names, "<" + std::string(row.token) + "/>").starts_with("! "),
                resolved == "!" || resolved.find("<U/>") != resolved.npos);
      EXPECT_EQ(calls, row.called);
    }
  }
}

TEST(Production, TheClearFlagDropsTheValue) {
  for (const char* script : {"lookup A = 0", "lookup A = 3", "lookup A = 4", "lookup A = 99", "no lookup A"}) {
    Names names(std::string("text A = x; ") + script);
    EXPECT_TRUE(names.HasValue("A")) << script;
  }
  for (const bool clear : {false, true}) {
    Names names("text A = x; text B = x; description A = d");
    names.SetLookupHandler("A", Own, clear);
    names.SetLookupHandler("B", &ownObject, clear);
    EXPECT_EQ(names.HasValue("A") && names.HasValue("B"), !clear);
    EXPECT_EQ(names.GetDescription("A"), S("d"));
  }
  // An entry has one kind of lookup at a time.
  Names one("text A = x");
  one.SetLookupHandler("A", &ownObject, false);
  EXPECT_EQ(EntryText(one, "A"), "Category=misc Format=%s LookupHandler2 Type=0 TypeHandler Value=x");
  one.SetLookupHandler("A", Own, true);
  EXPECT_EQ(EntryText(one, "A"), "Category=misc Format=%s LookupHandler Type=0 TypeHandler");
  Names names("text A = x; lookup A = 99");
  EXPECT_EQ(Resolved(names, "<A/>"), "x");  // an unknown kind installs nothing: the lookup stays
}

TEST(Production, SqlIsNotCarriedOut) {
  Names names("sql Q; number N = 1");
  EXPECT_EQ(Resolved(names, "<Q/><N/>"), "! <Q/>1");
  EXPECT_EQ(names.GetError(), TName::TName_ErrorSQLQuery);
  EXPECT_EQ(Resolved(names, "<N/>"), "1");
  EXPECT_EQ(names.GetError(), TName::TName_ErrorSQLQuery);
}

NQ_TAny answer;
bool Answer(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  value = answer;
  return true;
}

TEST(Production, TypesAndFormats) {
  const NQ_TAny own;  // stands for the name's own value
  const struct {
    const char* definition;
    NQ_TAny answer;  // of the lookup
    const char *token, *resolved;
  } rows[] = {
      {"text A = x", own, "A format=\"[%s]\"", "[x]"},
      {"text A = x", own, "A format=\"%-5s|\"", "x    |"},
      {"text A = x", own, "A format=\"100%%%s\"", "100%x"},
      {"text A = x", own, " A  format=\"none\" ", "none"},
      {"text A = x", own, "<A/>", "!"},
      {"text A = x<U/>", own, "A", "x<U/>"},  // succeeds although a token inside the value did not
      {"text A = x", own, "A format=\"%d\"", "!"},
      {"text A = \xC3\xB8", own, "A format=\"%3s\"", " \xC3\xB8"},  // counts bytes, as printf does
      {"text A = \xC3\xB8x", own, "A format=\"%.1s\"", "\xEF\xBF\xBD"},
      {"text A = x; format A = [%s]", own, "A", "[x]"},
      {"text A = x; format A = [%s]", own, "A format=\"\"", "[x]"},
      {"text A = x; format A = [%s]", own, "A format=\"%s\"", "x"},
      {"text A = x; format A = <N/>%s", own, "A", "<N/>x"},  // a format is no template
      {"text A = x; format A = ", own, "A", ""},
      {"text A = x", 5, "A", "!"},
      {"text A = x", true, "A", "!"},
      {"text A = x", NQ_TAny::Illegal(), "A", "!"},
      {"text A = x", NQ_TURL(S("ftp://h/a/b")), "A format=\"%d%d\"", "file://h/a/b"},
      {"url A = file://h/<N/>; format A = %d", own, "A", "file://h/<N/>"},  // only strings are templates
      {"url A = file://h/a", "<N/>y", "A", "7y"},
      {"url A = p", own, "A", "file:///p"},
      {"number A = -5", own, "A format=\"%04d\"", "-005"},
      {"number A = 5", own, "A format=\"%+.3i|%%\"", "+005|%"},
      {"number A = 255", own, "A format=\"%#x %%\"", "0xff %"},
      {"number A = -1", own, "A format=\"%u\"", "4294967295"},
      {"number A = 65", own, "A format=\"<%c\"", "<A"},
      {"number A = 5", own, "A format=\"%s\"", "!"},
      {"number A = 5", own, "A format=\"none\"", "none"},
      {"number A = 5; format A = %03d", own, "A", "005"},
      {"number A = 5; format A = %n", own, "A format=\"%d\"", "5"},
      {"number A = 5", 41, "A", "41"},
      {"number A = 5", "41", "A", "!"},
      {"number A = 5", 4.0, "A", "!"},
      {"number A = 5", true, "A", "!"},
      {"auto A = -1", own, "A", "0"},
      {"auto A = 5; format A = n%02d", own, "A", "n06"},
      {"auto A = 5", 41, "A format=\"%03d\"", "042"},
      {"auto A = 5", "x", "A", "!"},
      {"time A", 5, "A", "!"},
      {"time A", "2020", "A", "!"},
      {"time A; format A = T%%", own, "A", "T%"},
      {"time A", NQ_TTime::FromMilliseconds(1.6e12), "A format=\"%Y-%%\"", "2020-%"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.definition) + ", answer " + Text(row.answer) + ": " + row.token);
    Names names(row.definition);
    Do(names, "number N = 7");
    const NQ_TAny before = names.GetValue("A");
    answer = row.answer;
    if (!(row.answer == own)) names.SetLookupHandler("A", Answer, false);
    EXPECT_EQ(ResolvedToken(names, row.token), row.resolved);
    // Numbers are stored as shown; nothing else stores.
    EXPECT_TRUE(names.GetValue("A") == before || (before.As<NQ_TInt32>() != nullptr && row.resolved[0] != '!'));
  }
}

TEST(Production, NumbersStoreWhatTheyShow) {
  Names names("number A = 5; auto K = 5");
  EXPECT_EQ(Resolved(names, "<K/><K/><A/><A/>"), "6755");
  EXPECT_EQ(names.GetValue("K"), NQ_TAny(7));
  answer = 41;
  names.SetUserLookupHandler(Answer);
  EXPECT_EQ(Resolved(names, "<A/><K/><K/>"), "414242");
  EXPECT_EQ(names.GetValue("A"), NQ_TAny(41));
  EXPECT_EQ(names.GetValue("K"), NQ_TAny(42));
  names.SetUserLookupHandler(nullptr);
  // The counter moves even when a later stage fails the token.
  EXPECT_EQ(Resolved(names, "<K elem=\"bad\"/>"), "! <K elem=\"bad\"/>");
  EXPECT_EQ(names.GetValue("K"), NQ_TAny(43));
}

TEST(Production, TimesAreStoredOnesOrNow) {
  const auto clock = NQ_TTime::SetClock([] { return 1.7e12; });
  Names names("time T");
  const NQ_TTime now = NQ_TTime::FromMilliseconds(1.7e12), then = NQ_TTime::FromMilliseconds(1.0e12);
  EXPECT_EQ(Resolved(names, "<T/>"), Text(now.Format("%X")));
  EXPECT_EQ(Resolved(names, "<T format=\"%Y %H:%M\"/>"), Text(now.Format("%Y %H:%M")));
  EXPECT_FALSE(names.HasValue("T"));
  names.SetValue("T", then);
  EXPECT_EQ(Resolved(names, "<T/>"), Text(then.Format("%X")));
  Do(names, "format T = %d.%m.%Y");
  EXPECT_EQ(Resolved(names, "<T/>"), Text(then.Format("%d.%m.%Y")));
  Do(names, "remove T");
  EXPECT_EQ(Resolved(names, "<T/>"), Text(now.Format("%d.%m.%Y")));
  NQ_TTime::SetClock(clock);
}

}  // namespace
}  // namespace names_test
