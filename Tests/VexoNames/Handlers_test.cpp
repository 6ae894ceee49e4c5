// Handlers: who is called when, with what; and those that do what they like with the names, with themselves and with
// the text in hand.
#include <functional>
#include <span>
#include <thread>

#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

std::string calls;                           // what the handlers below were called with, in order
std::function<void(TName&, NQ_TDict*)> act;  // what they do when they are called for the name A
NQ_TString templateInHand;                   // what is being resolved meanwhile

void Called(const std::string& call, const NQ_TString& key, TName* names, NQ_TDict* entry) {
  calls += call + " ";
  if (act && key == "A") act(*names, entry);
}

bool Own(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  Called("own(" + Text(key) + "," + Text(value) + ")", key, names, entry);
  value = key == "A" ? "v" : "<N/>o";
  return true;
}
bool Fails(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  value = "ignored";
  return false;
}
template <bool kAnswers>
bool User(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  Called("user(" + Text(key) + ")", key, names, entry);
  if (kAnswers) value = "<N/>u";
  return kAnswers && key == "A";
}
bool Type(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry, TName* names,
          NQ_TString& result) {
  result = S(Text(value)) + "<t";
  Called("type(" + Text(key) + "," + Text(value) + "," + Text(format) + ")", key, names, entry);
  return true;
}
template <char kLetter, bool kSucceeds = true>
bool Stage(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry, TName* names,
           NQ_TString& result) {
  const NQ_TString letter(std::string(1, kLetter));
  Called(Text(letter + "(" + key + "," + input + "," + attribute + "," + result + ")"), key, names, entry);
  result = "gone";  // which leaves the input alone
  result = input + letter;
  return kSucceeds;
}
void Warn(const NQ_TString& key, TName* names) { Called("warn(" + Text(key) + ")", key, names, nullptr); }

const struct OwnObject : TNameLookupHandler {
  bool Lookup(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) const override {
    return Own(key, entry, names, value), value = "ob", true;
  }
} ownObject;
struct WarnObject : TNameWarnLookupHandler {
  void WarnLookup(const NQ_TString& key, TName* names) override { Called("object", key, names, nullptr); }
} warnObject;

constexpr struct {
  std::string_view word;
  void (*install)(TName&);  // for the name A where it takes a name
} kKinds[] = {
    {"own", [](TName& n) { n.SetLookupHandler("A", Own, false); }},
    {"user", [](TName& n) { n.SetUserLookupHandler(User<false>); }},
    {"type", [](TName& n) { n.SetTypeHandler("A", Type); }},
    {"e", [](TName& n) { n.SetElemHandler(Stage<'e'>); }},
    {"x", [](TName& n) { n.SetExtractHandler(Stage<'x'>); }},
    {"r", [](TName& n) { n.SetRegExHandler(Stage<'r'>); }},
    {"warn", [](TName& n) { n.SetWarnLookupHandler(Warn); }},
    {"own of B", [](TName& n) { n.SetLookupHandler("B", Own, false); }},
    {"fails", [](TName& n) { n.SetLookupHandler("A", Fails, false); }},
    {"object", [](TName& n) { n.SetLookupHandler("A", &ownObject, false); }},
    {"user answers", [](TName& n) { n.SetUserLookupHandler(User<true>); }},
    {"x fails", [](TName& n) { n.SetExtractHandler(Stage<'x', false>); }},
    {"warn object", [](TName& n) { n.SetWarnLookupHandler(&warnObject); }},
};

const auto kUsualKinds = std::span(kKinds).first(7);

