// Handlers that do what they like with the names, with themselves and with the text in hand.
#include <functional>
#include <thread>

#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

// What the handlers below do when they are called for the name A.
std::function<void(TName&, NQ_TDict*)> act;
int acts = 0;

void Act(const NQ_TString& key, TName* names, NQ_TDict* entry) {
  if (!(key == "A")) return;
  ++acts;
  if (act) act(*names, entry);
}
bool Lookup(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  Act(key, names, entry);
  value = "v";
  return true;
}
bool User(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny&) {
  Act(key, names, entry);
  return false;
}
bool Type(const NQ_TString& key, const NQ_TAny& value, const NQ_TString&, NQ_TDict* entry, TName* names,
          NQ_TString& result) {
  result = S(Text(value));
  Act(key, names, entry);
  return true;
}
bool Stage(const NQ_TString& key, const NQ_TString& input, const NQ_TString&, NQ_TDict* entry, TName* names,
           NQ_TString& result) {
  Act(key, names, entry);
  result = input;
  return true;
}
void Warn(const NQ_TString& key, TName* names) { Act(key, names, nullptr); }

constexpr struct {
  std::string_view kind;
  void (*install)(TName&);
} kKinds[] = {
    {"lookup", [](TName& n) { n.SetLookupHandler("A", Lookup, false); }},
    {"user", [](TName& n) { n.SetUserLookupHandler(User); }},
    {"type", [](TName& n) { n.SetTypeHandler("A", Type); }},
    {"elem", [](TName& n) { n.SetElemHandler(Stage); }},
    {"extract", [](TName& n) { n.SetExtractHandler(Stage); }},
    {"regex", [](TName& n) { n.SetRegExHandler(Stage); }},
    {"warn", [](TName& n) { n.SetWarnLookupHandler(Warn); }},
};

NQ_TString templateInHand;

/// Does a script; beside the operations on names it may hold
///   entry Format = 5    the attribute becomes 5, whatever its class was; "none" removes it
///   template <A/>       the template that is being resolved becomes another one
///   again               resolves the template that is being resolved
///   fill                many names come and go, and many templates are resolved
void Perform(TName& names, NQ_TDict* entry, std::string_view script) {
  if (script.starts_with("entry ")) {
    if (entry == nullptr) return;
    const std::size_t equals = script.find(" = ");
    const NQ_TString key = S(script.substr(6, equals - 6));
    const std::string value(script.substr(equals + 3));
    if (value == "none")
      entry->Remove(key);
    else
      (*entry)[key] = value == "5" ? NQ_TAny(5) : value == "{}" ? NQ_TAny(NQ_TDict()) : NQ_TAny(value.c_str());
  } else if (script.starts_with("template ")) {
    templateInHand = S(script.substr(9));
  } else if (script == "again") {
    NQ_TString result;
    names.Resolve(templateInHand, result);
  } else if (script == "fill") {
    names.UnDefine();
    for (int i = 0; i < 300; ++i) Do(names, "text n = v; resolve <n/>" + std::to_string(i));
    for (int i = 0; i < 300; ++i) Do(names, "text n" + std::to_string(i) + " = v");
    names.UnDefine();
  } else {
    Do(names, script);
  }
}

// What ends handlers that resolve more than one token of their own name.
constexpr TNameLimits kFewTokens{.tokens = 1000};

