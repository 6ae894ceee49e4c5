// Values from services: exactly what is asked, when the reply is kept, and what becomes of failures.
#include <atomic>
#include <thread>

#include "NQ_TBoxed.h"
#include "NQ_TSocket.h"
#include "Services.h"
#include "TNameProxyProvider.h"
#include "TreeText.h"

namespace names_test {
namespace {

using Lines = std::vector<std::string>;

/// A registry with a name per record of a tree.
void DefineAll(TName& names, std::string_view records) {
  const NQ_TTree tree = Tree(records);
  for (NQ_TConstIterator i(tree); !i.IsDone(); i.Next())
    ASSERT_TRUE(names.Define(i.Key(), *i.Value().As<NQ_TTree>(), false)) << Text(i.Key());
}

/// Replies the method's name and a number that counts all calls; "Fail..." throws, "Number" is a number, "Nested" a
/// template.
class Counting : public Services {
 public:
  Counting() : Services([this](const NQ_TDict& request) { return Reply(Text(request.At("M"))); }) {}

 private:
  NQ_TAny Reply(const std::string& method) {
    ++calls_;
    if (method.starts_with("Fail")) nq::Throw(NQ_EException("refused", S(method)));
    if (method == "Odd") throw std::runtime_error("odd");
    if (method == "Number") return calls_;
    if (method == "Nested") return S("[<text/>]");
    if (method == "Tree") return NQ_TTree();
    return S(method + std::to_string(calls_));
  }