/// Does a script; beside the operations on names it may hold the words of the table above, and
///   entry Format = 5    the attribute becomes 5, whatever its class was; "none" removes it
///   template <A/>       the template that is being resolved becomes another one
///   throw               throws something that is no exception of the framework
///   again               resolves the template that is being resolved
///   fill                many names come and go, and many templates are resolved
void Perform(TName& names, NQ_TDict* entry, std::string_view script) {
  for (const auto& kind : kKinds)
    if (kind.word == script) return kind.install(names);
  if (script == "throw") throw 5;
  if (script.starts_with("entry ")) {
    if (entry == nullptr) return;
    const std::size_t equals = script.find(" = ");
    const NQ_TString key = S(script.substr(6, equals - 6));
    const std::string value(script.substr(equals + 3));
    if (value == "none") return entry->Remove(key);
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

std::string ResolvedInHand(TName& names, std::string_view text) {
  templateInHand = S(text);
  NQ_TString result;
  const bool ok = names.Resolve(templateInHand, result);
  return (ok ? "" : "! ") + Text(result);
}

void CheckCalls(const std::string& setUp, const std::string& text, const std::string& resolved,
                const std::string& called) {
  Names names("text A = x; number N = 7; text B = <N/><U/>");
  for (const std::string& what : Split(setUp)) Perform(names, nullptr, what);
  for (int time = 1; time <= 6; ++time) {  // as a token, and as a template that is kept after a while
    SCOPED_TRACE(time);
    calls.clear();
    const bool fails = resolved == "!" || resolved.find("<U/>") != resolved.npos;
    if (time % 2 == 1)
      EXPECT_EQ(ResolvedToken(names, text.substr(1, text.size() - 3)), resolved);
    else
      EXPECT_EQ(Resolved(names, text), (fails ? "! " : "") + (resolved == "!" ? text : resolved));
    EXPECT_EQ(calls, called == "nobody" ? "" : called + " ");
  }
}

void CheckEffect(const std::string& kind, const std::string& script, const std::string& resolved) {
  Names names("text A = x; number N = 7");
  Perform(names, nullptr, kind);
  Resolved(names, "<A/>|<N/>|<A/>");  // seen before
  act = [&](TName& n, NQ_TDict* entry) { Perform(n, entry, script); };
  EXPECT_EQ(ResolvedInHand(names, "<A/>|<N/>|<A/>"), resolved);
  act = nullptr;
}

TEST(Handlers, AreCalledInOrderAndChangesTakeEffectFromTheNextStepOn) {
  for (const std::string& line : Lines("Handlers.txt")) {
    SCOPED_TRACE(line);
    const std::size_t does = line.find(" does "), set = line.find(": "), arrow = line.find(" => ");
    const std::size_t second = line.find(" => ", arrow + 1);
    if (does != line.npos)
      CheckEffect(line.substr(0, does), line.substr(does + 6, arrow - does - 6), line.substr(arrow + 4));
    else
      CheckCalls(line.substr(0, set), line.substr(set + 2, arrow - set - 2), line.substr(arrow + 4, second - arrow - 4),
                 line.substr(second + 4));
  }
}

TEST(Handlers, AnEntryHasOneKindOfLookupAtATime) {
  Names names("text A = x");
  names.SetLookupHandler("A", &ownObject, false);
  EXPECT_EQ(EntryText(names, "A"), "Category=misc Format=%s LookupHandler2 Type=0 TypeHandler Value=x");
}

TEST(Handlers, MayDoAnything) {
  for (const std::string& script : Split(
           "throw|undefine A|undefine B|undefine|fill|text A = w; text N = x; text B = <A/>; undefine A; number A = 3|"
           "no lookup A; no type A|no user; no warn; no elem; no extract; no regex|entry Value = {}|entry Type = {}|"
           "entry Format = {}|entry Elem = {}|entry LookupHandler = 5|entry TypeHandler = x|entry Category = 5|"
           "entry Type = none|entry LookupHandler = none|template <N/><B/><A/> and something longer|template |"
           // These end by a limit.
           "again|resolve <A/><B/>|token A|markers {A}|to url //h/<A/>|from url x://h/<A/>")) {
    for (const auto& [kind, install] : kUsualKinds) {
      SCOPED_TRACE(std::string(kind) + " handler: " + script);
      Names names("text A = x; text B = [<A/>]; number N = 7; limit tokens = 1000; limit nestedDepth = 4");
      install(names);
      int acts = 0;
      // Names that are gone make operations of the script throw, which is the script's own affair.
      act = [&](TName& n, NQ_TDict* entry) { ++acts, Thrown([&] { Perform(n, entry, script); }); };
      const auto attempt = [&](const auto& operation) {
        try {
          operation();
        } catch (int) {
          EXPECT_EQ(script, "throw");
        }
      };
      for (int time = 1; time <= 2; ++time) {
        attempt([&] {
          const std::string text = ResolvedInHand(names, "p <A/> <N/> <B/> <A/> q");
          EXPECT_TRUE(text.substr(text[0] == '!' ? 2 : 0).starts_with("p ") && text.ends_with(" q")) << text;
        });
      }
      for (const char* operation : {"resolve <B/>", "markers {A}", "to url //h/<A/>", "from url x://h/<A/>", "token A"})
        attempt([&] { Do(names, operation); });
      EXPECT_TRUE(acts >= 1 && acts <= 7000) << acts;
      act = nullptr;
      calls.clear();
      Do(names, "text A = fresh; text B = <A/>; no elem");
      EXPECT_EQ(Resolved(names, "<A/><B/>"), "freshfresh");
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

TEST(Handlers, RunOnTheCallersThreadWithTheLockHeld) {
  for (const char* script : {"resolve <A/>", "token A", "markers {A}"}) {
    Names names("text A = x");
    names.SetLookupHandler("A", Own, false);
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