TEST(Handlers, MayDoAnythingToTheNames) {
  for (const std::string script : {"undefine A",
                                   "undefine N",
                                   "undefine B",
                                   "undefine",
                                   "fill",
                                   "number A = 3",
                                   "text A = w; text N = x; text B = <A/>; undefine A; text A = y",
                                   "lookup A = 0; no type A",
                                   "no lookup A; no type A",
                                   "no user; no warn; no elem; no extract; no regex",
                                   "entry Value = {}",
                                   "entry Type = {}",
                                   "entry Format = {}",
                                   "entry Elem = {}",
                                   "entry LookupHandler = 5",
                                   "entry TypeHandler = x",
                                   "entry Category = 5",
                                   "entry UserDefined = x",
                                   "entry Type = none",
                                   "entry LookupHandler = none",
                                   "again",
                                   "template <N/><B/><A/> and something longer",
                                   "template ",
                                   "resolve <A/><B/>",
                                   "token A",
                                   "markers {A}",
                                   "to url //h/<A/>",
                                   "from url x://h/<A/>"}) {
    for (const auto& [kind, install] : kKinds) {
      SCOPED_TRACE(std::string(kind) + " handler: " + script);
      Names names("text A = v; text B = [<A/>]; number N = 7");
      names.SetLimits(kFewTokens);
      install(names);
      for (int time = 1; time <= 2; ++time) {
        templateInHand = "p <A/> <N/> <B/> <A/> q";
        acts = 0;
        // Names that are gone make operations of the script throw, which is the script's own affair.
        act = [&](TName& n, NQ_TDict* entry) {
          try {
            Perform(n, entry, script);
          } catch (const NQ_EException&) {
          }
        };
        NQ_TString result;
        names.Resolve(templateInHand, result);
        const std::string text = Text(result);
        EXPECT_TRUE(text.starts_with("p ") && text.ends_with(" q")) << text;
        EXPECT_GE(acts, time == 1 ? 1 : 0);
        EXPECT_LE(acts, kFewTokens.tokens);
        names.IsDefined("A") && names.GetCategory("A").Empty() && names.IsUserDefined("A");
      }
      act = nullptr;
      Do(names, "text A = fresh; no elem");
      EXPECT_EQ(Resolved(names, "<A/>"), "fresh");
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

TEST(Handlers, ChangesTakeEffectFromTheNextStepOn) {
  const struct {
    const char *kind, *script, *resolved;  // of "<A/>|<N/>|<A/>"
  } rows[] = {
      {"lookup", "undefine A", "! v|7|<A/>"},
      {"type", "undefine A", "! x|7|<A/>"},
      {"elem", "undefine A", "! x|7|<A/>"},
      {"warn", "undefine A", "! <A/>|7|<A/>"},
      {"lookup", "number A = 3", "v|7|3"},
      {"warn", "number A = 3", "3|7|3"},
      {"lookup", "undefine", "! v|<N/>|<A/>"},
      {"warn", "string A = new", "new|7|new"},
      {"user", "string A = new", "new|7|new"},
      {"elem", "int N = 8", "x|8|x"},
      // The lookup is chosen before the user hook is asked, the type handler after the lookup.
      {"user", "lookup A = 3", "! x|7|<A/>"},
      {"user", "no lookup A", "! x|7|<A/>"},
      {"user", "remove A", "! <A/>|7|<A/>"},
      {"lookup", "no type A", "! <A/>|7|<A/>"},
      {"lookup", "format A = (%s)", "(v)|7|(v)"},
      {"lookup", "entry Format = (%s)", "(v)|7|(v)"},
      {"lookup", "entry Format = none", "v|7|v"},
      {"lookup", "entry Format = 5", "v|7|v"},
      {"lookup", "entry Elem = 5", "! <A/>|7|<A/>"},
      {"lookup", "entry Extract = {}", "! <A/>|7|<A/>"},
      {"lookup", "entry RegEx = 5", "! <A/>|7|<A/>"},
      {"lookup", "entry TypeHandler = x", "! <A/>|7|<A/>"},
      {"elem", "entry LookupHandler = 5", "! x|7|<A/>"},
      {"elem", "entry Value = 5", "! x|7|<A/>"},
      {"elem", "entry Value = <N/>", "x|7|7"},
      {"user", "entry Elem = x,1", "|7|"},
      {"elem", "no elem", "x|7|x"},
      {"elem", "no extract; regex A = (", "x|7|x"},
      {"elem", "no elem; extract A = 1,1", "|7|x"},  // without its own stage the chain still goes on, this once
      {"elem", "template gone", "x|7|x"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.kind) + " handler: " + row.script);
    Names names("text A = x; number N = 7");
    for (const auto& [kind, install] : kKinds)
      if (kind == row.kind) install(names);
    Resolved(names, "<A/>|<N/>|<A/>");  // seen before
    templateInHand = "<A/>|<N/>|<A/>";
    act = [&](TName& n, NQ_TDict* entry) { Perform(n, entry, row.script); };
    NQ_TString result;
    const bool ok = names.Resolve(templateInHand, result);
    act = nullptr;
    EXPECT_EQ((ok ? "" : "! ") + Text(result), row.resolved);
  }
  Names names("number N = 7");
  names.SetWarnLookupHandler(Warn);
  act = [](TName& n, NQ_TDict*) { Do(n, "text A = made"); };  // a hook may define what is missing
  EXPECT_EQ(Resolved(names, "<A/> <N/>"), "made 7");
  act = nullptr;
}

TEST(Handlers, ThrowThroughEveryOperation) {
  for (const auto& [kind, install] : kKinds) {
    for (const char* script : {"resolve a <N/> <A/>", "resolve <B/>", "markers {A}", "to url //h/<A/>",
                               "from url file://h/<A/>", "token A"}) {
      SCOPED_TRACE(std::string(kind) + " handler throws through " + script);
      Names names("text A = x; text B = <C/>; text C = <A/>; number N = 7");
      install(names);
      act = [](TName&, NQ_TDict*) { throw 5; };
      for (int time = 0; time < 100; ++time) EXPECT_THROW(Do(names, script), int);  // more than values may nest
      EXPECT_TRUE(OtherThreadGetsLock(names));
      names.SetDebugLevel(1);
      {
        Output output;
        EXPECT_THROW(Do(names, script), int);
      }
      EXPECT_EQ(names.SetDebugLevel(0), 1);
      act = nullptr;
      const std::string x = kind == "lookup" ? "v" : "x";
      EXPECT_EQ(Resolved(names, "a <N/> <A/> <N/><B/>"), "a 7 " + x + " 7" + x);
    }
  }
}

TEST(Handlers, RecursionThroughHandlersEnds) {
  for (const auto& [kind, install] : kKinds) {
    for (const std::string script : {"resolve <A/>", "markers {A}", "token A", "to url //h/<A/>",
                                     "from url file://h/<A/>", "resolve <B/>", "resolve <A/><A/>"}) {
      SCOPED_TRACE(std::string(kind) + " handler: " + script);
      Names names("text A = x; text B = <A/>");
      names.SetLimits(kFewTokens);
      install(names);
      acts = 0;
      act = [&](TName& n, NQ_TDict*) { Do(n, script); };
      Resolved(names, "<A/>");
      act = nullptr;
      EXPECT_GT(acts, 1);
      EXPECT_LE(acts, script == "resolve <A/><A/>" ? kFewTokens.tokens : kFewTokens.nestedDepth + 1);
      const std::string x = kind == "lookup" ? "v" : "x";
      EXPECT_EQ(Resolved(names, "<A/><B/>"), x + x);
    }
  }
}

TEST(Handlers, RunOnTheCallersThreadWithTheLockHeld) {
  for (const char* script : {"resolve <A/>", "token A"}) {
    Names names("text A = x");
    names.SetLookupHandler("A", Lookup, false);
    std::thread other;
    act = [&, caller = std::this_thread::get_id()](TName& n, NQ_TDict*) {
      EXPECT_EQ(std::this_thread::get_id(), caller);
      other = std::thread([&n] { n.SetValue("A", "y"); });
      for (int i = 0; i < 1000; ++i) std::this_thread::yield();
      EXPECT_EQ(n.GetValue("A"), NQ_TAny("x"));
    };
    Do(names, script);
    act = nullptr;
    other.join();
    EXPECT_EQ(names.GetValue("A"), NQ_TAny("y"));
  }
}

}  // namespace
}  // namespace names_test