  int calls_ = 0;
};

TEST(ServerQuery, AsksExactlyThis) {
  const struct {
    std::string what, records, text, resolved;
    Lines asked;
  } rows[] = {
      {"a port", "{q = {Type = Name, Server = #8088, Method = Get, Host = h}}", "<q/>", "Get1", {"h:8088 {M = Get}"}},
      {"a name", "{q = {Type = Name, Server = Jobs, Method = Get, Host = h}}", "<q/>", "Get1", {"Jobs@h {M = Get}"}},
      {"no host", "{q = {Type = Name, Server = s, Method = Get}}", "<q/>", "Get1", {"s@localhost {M = Get}"}},
      {"a port with more behind it",
       "{q = {Type = Name, Server = #80x, Method = Get}}",
       "<q/>",
       "Get1",
       {"localhost:80 {M = Get}"}},
      {"parameters by name, then by position, then the two by name",
       "{q = {Type = Name, Dependencies = [], Definition = {a = 1}, P2 = 2, P1 = x, Params = {k = v}, "
       "Server = s, Method = Get}}",
       "<q/>",
       "Get1",
       {"s@localhost {M = Get, k = v, P1 = x, P2 = 2, Definition = {a = 1}, Dependencies = {}}"}},
      {"a gap ends the parameters by position",
       "{q = {Type = Name, P1 = 1, P3 = 3, P4 = 4, Server = s, Method = Get}}",
       "<q/>",
       "Get1",
       {"s@localhost {M = Get, P1 = 1}"}},
      {"a missing first one leaves none",
       "{q = {Type = Name, P2 = 1, P3 = 3, Server = s, Method = Get}}",
       "<q/>",
       "Get1",
       {"s@localhost {M = Get}"}},
      {"all four and an own value for one",
       "{q = {Type = Name, Params = {P1 = no}, P1 = 1, P2 = 2, P3 = 3, P4 = 4, Server = s, Method = Get}}",
       "<q/>",
       "Get1",
       {"s@localhost {M = Get, P1 = 1, P2 = 2, P3 = 3, P4 = 4}"}},
      {"uncached: asked each time",
       "{q = {Type = Name, Server = s, Method = Get}}",
       "<q/> <q/>",
       "Get1 Get2",
       {"s@localhost {M = Get}", "s@localhost {M = Get}"}},
      {"cached: asked once",
       "{q = {Type = Name, Server = s, Method = Get, Cached = true}}",
       "<q/> <q/>",
       "Get1 Get1",
       {"s@localhost {M = Get}"}},
      {"an explicit false",
       "{q = {Type = Name, Server = s, Method = Get, Cached = false}}",
       "<q/> <q/>",
       "Get1 Get2",
       {"s@localhost {M = Get}", "s@localhost {M = Get}"}},
      {"tokens in parameters stay",
       "{text = {Type = Name, Value = t}, q = {Type = Name, P1 = <text/>, Server = s, Method = GetConditional}}",
       "<q/>",
       "GetConditional1",
       {"s@localhost {M = GetConditional, P1 = <text/>}"}},
      {"and are resolved for conditional methods, as far as they go, whatever holds them",
       "{text = {Type = Name, Value = t}, q = {Type = Name, P1 = <text/>, P2 = [<text/>, {k = <text/>}, 5], "
       "P3 = url file://h/<text/>, P4 = <none/>, Definition = \"<text/>&@&<none/>&@&<text/>\", "
       "Dependencies = [<text/>], Server = s, Method = ConditionalGet}}",
       "<q/>",
       "ConditionalGet1",
       {"s@localhost {M = ConditionalGet, P1 = t, P2 = [t, {k = t}, 5], P3 = file://h/t, P4 = <none/>, "
        "Definition = t&@&<none/>&@&, Dependencies = [t]}"}},
      {"names that the service depends on go with their values; a name that fails as it is",
       "{a = {Type = Name, Value = \"<b/>!\"}, b = {Type = Number, Value = 7, Format = %03d}, "
       "q = {Type = Name, Dependencies = [b, none, a], Server = s, Method = Get}}",
       "<q/>",
       "Get1",
       {"s@localhost {M = Get, Dependencies = {b = 007, none = <none/>, a = 007!}}"}},
      {"a name that depends on another query: that one is asked first",
       "{a = {Type = Name, Server = s, Method = Inner}, q = {Type = Name, Dependencies = [a], Server = s, Method = "
       "Get}}",
       "<q/>",
       "Get2",
       {"s@localhost {M = Inner}", "s@localhost {M = Get, Dependencies = {a = Inner1}}"}},
      {"the host is a template",
       "{text = {Type = Name, Value = t}, q = {Type = Name, Host = h<text/>, Server = #1, Method = Get}}",
       "<q/>",
       "Get1",
       {"ht:1 {M = Get}"}},
      {"a reply is a template",
       "{text = {Type = Name, Value = t}, q = {Type = Name, Server = s, Method = Nested, Cached = true}}",
       "<q/><q/>",
       "[t][t]",
       {"s@localhost {M = Nested}"}},
      {"a number keeps its first reply either way, as it is stored with its text",
       "{q = {Type = Number, Server = s, Method = Number}}",
       "<q/> <q/>",
       "1 1",
       {"s@localhost {M = Number}"}},
      {"a counter counts on from the reply",
       "{q = {Type = AutoNumber, Server = s, Method = Number, Cached = true}}",
       "<q/> <q/>",
       "2 3",
       {"s@localhost {M = Number}"}},
      {"the record's value is not used",
       "{q = {Type = Name, Value = v, Server = s, Method = Get}}",
       "<q/>",
       "Get1",
       {"s@localhost {M = Get}"}},
      {"no method, no query", "{q = {Type = Name, Value = v, Server = s}}", "<q/>", "v", {}},
      {"no server, no query", "{q = {Type = Name, Value = v, Method = Get, Cached = true}}", "<q/>", "v", {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Counting services;
    TName names;
    DefineAll(names, row.records);
    EXPECT_EQ(Resolved(names, row.text), row.resolved);
    EXPECT_EQ(services.Asked(), row.asked);
    EXPECT_EQ(names.GetError(), TName::TName_ErrorNone);
  }
}

TEST(ServerQuery, DefinitionsByLookupKindAskForTheBuildNumber) {
  Counting services;
  Names names("define c = 0 1; define u = 0 2");
  EXPECT_EQ(Resolved(names, "<c/> <c/> <u/> <u/>"), "GetBuildNumber1 GetBuildNumber1 GetBuildNumber2 GetBuildNumber3");
  EXPECT_EQ(services.Asked(), Lines(3, "localhost:8088 {M = GetBuildNumber}"));
}

// A word per step: a template, or what Do understands; "!" in front of a text that has failed.
TEST(ServerQuery, RepliesAreKeptUntilTheyAreCleared) {
  const struct {
    std::string what, steps, shown;
  } rows[] = {
      {"cleared by key", "<c/> clear:c <c/> clear:u <c/>", "Get1 Get2 Get2"},
      {"cleared with all others", "<c/> <d/> clear:* <c/> <d/> <c/>", "Get1 Get2 Get3 Get4 Get3"},
      {"a value that was set stays", "<c/> clear:c set:c <c/> clear:c clear:* <c/>", "Get1 set set"},
      {"also when it takes a reply's place", "<c/> set:c clear:c <c/> <d/> remove:d set:d clear:* <d/>",
       "Get1 set Get2 set"},
      {"and hides the service of an uncached name", "set:u <u/> <u/> remove:u <u/>", "set set Get1"},
      {"removed by hand", "<c/> remove:c <c/>", "Get1 Get2"},
      {"defined as a query once more", "<c/> lookup:c <c/>", "Get1 Get2"},
      {"a failure keeps nothing", "<f/> <f/> <c/>", "!<f/> !<f/> Get3"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Counting services;
    TName names;
    DefineAll(
        names,
        "{c = {Type = Name, Server = s, Method = Get, Cached = true}, d = {Type = Name, Server = s, Method = Get, "
        "Cached = true}, u = {Type = Name, Server = s, Method = Get}, f = {Type = Name, Server = s, Method = "
        "Fail, Cached = true}}");
    std::string shown;
    std::istringstream steps(row.steps);
    for (std::string step; steps >> step;) {
      const NQ_TString key(step.substr(step.find(':') + 1));
      if (step == "clear:*") {
        names.ClearCaches();
      } else if (step.starts_with("clear:")) {
        names.ClearCache(key);
      } else if (step.starts_with("set:")) {
        names.SetValue(key, "set");
      } else if (step.starts_with("remove:")) {
        names.RemValue(key);
      } else if (step.starts_with("lookup:")) {
        names.SetLookupHandler(key, TName::TName_LookupServerQuery);
      } else {
        std::string text = Resolved(names, step);
        if (text.starts_with("! ")) text.erase(1, 1);
        shown += (shown.empty() ? "" : " ") + text;
      }
    }
    EXPECT_EQ(shown, row.shown);
  }
}

TEST(ServerQuery, KeptRepliesStandInTheEntry) {
  Counting services;
  TName names;
  DefineAll(names, "{c = {Type = Name, Server = s, Method = Get, Cached = true}}");
  const std::string before = EntryText(names, "c");
  EXPECT_EQ(before,
            "Category=misc Format=%s Host= LocalizationFile=templates LookupHandler Method=Get Params={} Server=s "
            "Type=0 TypeHandler UserDefined=0");
  Resolved(names, "<c/>");
  EXPECT_EQ(EntryText(names, "c"), "CacheFilled=1 " + before + " Value=Get1");
  names.ClearCache("c");
  EXPECT_EQ(EntryText(names, "c"), before);
}

// Attributes that only a handler can leave behind.
bool Spoil(const NQ_TString& key, NQ_TDict* entry, TName*, NQ_TAny&) {
  const std::string attribute = Text(key);  // "no Host", "Host": removes it, or makes it a number
  if (attribute.starts_with("no ")) {
    entry->Remove(NQ_TString(attribute.substr(3)));
  } else if (attribute != "kept") {
    entry->Add(key, 5);
  }
  return false;
}

TEST(ServerQuery, FailuresFailTheToken) {
  const struct {
    const char *name, *record;
    int error;
    Lines asked;
  } rows[] = {
      {"kept", "{Server = s, Method = Fail}", 0, {"s@localhost {M = Fail}"}},
      {"kept", "{Server = s, Method = Odd}", 0, {"s@localhost {M = Odd}"}},
      {"kept", "{Server = s, Method = Tree}", 0, {"s@localhost {M = Tree}"}},      // no text
      {"kept", "{Server = s, Method = Number}", 0, {"s@localhost {M = Number}"}},  // no text either
      {"kept", "{Host = h<none/>, Server = s, Method = Get}", 9, {}},
      {"kept", "{Server = s, Method = Get, Dependencies = text}", 11, {}},
      {"kept", "{Server = s, Method = Get, Dependencies = [text, 5]}", 11, {}},
      {"kept", "{Server = #, Method = Get}", 0, {}},
      {"kept", "{Server = #0, Method = Get}", 0, {}},
      {"kept", "{Server = #65536, Method = Get}", 0, {}},
      {"kept", "{Server = \"\", Method = Get}", 0, {}},
      {"Host", "{Server = s, Method = Get}", 11, {}},
      {"no Host", "{Server = s, Method = Get}", 11, {}},
      {"no Server", "{Server = s, Method = Get}", 11, {}},
      {"Server", "{Host = <none/>, Server = s, Method = Get}", 9, {}},  // the host comes first
      {"no Method", "{Server = s, Method = Get}", 11, {}},
      {"Method", "{Server = s, Method = Get}", 11, {}},
      {"Params", "{Server = s, Method = Get}", 11, {}},
  };
  for (const bool cached : {false, true}) {
    for (const auto& row : rows) {
      SCOPED_TRACE(std::string(row.name) + row.record);
      Counting services;
      TName names;
      NQ_TTree record = Tree(row.record);
      record.Add("Type", "Name").Add("Cached", cached);
      ASSERT_TRUE(names.Define(row.name, record, false));
      names.SetUserLookupHandler(Spoil);
      EXPECT_EQ(ResolvedToken(names, row.name), "!");
      EXPECT_EQ(int(names.GetError()), row.error);
      EXPECT_EQ(services.Asked(), row.asked);
      const bool replied = std::string_view(row.record).find("Tree") != std::string_view::npos ||
                           std::string_view(row.record).find("Number") != std::string_view::npos;
      EXPECT_EQ(names.HasValue(row.name), cached && replied);
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

TEST(ServerQuery, NamesWithoutAQueryFail) {
  Counting services;
  Names names("text A = x");
  names.SetLookupHandler("A", TName::TName_LookupServerQuery);
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  EXPECT_EQ(names.GetError(), TName::TName_ErrorServerQueryException);
  EXPECT_EQ(Thrown([&] { names.ClearCache("none"); }), "NQ_ENoSuchKey: none");
  EXPECT_EQ(Thrown([&] { names.SetServerQuery("none", {}, {}, {}, {}); }), "NQ_ENoSuchKey: none");
}

TEST(ServerQuery, RequestsNeedNoName) {
  Counting services;
  TName names;
  NQ_TAny result("before");
  EXPECT_TRUE(names.DoQueryRPC("H", "#7", "Get", Tree("{a = 1}"), result));
  EXPECT_EQ(Text(result), "Get1");
  EXPECT_FALSE(names.DoQueryRPC("H", "s", "Fail", {}, result));
  EXPECT_EQ(Text(result), "Get1");
  EXPECT_EQ(services.Asked(), (Lines{"H:7 {M = Get, a = 1}", "s@H {M = Fail}"}));
}

// ---- the log

/// Throws what is no exception of the framework's.
class Broken : public NQM_TClient {
  void Call(const NQ_TDict&, NQ_TAny&) override { throw 5; }
};

TEST(ServerQuery, Log) {
  const std::string head = "TName::ServerQueryHandler: Host   = h\nTName::ServerQueryHandler: Server = ";
  const struct {
    const char* record;
    int level;
    std::string lines;  // of the handler
  } rows[] = {
      {"{Host = h, Server = s, Method = Get}", 2, "TName::ServerQueryHandler: Called function\n"},
      {"{Host = h, Server = s, Method = Get, Cached = true}", 2,
       head + "s\nTName::ServerQueryHandler: Method = Get\nTName::ServerQueryHandler: Key = \"q\"; Value = Get1\n"},
      {"{Host = h, Server = s, Method = Get}", 2, head + "s\nTName::ServerQueryHandler: Method = Get\n"},
      {"{Host = h<none/>, Server = s, Method = Get}", 2,
       "TName::ServerQueryHandler: Could not resolve host name h<none/>\n"},
      {"{Host = h, Server = s, Method = Get, Dependencies = [none]}", 2,
       "TName::ServerQueryHandlerNoCache: Dependency for q could not be resolved: none\n"},
      {"{Host = h, Server = s, Method = Fail, P1 = x}", 1, "s@h:Fail({P1 = x}) generated an exception:NQ_EExc"},
      {"{Host = h, Server = broken, Method = Get, P1 = x}", 1,
       "broken@h:Get({P1 = x}) generated an unknown exception:\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.record);
    for (int level = 0; level <= 2; ++level) {
      Counting services;
      TName names;
      const auto provider = std::make_shared<TNameProxyProvider>();
      provider->AddClient("h", "broken", std::make_shared<Broken>());
      names.SetTNameProxyProvider(provider);
      NQ_TTree record = Tree(row.record);
      record.Add("Type", "Name");
      ASSERT_TRUE(names.Define("q", record, false));
      names.SetDebugLevel(level);
      Output output;
      ResolvedToken(names, "q");
      EXPECT_EQ(output.Take().find(row.lines) != std::string::npos, level >= row.level) << level;
    }
  }
  Names names("text q = x; lookup q = 2; text p = x; lookup p = 0");
  names.SetValue("q", "kept");
  names.SetDebugLevel(2);
  Output output;
  ResolvedToken(names, "q");
  names.ClearCaches();
  const std::string lines = output.Take();
  EXPECT_NE(lines.find("TName::ServerQueryHandler: Key = \"q\"; Cached value = kept\n"), std::string::npos) << lines;
  EXPECT_TRUE(lines.ends_with("TName::ClearCaches\nTName::ClearCache: Key = \"q\"\nTName::ClearCache: Key = \"p\"\n"))
      << lines;
}

// ---- callers in the way

/// Replies after it has done something to the registry that asks.
class Meddling : public Services {
 public:
  Meddling(TName& names, std::string script)
      : Services([&names, script = std::move(script)](const NQ_TDict&) {
          Do(names, script);
          return S("reply");
        }) {}
};

TEST(ServerQuery, ServicesMayChangeTheNamesThatAsk) {
  for (const char* script : {"undefine q", "undefine", "text q = other", "increment n", "resolve <n/>", "token n",
                             "query q", "remove q", "lookup q = 1"}) {
    SCOPED_TRACE(script);
    TName names;
    Meddling services(names, script);
    DefineAll(names, "{q = {Type = Name, Server = s, Method = Get, Cached = true}, n = {Type = Number}}");
    EXPECT_EQ(Resolved(names, "<q/>"), "reply");
    Resolved(names, "<q/>");
  }
}

TEST(ServerQuery, RepliesThatAskAgainEndAtALimit) {
  TName names;
  TNameLimits limits;
  limits.queries = 100;
  names.SetLimits(limits);
  DefineAll(names, "{q = {Type = Name, Server = s, Method = Get}}");
  for (const bool inside : {false, true}) {
    Services services([&](const NQ_TDict&) { return S(inside ? Resolved(names, "<q/><q/>") : "<q/><q/>"); });
    EXPECT_TRUE(Resolved(names, "<q/>").starts_with("! "));
    EXPECT_EQ(services.Asked().size(), 100U);
    names.SetDebugLevel(2);
    Output output;
    Resolved(names, "<q/>");
    EXPECT_NE(output.Take().find("Key: \"q\" More queries than the limit allows\n"), std::string::npos);
    names.SetDebugLevel(0);
  }
}

TEST(ServerQuery, NoTimeLeftMeansNoRequest) {
  TName names;
  names.SetLimits({.queryMilliseconds = 0});
  DefineAll(names, "{q = {Type = Name, Server = s, Method = Get}}");
  Services services([](const NQ_TDict&) { return S("reply"); });
  EXPECT_EQ(Resolved(names, "<q/>"), "! <q/>");
  EXPECT_TRUE(services.Asked().empty());
}

// ---- shared clients

TEST(ProxyProvider, SharesClientsByHostAndServer) {
  const std::string local = Text(NQ_TSocket::HostName(false));
  const struct {
    std::string host, server, otherHost, otherServer;
    bool shared;
  } rows[] = {
      {"h", "s", "h", "s", true},       {"Host", "s", "hOST", "s", true},
      {"", "s", local, "s", true},      {"h", "s", "h", "S", false},
      {"h", "#80", "h", "#080", false}, {"h", "s", "g", "s", false},
      {"h", "s", "hs", "", false},      {"", "s", "localhost", "s", local == "localhost"},
  };
  for (const auto& row : rows) {
    TNameProxyProvider provider;
    const auto client = provider.GetClient(S(row.host), S(row.server));
    EXPECT_EQ(client == provider.GetClient(S(row.otherHost), S(row.otherServer)), row.shared)
        << row.host << ' ' << row.server << ' ' << row.otherHost << ' ' << row.otherServer;
    EXPECT_EQ(client->ConnectionAddress().host, S(row.host));
  }
}

TEST(ProxyProvider, KeepsTheFirstClientUntilItIsForgotten) {
  TNameProxyProvider provider;
  const auto first = std::make_shared<NQM_TClient>();
  provider.AddClient("H", "s", first);
  provider.AddClient("h", "s", std::make_shared<NQM_TClient>());
  EXPECT_EQ(provider.GetClient("h", "s"), first);
  EXPECT_EQ(first.use_count(), 2);
  provider.AddClient("h", "other", nullptr);
  provider.AddClient("h", "s", nullptr);
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_NE(provider.GetClient("h", "s"), first);
}

/// Counts its calls.
class Counted : public NQM_TClient {
 public:
  std::atomic<int> calls{0};

 private:
  void Call(const NQ_TDict&, NQ_TAny& reply) override { reply = ++calls; }
};

TEST(ProxyProvider, ServesNamesOnManyThreads) {
  const auto provider = std::make_shared<TNameProxyProvider>();
  const auto client = std::make_shared<Counted>();
  provider->AddClient("h", "s", client);
  constexpr int kThreads = 4;
  constexpr int kQueries = Scaled(2000);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      TName names;
      names.SetTNameProxyProvider(provider);
      NQ_TAny result;
      for (int i = 0; i < kQueries; ++i) {
        EXPECT_TRUE(names.DoQueryRPC("H", "s", "Get", {}, result));
        provider->GetClient("h", NQ_TString(std::to_string(i)));
        provider->AddClient("h", NQ_TString(std::to_string(i)), nullptr);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(client->calls, kThreads * kQueries);
  EXPECT_EQ(provider->GetClient("h", "s"), client);
}

}  // namespace
}  // namespace names_test
