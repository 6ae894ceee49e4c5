// How the value of one token comes about: hooks, lookups, type handlers, formats.
#include <climits>

#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

// What the handlers below were called with, in order.
std::string calls;

bool Own(const NQ_TString& key, NQ_TDict*, TName*, NQ_TAny& value) {
  calls += "own(" + Text(key) + "," + Text(value) + ") ";
  value = "<N/>o";
  return true;
}
bool OwnFails(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  calls += "own fails ";
  value = "ignored";
  return false;
}
bool User(const NQ_TString& key, NQ_TDict*, TName*, NQ_TAny& value) {
  calls += "user(" + Text(key) + ") ";
  value = "<N/>u";
  return Text(key) == "A";
}
bool Type(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict*, TName*,
          NQ_TString& result) {
  calls += "type(" + Text(key) + "," + Text(value) + "," + Text(format) + ") ";
  result = S("<A/>t");
  return true;
}
template <char kName, bool kSucceeds>
bool Stage(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict*, TName*,
           NQ_TString& result) {
  calls +=
      std::string(1, kName) + "(" + Text(key) + "," + Text(input) + "," + Text(attribute) + "," + Text(result) + ") ";
  result = S("<") + input + S(std::string(1, kName));
  return kSucceeds;
}
void Warn(const NQ_TString& key, TName*) { calls += "warn(" + Text(key) + ") "; }

struct OwnObject : TNameLookupHandler {
  bool Lookup(const NQ_TString& key, NQ_TDict*, TName*, NQ_TAny& value) const override {
    calls += "object(" + Text(key) + "," + Text(value) + ") ";
    value = "ob";
    return true;
  }
};
struct WarnObject : TNameWarnLookupHandler {
  void WarnLookup(const NQ_TString& key, TName*) override { calls += "object warns(" + Text(key) + ") "; }
};
const OwnObject ownObject;
WarnObject warnObject;
constexpr const TNameLookupHandler* kNoObject = nullptr;
constexpr TName::TLookupFunction kNoFunction = nullptr;
constexpr TNameWarnLookupHandler* kNoWarnObject = nullptr;
constexpr TName::TWarnFunction kNoWarnFunction = nullptr;

