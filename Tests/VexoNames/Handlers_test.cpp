// Handlers: who is called when, with what; and those that do what they like with the names, with themselves and with
// the text in hand.
#include <functional>
#include <span>
#include <thread>

#include "NQ_TBoxed.h"
#include "Support.h"
#include "TreeText.h"

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

// Each for the name A where it takes a name. The first ones call `act`; each is tried by MayDoAnything.
const Word kKinds[] = {
    {"own", [](TName& n, Line&) { n.SetLookupHandler("A", Own, false); }},
    {"user", [](TName& n, Line&) { n.SetUserLookupHandler(User<false>); }},
    {"type", [](TName& n, Line&) { n.SetTypeHandler("A", Type); }},
    {"e", [](TName& n, Line&) { n.SetElemHandler(Stage<'e'>); }},
    {"x", [](TName& n, Line&) { n.SetExtractHandler(Stage<'x'>); }},
    {"r", [](TName& n, Line&) { n.SetRegExHandler(Stage<'r'>); }},
    {"warn", [](TName& n, Line&) { n.SetWarnLookupHandler(Warn); }},
    {"own of B", [](TName& n, Line&) { n.SetLookupHandler("B", Own, false); }},
    {"fails", [](TName& n, Line&) { n.SetLookupHandler("A", Fails, false); }},
    {"object", [](TName& n, Line&) { n.SetLookupHandler("A", &ownObject, false); }},
    {"user answers", [](TName& n, Line&) { n.SetUserLookupHandler(User<true>); }},
    {"x fails", [](TName& n, Line&) { n.SetExtractHandler(Stage<'x', false>); }},
    {"warn object", [](TName& n, Line&) { n.SetWarnLookupHandler(&warnObject); }},
};
const auto kUsualKinds = std::span(kKinds).first(7);

/// Does what a handler does when it is called, or what is done before:
///   entry Format = 5    the attribute becomes 5, whatever its class was; "none" removes it
///   template <A/>       the template that is being resolved becomes another one
///   throw               throws something that is no exception of the framework
///   again               resolves the template that is being resolved
///   fill                many names come and go, and many templates are resolved
void Perform(TName& names, NQ_TDict* entry, std::string_view script) {
  const Word words[] = {
      {"entry",
       [entry](TName&, Line& l) {
         if (entry == nullptr) return;
         l.value == "none" ? entry->Remove(l.key) : void((*entry)[l.key] = Value(Text(l.value)));
       }},
      {"template", [](TName&, Line& l) { templateInHand = l.key; }},
      {"throw", [](TName&, Line&) { throw 5; }},
      {"again", [](TName& n, Line&) { Resolved(n, Text(templateInHand)); }},
      {"fill",
       [](TName& n, Line&) {
         n.UnDefine();
         for (int i = 0; i < 300; ++i) Do(n, "text n = v; resolve <n/>" + std::to_string(i));
         for (int i = 0; i < 300; ++i) Do(n, "text n" + std::to_string(i) + " = v");
         n.UnDefine();
       }},
  };
  Do(names, script, words);
}

std::string ResolvedInHand(TName& names, std::string_view text) {
  templateInHand = S(text);
  NQ_TString result;
  const bool ok = names.Resolve(templateInHand, result);
  return (ok ? "" : "! ") + Text(result);
}

// Rows of Handlers.txt.

void CheckCalls(const std::string& setUp, const std::string& text, const std::string& resolved,
                const std::string& called) {
  Names names("text A = x; number N = 7; text B = <N/><U/>");
  Do(names, setUp, kKinds);
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
  Do(names, kind, kKinds);
  Resolved(names, "<A/>|<N/>|<A/>");  // seen before
  act = [&](TName& n, NQ_TDict* entry) { Perform(n, entry, script); };
  EXPECT_EQ(ResolvedInHand(names, "<A/>|<N/>|<A/>"), resolved);
  act = nullptr;
}

// Whatever a handler does, the call ends, and the names can be used afterwards.
void CheckAnything(const std::string& script, const Word& kind) {
  SCOPED_TRACE(std::string(kind.word) + " handler");
  Names names("text A = x; text B = [<A/>]; number N = 7; limit tokens = 1000; limit nestedDepth = 4");
  Do(names, kind.word, kKinds);
  int acts = 0;
  // Names that are gone make operations of the script throw, which is the script's own affair.
  act = [&](TName& n, NQ_TDict* entry) { ++acts, Thrown([&] { Perform(n, entry, script); }); };
  const auto attempt = [&](const auto& operation) {
    try {
      return operation();
    } catch (int) {
      EXPECT_EQ(script, "throw");
      return std::string("p  q");
    }
  };
  for (int time = 1; time <= 2; ++time) {
    const std::string text = attempt([&] { return ResolvedInHand(names, "p <A/> <N/> <B/> <A/> q"); });
    EXPECT_TRUE((text.starts_with("p ") || text.starts_with("! p ")) && text.ends_with(" q")) << text;
  }
  for (const char* operation : {"resolve <B/>", "markers {A}", "to url //h/<A/>", "from url x://h/<A/>", "token A"})
    attempt([&] { return Do(names, operation); });
  EXPECT_TRUE(acts >= 1 && acts <= 7000) << acts;
  act = nullptr;
  Do(names, "text A = fresh; text B = <A/>; no elem");
  EXPECT_EQ(Resolved(names, "<A/><B/>"), "freshfresh");
  EXPECT_TRUE(OtherThreadGetsLock(names));
}

const RowFile file("Handlers.txt", {}, [](const Row& row) {
  const auto parts = Pieces(row.text, " => ");
  const auto does = Pieces(parts[0], " does ", 2), set = Pieces(parts[0], ": ", 2);
  if (does[0] == "any")
    for (const Word& kind : kUsualKinds) CheckAnything(does.at(1), kind);
  else if (does.size() > 1)
    CheckEffect(does[0], does[1], parts.at(1));
  else
    CheckCalls(set.at(0), set.at(1), parts.at(1), parts.at(2));
});

TEST(Handlers, AnEntryHasOneKindOfLookupAtATime) {
  Names names("text A = x");
  names.SetLookupHandler("A", &ownObject, false);
  EXPECT_EQ(EntryText(names, "A"), "Category=misc Format=%s LookupHandler2 Type=0 TypeHandler Value=x");
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
