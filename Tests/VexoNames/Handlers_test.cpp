// Handlers that do what they like with the names, with themselves and with the text in hand.
#include <functional>
#include <thread>

#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

// What the handlers below do when they are called.
std::function<void(TName&, NQ_TDict*)> act;
int acts = 0;

void Act(TName* names, NQ_TDict* entry) {
  ++acts;
  if (act) act(*names, entry);
}
bool Lookup(const NQ_TString&, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  Act(names, entry);
  value = "v";
  return true;
}
bool User(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny&) {
  if (key == "A") Act(names, entry);
  return false;
}
bool Type(const NQ_TString&, const NQ_TAny& value, const NQ_TString&, NQ_TDict* entry, TName* names,
          NQ_TString& result) {
  result = *value.As<NQ_TString>();
  Act(names, entry);
  return true;
}
bool Stage(const NQ_TString& key, const NQ_TString& input, const NQ_TString&, NQ_TDict* entry, TName* names,
           NQ_TString& result) {
  if (key == "A") Act(names, entry);
  result = input;
  return true;
}
void Warn(const NQ_TString& key, TName* names) {
  if (key == "A") Act(names, nullptr);
}

constexpr struct {
  const char* kind;
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

// What ends a handler that resolves more than one token of its own name.
constexpr TNameLimits kFewTokens{.tokens = 2000};

/// One template with two tokens of the name whose handler acts, another name between them, resolved twice; every row
/// against every kind of handler. Outcomes are told apart from crashes only where they depend on the kind.
TEST(Handlers, MayDoAnythingToTheNames) {
  const struct {
    const char* what;
    std::function<void(TName&, NQ_TDict*)> act;
    const char* after;  // what the names are then
  } rows[] = {
      {"undefines its name", [](TName& n, NQ_TDict*) { n.UnDefine("A"); }, "B N"},
      {"undefines the next name", [](TName& n, NQ_TDict*) { n.UnDefine("N"); }, "A B"},
      {"undefines all", [](TName& n, NQ_TDict*) { n.UnDefine(); }, ""},
      {"undefines all and defines many",
       [](TName& n, NQ_TDict*) {
         n.UnDefine();
         for (int i = 0; i < 300; ++i) Given(n, "text n" + std::to_string(i) + " = fill");
         for (int i = 0; i < 300; ++i) n.UnDefine(S("n" + std::to_string(i)));
       },
       ""},
      {"redefines its name", [](TName& n, NQ_TDict*) { Given(n, "number A = 3"); }, "B N A"},
      {"redefines all, many times",
       [](TName& n, NQ_TDict*) {
         for (int i = 0; i < 50; ++i) Given(n, "text A = w"), Given(n, "text N = x"), Given(n, "text B = <A/>");
       },
       "A N B"},
      {"replaces the handlers of its name",
       [](TName& n, NQ_TDict*) {
         if (!n.IsDefined("A")) return;
         n.SetLookupHandler("A", TName::TName_LookupValue);
         n.SetTypeHandler("A", Type);
       },
       "A B N"},
      {"removes the handlers of its name",
       [](TName& n, NQ_TDict*) {
         n.SetLookupHandler("A", static_cast<TName::TLookupFunction>(nullptr), true);
         n.SetTypeHandler("A", nullptr);
       },
       "A B N"},
      {"removes all handlers",
       [](TName& n, NQ_TDict*) {
         n.SetUserLookupHandler(nullptr);
         n.SetWarnLookupHandler(static_cast<TName::TWarnFunction>(nullptr));
         n.SetElemHandler(nullptr), n.SetExtractHandler(nullptr), n.SetRegExHandler(nullptr);
       },
       "A B N"},
      {"empties the entry",
       [](TName&, NQ_TDict* entry) {
         if (entry != nullptr) entry->Clear();
       },
       "A B N"},
      {"fills the entry with things of the wrong class",
       [](TName&, NQ_TDict* entry) {
         if (entry == nullptr) return;
         for (const char* key : {"Format", "Value", "Elem", "Extract", "RegEx", "LookupHandler", "TypeHandler",
                                 "LookupHandler2", "Category", "UserDefined", "Host"})
           (*entry)[key] = NQ_TDict();
         (*entry)["Type"] = "text";
       },
       "A B N"},
      {"sets limits", [](TName& n, NQ_TDict*) { n.SetLimits({.nestedDepth = 1, .tokens = 1, .characters = 1}); },
       "A B N"},
      {"resolves the same template",
       [](TName& n, NQ_TDict*) {
         NQ_TString result;
         n.Resolve(templateInHand, result);
       },
       "A B N"},
      {"resolves many others",
       [](TName& n, NQ_TDict*) {
         if (acts > 1) return;
         for (int i = 0; i < 3000; ++i) Resolved(n, std::to_string(i) + "<N/>" + std::to_string(i));
       },
       "A B N"},
      {"changes the template", [](TName&, NQ_TDict*) { templateInHand = "<N/><B/><A/> and something longer"; },
       "A B N"},
      {"empties the template", [](TName&, NQ_TDict*) { templateInHand.Clear(); }, "A B N"},
      {"appends to the template", [](TName&, NQ_TDict*) { templateInHand.Append("<B/>"); }, "A B N"},
  };
  for (const auto& row : rows) {
    for (const auto& [kind, install] : kKinds) {
      SCOPED_TRACE(std::string(kind) + " handler " + row.what);
      Names names{"text A = v", "text B = [<A/>]", "number N = 7"};
      names.SetLimits(kFewTokens);
      install(names);
      for (int time = 1; time <= 2; ++time) {
        templateInHand = "p <A/> <N/> <B/> <A/> q";
        acts = 0;
        act = row.act;
        NQ_TString result;
        names.Resolve(templateInHand, result);
        const std::string text = Text(result);
        EXPECT_TRUE(text.starts_with("p ") && text.ends_with(" q")) << text;
        EXPECT_GE(acts, time == 1 ? 1 : 0);
        EXPECT_LE(acts, kFewTokens.tokens);
        if (time == 1) {
          EXPECT_EQ(KeysText(names), row.after);
        }
      }
      act = nullptr;
      names.SetLimits(TNameLimits());
      Given(names, "text A = fresh");
      names.SetElemHandler(nullptr);
      EXPECT_EQ(Resolved(names, "<A/>"), "fresh");
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

// Where the steps settle what comes out.
TEST(Handlers, ChangesTakeEffectFromTheNextStepOn) {
  const struct {
    const char *what, *kind;
    std::function<void(TName&, NQ_TDict*)> act;
    const char* resolved;  // of "<A/>|<N/>|<A/>"
  } rows[] = {
      {"undefines its name", "lookup", [](TName& n, NQ_TDict*) { n.UnDefine("A"); }, "! v|7|<A/>"},
      {"undefines its name", "type", [](TName& n, NQ_TDict*) { n.UnDefine("A"); }, "! x|7|<A/>"},
      {"undefines its name", "elem", [](TName& n, NQ_TDict*) { n.UnDefine("A"); }, "! x|7|<A/>"},
      {"undefines its name", "warn", [](TName& n, NQ_TDict*) { n.UnDefine("A"); }, "! <A/>|7|<A/>"},
      {"redefines its name", "lookup", [](TName& n, NQ_TDict*) { Given(n, "number A = 3"); }, "v|7|3"},
      {"redefines its name", "warn", [](TName& n, NQ_TDict*) { Given(n, "number A = 3"); }, "3|7|3"},
      {"undefines all", "lookup", [](TName& n, NQ_TDict*) { n.UnDefine(); }, "! v|<N/>|<A/>"},
      {"sets the value", "warn", [](TName& n, NQ_TDict*) { n.SetValue("A", std::to_string(acts).c_str()); }, "1|7|2"},
      {"sets the value", "user", [](TName& n, NQ_TDict*) { n.SetValue("A", std::to_string(acts).c_str()); }, "1|7|2"},
      {"sets the next value", "elem", [](TName& n, NQ_TDict*) { n.SetValue("N", 8); }, "x|8|x"},
      // The lookup is chosen before the user hook is asked, the type handler after the lookup.
      {"replaces the lookup", "user", [](TName& n, NQ_TDict*) { n.SetLookupHandler("A", Lookup, false); }, "x|7|v"},
      {"removes the lookup", "user",
       [](TName& n, NQ_TDict*) { n.SetLookupHandler("A", static_cast<TName::TLookupFunction>(nullptr), false); },
       "! x|7|<A/>"},
      {"removes the value", "user", [](TName& n, NQ_TDict*) { n.RemValue("A"); }, "! <A/>|7|<A/>"},
      {"removes the type handler", "lookup", [](TName& n, NQ_TDict*) { n.SetTypeHandler("A", nullptr); },
       "! <A/>|7|<A/>"},
      {"sets the format", "lookup", [](TName& n, NQ_TDict*) { n.SetFormat("A", "(%s)"); }, "(v)|7|(v)"},
      {"sets the format in the entry", "lookup", [](TName&, NQ_TDict* e) { (*e)["Format"] = "(%s)"; }, "(v)|7|(v)"},
      {"removes the format", "lookup", [](TName&, NQ_TDict* e) { e->Remove("Format"); }, "v|7|v"},
      {"format of the wrong class", "lookup", [](TName&, NQ_TDict* e) { (*e)["Format"] = 5; }, "v|7|v"},
      {"elem of the wrong class", "lookup", [](TName&, NQ_TDict* e) { (*e)["Elem"] = 5; }, "! <A/>|7|<A/>"},
      {"extract of the wrong class", "lookup", [](TName&, NQ_TDict* e) { (*e)["Extract"] = NQ_TDict(); },
       "! <A/>|7|<A/>"},
      {"regex of the wrong class", "lookup", [](TName&, NQ_TDict* e) { (*e)["RegEx"] = true; }, "! <A/>|7|<A/>"},
      {"type handler of the wrong class", "lookup", [](TName&, NQ_TDict* e) { (*e)["TypeHandler"] = "x"; },
       "! <A/>|7|<A/>"},
      {"lookup of the wrong class", "elem", [](TName&, NQ_TDict* e) { (*e)["LookupHandler"] = 5; }, "! x|7|<A/>"},
      {"value of the wrong class", "elem", [](TName&, NQ_TDict* e) { (*e)["Value"] = 5; }, "! x|7|<A/>"},
      {"value in the entry", "elem", [](TName&, NQ_TDict* e) { (*e)["Value"] = "<N/>"; }, "x|7|7"},
      {"elem in the entry", "user", [](TName&, NQ_TDict* e) { (*e)["Elem"] = "x,1"; }, "|7|"},
      {"removes the elem stage", "elem", [](TName& n, NQ_TDict*) { n.SetElemHandler(nullptr); }, "x|7|x"},
      {"removes the extract stage", "elem",
       [](TName& n, NQ_TDict*) { n.SetExtractHandler(nullptr), n.SetRegExValue("A", "("); }, "x|7|x"},
      {"removes its own stage; the next ones run", "elem",
       [](TName& n, NQ_TDict*) { n.SetElemHandler(nullptr), n.SetExtractValue("A", "1,1"); }, "|7|x"},
      {"changes the template", "elem", [](TName&, NQ_TDict*) { templateInHand = "gone"; }, "x|7|x"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.kind) + " handler " + row.what);
    Names names{"text A = x", "number N = 7"};
    for (const auto& [kind, install] : kKinds)
      if (std::string(kind) == row.kind) install(names);
    Resolved(names, "<A/>|<N/>|<A/>");  // seen before
    templateInHand = "<A/>|<N/>|<A/>";
    acts = 0;
    act = row.act;
    NQ_TString result;
    const bool ok = names.Resolve(templateInHand, result);
    act = nullptr;
    EXPECT_EQ((ok ? "" : "! ") + Text(result), row.resolved);
  }
}

TEST(Handlers, MayDefineWhatIsMissing) {
  Names names{"number N = 7"};
  act = [](TName& n, NQ_TDict*) { Given(n, "text A = made"); };
  names.SetWarnLookupHandler(Warn);
  EXPECT_EQ(Resolved(names, "<A/> <N/>"), "made 7");
  act = nullptr;
}

TEST(Handlers, ThrowThroughEveryOperation) {
  using Operation = void (*)(TName&);
  constexpr struct {
    const char* what;
    Operation run;
  } operations[] = {
      {"Resolve",
       [](TName& n) {
         NQ_TString r;
         n.Resolve(S("a <N/> <A/> <N/>"), r);
       }},
      {"Resolve nested",
       [](TName& n) {
         NQ_TString r;
         n.Resolve(S("<B/>"), r);
       }},
      {"Resolve with markers",
       [](TName& n) {
         NQ_TString r;
         n.Resolve(S("{A}"), S("{"), S("}"), r);
       }},
      {"Resolve to a URL",
       [](TName& n) {
         NQ_TURL r;
         n.Resolve(S("//h/<A/>"), r);
       }},
      {"Resolve a URL",
       [](TName& n) {
         NQ_TURL r;
         n.Resolve(NQ_TURL(S("file://h/<A/>")), r);
       }},
      {"ResolveTokenEx",
       [](TName& n) {
         NQ_TString r;
         n.ResolveTokenEx(S("A"), r);
       }},
  };
  for (const auto& [kind, install] : kKinds) {
    for (const auto& operation : operations) {
      SCOPED_TRACE(std::string(kind) + " handler throws through " + operation.what);
      Names names{"text A = x", "text B = <B2/>", "text B2 = <A/>", "number N = 7"};
      install(names);
      for (int time = 0; time < 100; ++time) {  // more often than values may nest
        acts = 0;
        act = [](TName&, NQ_TDict*) { throw Oops(); };
        EXPECT_THROW(operation.run(names), Oops);
      }
      act = nullptr;
      EXPECT_TRUE(OtherThreadGetsLock(names));
      const std::string x = std::string(kind) == "lookup" ? "v" : "x";
      EXPECT_EQ(Resolved(names, "a <N/> <A/> <N/><B/>"), "a 7 " + x + " 7" + x);
      names.SetDebugLevel(1);
      act = [](TName&, NQ_TDict*) { throw Oops(); };
      {
        Output output;
        EXPECT_THROW(operation.run(names), Oops);
      }
      act = nullptr;
      EXPECT_EQ(names.GetDebugLevel(), 1);
    }
  }
}

TEST(Handlers, RecursionThroughHandlersEnds) {
  const struct {
    const char* what;
    std::function<void(TName&)> resolve;
  } rows[] = {
      {"template", [](TName& n) { Resolved(n, "<A/><N/>"); }},
      {"markers", [](TName& n) { Resolved(n, "{A}", "{", "}"); }},
      {"token", [](TName& n) { ResolvedToken(n, "A"); }},
      {"to a URL",
       [](TName& n) {
         NQ_TURL url;
         n.Resolve(S("//h/<A/>"), url);
       }},
      {"a URL",
       [](TName& n) {
         NQ_TURL url;
         n.Resolve(NQ_TURL(S("file://h/<A/>")), url);
       }},
      {"nested", [](TName& n) { Resolved(n, "<B/>"); }},
      {"twice", [](TName& n) { Resolved(n, "<A/><A/>"); }},
  };
  for (const auto& row : rows) {
    for (const auto& [kind, install] : kKinds) {
      SCOPED_TRACE(std::string(kind) + " handler resolves " + row.what);
      Names names{"text A = x", "text B = <A/>", "number N = 7"};
      names.SetLimits(kFewTokens);
      install(names);
      act = [&row](TName& n, NQ_TDict*) { row.resolve(n); };
      acts = 0;
      Resolved(names, "<A/>");
      EXPECT_GT(acts, 1);
      EXPECT_LE(acts, std::string(row.what) == "twice" ? kFewTokens.tokens : kFewTokens.nestedDepth + 1);
      act = nullptr;
      const std::string x = std::string(kind) == "lookup" ? "v" : "x";
      EXPECT_EQ(Resolved(names, "<A/><B/>"), x + x);
    }
  }
}

TEST(Handlers, RunOnTheCallersThreadWithTheLockHeld) {
  Names names{"text A = x"};
  names.SetLookupHandler("A", Lookup, false);
  for (const bool token : {false, true}) {
    std::thread other;
    bool done = false;
    acts = 0;
    act = [&, caller = std::this_thread::get_id()](TName& n, NQ_TDict*) {
      EXPECT_EQ(std::this_thread::get_id(), caller);
      other = std::thread([&] {
        n.SetValue("A", "y");
        done = true;  // seen by no one before the lock is free
      });
      for (int i = 0; i < 1000; ++i) std::this_thread::yield();
      n.GetValue("A");
      EXPECT_EQ(n.GetValue("A"), NQ_TAny("x"));
    };
    token ? ResolvedToken(names, "A") : Resolved(names, "<A/>");
    other.join();
    EXPECT_TRUE(done);
    EXPECT_EQ(names.GetValue("A"), NQ_TAny("y"));
    names.SetValue("A", "x");
  }
  act = nullptr;
}

}  // namespace
}  // namespace names_test