TEST(Production, CallsHandlersInOrder) {
  const struct {
    const char* what;
    void (*set)(TName&);
    const char *token, *resolved, *called;
  } rows[] = {
      {"own lookup", [](TName& n) { n.SetLookupHandler("A", Own, false); }, "A", "7o", "own(A,(null)) "},
      {"object", [](TName& n) { n.SetLookupHandler("A", &ownObject, false); }, "A", "ob", "object(A,(null)) "},
      {"object in place of a function",
       [](TName& n) { n.SetLookupHandler("A", Own, false), n.SetLookupHandler("A", &ownObject, false); }, "A", "ob",
       "object(A,(null)) "},
      {"function in place of an object",
       [](TName& n) { n.SetLookupHandler("A", &ownObject, false), n.SetLookupHandler("A", Own, false); }, "A", "7o",
       "own(A,(null)) "},
      {"user answers", [](TName& n) { n.SetUserLookupHandler(User), n.SetLookupHandler("A", Own, false); }, "A", "7u",
       "user(A) user(N) "},
      {"user declines, and leaves nothing",
       [](TName& n) { n.SetUserLookupHandler(User), n.SetLookupHandler("B", Own, false); }, "B", "7o",
       "user(B) own(B,(null)) user(N) "},
      {"user for a name without a lookup",
       [](TName& n) { n.SetUserLookupHandler(User), n.SetLookupHandler("A", kNoFunction, false); }, "A", "!", ""},
      {"user for a name with a null object",
       [](TName& n) { n.SetUserLookupHandler(User), n.SetLookupHandler("A", kNoObject, false); }, "A", "!", ""},
      {"user removed", [](TName& n) { n.SetUserLookupHandler(User), n.SetUserLookupHandler(nullptr); }, "A", "x", ""},
      {"lookup fails", [](TName& n) { n.SetLookupHandler("A", OwnFails, false), n.SetTypeHandler("A", Type); }, "A",
       "!", "own fails "},
      {"type handler", [](TName& n) { n.SetLookupHandler("A", Own, false), n.SetTypeHandler("A", Type); },
       "A format=\"f\"", "<A/>t", "own(A,(null)) type(A,7o,f) "},
      {"stages",
       [](TName& n) {
         n.SetElemHandler(Stage<'e', true>), n.SetExtractHandler(Stage<'x', true>), n.SetRegExHandler(Stage<'r', true>);
       },
       "A regex=\"1\" elem=\"2\" extract=\"3\"", "<<<xexr", "e(A,x,2,x) x(A,<xe,3,<xe) r(A,<<xex,1,<<xex) "},
      {"a stage fails",
       [](TName& n) {
         n.SetElemHandler(Stage<'e', true>), n.SetExtractHandler(Stage<'x', false>),
             n.SetRegExHandler(Stage<'r', true>);
       },
       "A", "!", "e(A,x,,x) x(A,<xe,,<xe) "},
      {"no elem stage ends the chain",
       [](TName& n) {
         n.SetElemHandler(nullptr), n.SetExtractHandler(Stage<'x', true>), n.SetRegExHandler(Stage<'r', true>);
       },
       "A elem=\"bad\" extract=\"bad\" regex=\"(\"", "x", ""},
      {"no extract stage ends the chain",
       [](TName& n) {
         n.SetElemHandler(Stage<'e', true>), n.SetExtractHandler(nullptr), n.SetRegExHandler(Stage<'r', true>);
       },
       "A", "<xe", "e(A,x,,x) "},
      {"warn function", [](TName& n) { n.SetWarnLookupHandler(Warn); }, "A", "x", "warn(A) "},
      {"warn object", [](TName& n) { n.SetWarnLookupHandler(&warnObject); }, "A", "x", "object warns(A) "},
      {"warn object in place of a function",
       [](TName& n) { n.SetWarnLookupHandler(Warn), n.SetWarnLookupHandler(&warnObject); }, "A", "x",
       "object warns(A) "},
      {"warn function in place of an object",
       [](TName& n) { n.SetWarnLookupHandler(&warnObject), n.SetWarnLookupHandler(Warn); }, "A", "x", "warn(A) "},
      {"warn removed by a null object",
       [](TName& n) { n.SetWarnLookupHandler(Warn), n.SetWarnLookupHandler(kNoWarnObject); }, "A", "x", ""},
      {"warn removed by a null function",
       [](TName& n) { n.SetWarnLookupHandler(&warnObject), n.SetWarnLookupHandler(kNoWarnFunction); }, "A", "x", ""},
      {"warned of undefined names", [](TName& n) { n.SetWarnLookupHandler(Warn); }, "U", "!", "warn(U) "},
      {"not warned of the empty token", [](TName& n) { n.SetWarnLookupHandler(Warn); }, "", "", ""},
      {"warned of every token", [](TName& n) { n.SetWarnLookupHandler(Warn); }, "B", "7<U/>",
       "warn(B) warn(N) warn(U) "},
      {"warned, then user, then own",
       [](TName& n) {
         n.SetWarnLookupHandler(Warn), n.SetUserLookupHandler(User), n.SetLookupHandler("B", OwnFails, false);
       },
       "B", "!", "warn(B) user(B) own fails "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names names{"text A = x", "number N = 7", "text B = <N/><U/>"};
    row.set(names);
    for (int time = 1; time <= 3; ++time) {
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
  const struct {
    const char* what;
    void (*set)(TName&);
    bool value;
  } rows[] = {
      {"function, clear", [](TName& n) { n.SetLookupHandler("A", Own, true); }, false},
      {"function, keep", [](TName& n) { n.SetLookupHandler("A", Own, false); }, true},
      {"object, clear", [](TName& n) { n.SetLookupHandler("A", &ownObject, true); }, false},
      {"object, keep", [](TName& n) { n.SetLookupHandler("A", &ownObject, false); }, true},
      {"value", [](TName& n) { n.SetLookupHandler("A", TName::TName_LookupValue); }, true},
      {"sql", [](TName& n) { n.SetLookupHandler("A", TName::TName_LookupSQLQuery); }, true},
      {"time", [](TName& n) { n.SetLookupHandler("A", TName::TName_LookupTime); }, true},
      {"another", [](TName& n) { n.SetLookupHandler("A", TName::TName_Lookup(99)); }, true},
  };
  for (const auto& row : rows) {
    Names names{"text A = x"};
    row.set(names);
    EXPECT_EQ(names.HasValue("A"), row.value) << row.what;
  }
  Names names{"text A = x"};
  names.SetLookupHandler("A", TName::TName_Lookup(99));
  EXPECT_EQ(Resolved(names, "<A/>"), "x");  // installs nothing: the lookup stays
}

TEST(Production, SqlIsNotCarriedOut) {
  Names names{"sql Q", "number N = 1"};
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

TEST(Production, FormatsAndTypes) {
  const NQ_TAny none;
  const struct {
    const char* definition;  // of A
    NQ_TAny value;           // what the lookup answers; null: its own value
    const char *token, *resolved;
  } rows[] = {
      {"text A = x", none, "A", "x"},
      {"text A = x", none, "A format=\"[%s]\"", "[x]"},
      {"text A = x", none, "A format=\"%5s|\"", "    x|"},
      {"text A = x", none, "A format=\"%-5s|\"", "x    |"},
      {"text A = abc", none, "A format=\"%.2s\"", "ab"},
      {"text A = x", none, "A format=\"none\"", "none"},
      {"text A = x", none, "A format=\"100%%%s\"", "100%x"},
      {"text A = x", none, "A format=\"%4096s\"", nullptr},  // 4,096 characters
      {"text A = x", none, "A format=\"%d\"", "!"},
      {"text A = \xC3\xB8", none, "A format=\"%3s\"", " \xC3\xB8"},  // counts bytes, as printf does
      {"text A = \xC3\xB8x", none, "A format=\"%.1s\"", "\xEF\xBF\xBD"},
      {"text A = \xF0\x9F\x98\x80", none, "A format=\"%s \"", "\xF0\x9F\x98\x80 "},
      {"text A = x", 5, "A", "!"},
      {"text A = x", true, "A", "!"},
      {"text A = x", NQ_TAny::Illegal(), "A", "!"},
      {"text A = x", NQ_TURL(S("ftp://h/a/b")), "A format=\"%d%d\"", "file://h/a/b"},
      {"url A = file://h/<N/>", none, "A", "file://h/<N/>"},  // only strings are templates
      {"url A = file://h/a", "<N/>y", "A", "7y"},
      {"url A = p", none, "A", "file:///p"},
      {"number A = 5", none, "A", "5"},
      {"number A = -5", none, "A format=\"%04d\"", "-005"},
      {"number A = 5", none, "A format=\"%+.3i|%%\"", "+005|%"},
      {"number A = 255", none, "A format=\"%#x %%\"", "0xff %"},
      {"number A = 255", none, "A format=\"%X\"", "FF"},
      {"number A = 8", none, "A format=\"%o\"", "10"},
      {"number A = -1", none, "A format=\"%u\"", "4294967295"},
      {"number A = 65", none, "A format=\"<%c\"", "<A"},
      {"number A = 5", none, "A format=\"%s\"", "!"},
      {"number A = 5", none, "A format=\"%f\"", "!"},
      {"number A = 5", none, "A format=\"%ld\"", "!"},
      {"number A = 5", none, "A format=\"none\"", "none"},
      {"number A = 5", 41, "A", "41"},
      {"number A = 5", "41", "A", "!"},
      {"number A = 5", 4.0, "A", "!"},
      {"number A = 5", true, "A", "!"},
      {"auto A = 5", none, "A", "6"},
      {"auto A = 5", 41, "A format=\"%03d\"", "042"},
      {"auto A = -1", none, "A", "0"},
      {"auto A = 5", "x", "A", "!"},
      {"time A", 5, "A", "!"},
      {"time A", "2020", "A", "!"},
      {"time A", NQ_TTime::FromMilliseconds(1.6e12), "A format=\"%Y-%%\"", "2020-%"},
      {"time A", NQ_TTime::FromMilliseconds(1.6e12), "A format=\"none\"", "none"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.definition) + ", answer " + Text(row.value) + ": " + row.token);
    Names names{row.definition, "number N = 7"};
    const NQ_TAny before = names.GetValue("A");
    answer = row.value;
    if (!(row.value == none)) names.SetLookupHandler("A", Answer, false);
    const std::string resolved = ResolvedToken(names, row.token);
    EXPECT_EQ(resolved, row.resolved == nullptr ? std::string(4095, ' ') + "x" : row.resolved);
    // A number is stored as shown, also when a handler gave it; nothing else stores.
    const bool number = std::string_view(row.definition).find("text") != 0 && before.As<NQ_TInt32>() != nullptr;
    if (resolved == "!" || !number) {
      EXPECT_EQ(names.GetValue("A"), before);
    }
  }
}

TEST(Production, NumbersStoreWhatTheyShow) {
  Names names{"number A = 5", "auto K = 5"};
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

TEST(Production, FormatsOfTheDefinition) {
  const struct {
    std::vector<const char*> lines;
    const char *token, *resolved;
  } rows[] = {
      {{"text A = x", "format A = [%s]"}, "A", "[x]"},
      {{"text A = x", "format A = [%s]"}, "A format=\"\"", "[x]"},
      {{"text A = x", "format A = [%s]"}, "A format=\"%s\"", "x"},
      {{"text A = x", "format A = <N/>%s"}, "A", "<N/>x"},
      {{"text A = x", "format A = "}, "A", ""},
      {{"text A = x", "format A = %s%s"}, "A", "!"},
      {{"number A = 5", "format A = %03d"}, "A", "005"},
      {{"number A = 5", "format A = %n"}, "A", "!"},
      {{"number A = 5", "format A = %n"}, "A format=\"%d\"", "5"},
      {{"auto A = 5", "format A = n%02d"}, "A", "n06"},
      {{"time A", "format A = T%%"}, "A", "T%"},
      {{"url A = file://h/p", "format A = %d"}, "A", "file://h/p"},
  };
  for (const auto& row : rows) {
    Names names(row.lines);
    Given(names, "number N = 7");
    const int times = std::string_view(row.lines[0]).starts_with("auto") ? 1 : 3;
    for (int time = 1; time <= times; ++time)
      EXPECT_EQ(ResolvedToken(names, row.token), row.resolved) << row.lines[1] << ": " << row.token;
  }
}

double noon() { return 1.7e12; }

TEST(Production, TimesAreStoredOnesOrNow) {
  const auto clock = NQ_TTime::SetClock(noon);
  Names names{"time T"};
  const NQ_TTime now = NQ_TTime::FromMilliseconds(1.7e12), then = NQ_TTime::FromMilliseconds(1.0e12);
  EXPECT_EQ(Resolved(names, "<T/>"), Text(now.Format("%X")));
  EXPECT_EQ(Resolved(names, "<T format=\"%Y %H:%M\"/>"), Text(now.Format("%Y %H:%M")));
  EXPECT_FALSE(names.HasValue("T"));
  names.SetValue("T", then);
  EXPECT_EQ(Resolved(names, "<T/>"), Text(then.Format("%X")));
  names.SetFormat("T", "%d.%m.%Y");
  EXPECT_EQ(Resolved(names, "<T/>"), Text(then.Format("%d.%m.%Y")));
  names.RemValue("T");
  EXPECT_EQ(Resolved(names, "<T/>"), Text(now.Format("%d.%m.%Y")));
  NQ_TTime::SetClock(clock);
}

}  // namespace
}  // namespace names_test
