// Names whose values and definitions come from services. Most cases stand in Services.txt.
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <regex>
#include <sstream>

#include "CFS/Server/cfs_tproxy.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "Support.h"
#include "TNameProxyProvider.h"
#include "TreeText.h"
#include "definitions/Definitions.h"

namespace names_test {
namespace {

/// Takes every request of the process while it lives, and notes it. The reply is what the function gives or throws.
class Services {
 public:
  using Answer = std::function<NQ_TAny(const NQ_TDict& request)>;

  explicit Services(Answer answer)
      : transport_(std::make_shared<TTransport>(std::move(answer))), before_(NQM_TClient::SetTransport(transport_)) {}
  ~Services() { NQM_TClient::SetTransport(before_); }
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  /// The requests since the last call of this, a line each.
  std::string Asked() { return std::exchange(transport_->asked, {}); }

 private:
  struct TTransport final : NQM_ITransport {
    explicit TTransport(Answer given) : answer(std::move(given)) {}
    NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds) override {
      const char* const mode = address.mode == 0 ? " " : " in another mode ";
      asked += "asks " + Text(address.Text()) + mode + Text(NQ_TAny(request)) + '\n';
      return answer(request);
    }
    std::string asked;
    Answer answer;
  };

  std::shared_ptr<TTransport> transport_;
  std::shared_ptr<NQM_ITransport> before_;
};

/// A client that fails with what is no exception of the framework's.
class Broken : public NQM_TClient {
  void Call(const NQ_TDict&, NQ_TAny&) override { throw 5; }
};

std::string spoiled;  // "Host" becomes a number in every entry that is looked up, "no Host" goes

bool Spoil(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
  const bool goes = spoiled.starts_with("no ");
  goes ? void(entry->Remove(NQ_TString(spoiled.substr(3)))) : void(entry->Add(NQ_TString(spoiled), 5));
  return false;
}

/// Names, and the services that they ask: a configuration server that has a tree, and others that reply to a method.
class Case {
 public:
  explicit Case(const std::string& configuration)
      : configuration_(Tree(configuration)), services_([this](const NQ_TDict& request) { return Reply(request); }) {
    cfs_.SetConnectionAddress("", 1);
  }

  std::string Outcome(const std::string& script);

 private:
  void Load(bool fromOwnProxy, Line& line);
  static void Call(TName& names, Line& line);
  static void DefineRecords(TName& names, Line& line);
  NQ_TAny At(const NQ_TString& path) const;
  NQ_TAny Reply(const NQ_TDict& request);

  const NQ_TTree configuration_;
  Services services_;
  CFS_TProxy cfs_;
  TName names_;
  std::string reply_;    // to all requests when it is not empty
  bool down_ = false;    // no service answers
  std::string several_;  // to those for several paths
  int calls_ = 0;
  // Beside those of Support.cpp.
  const std::vector<Word> words_ = {
      {"{", DefineRecords},
      {"<", [](TName& n, Line& l) { l.given = Resolved(n, l.whole); }},
      {"call", Call},
      {"load", [this](TName&, Line& l) { Load(false, l); }},
      {"load own", [this](TName&, Line& l) { Load(true, l); }},
      {"server", [](TName&, Line& l) { setenv("NQ_SERVER", l.key.c_str(), 1); }},
      {"root", [this](TName&, Line& l) { cfs_.AddCacheRoot(l.key); }},
      {"reply", [this](TName&, Line& l) { reply_ = l.whole.substr(6); }},
      {"several", [this](TName&, Line& l) { several_ = Text(l.key); }},
      {"default file", [](TName& n, Line& l) { templatenames::SetDefaultLocalizationFile(n.Engine(), l.key); }},
      {"down", [this](TName&, Line&) { down_ = true; }},
      {"reason",
       [](TName& n, Line& l) {
         const NQ_TString reason = n.GetErrorReason();
         l.given = reason.Empty() ? "none" : Text(reason);
       }},
      {"spoil",
       [](TName& n, Line& l) {
         spoiled = Text(l.key);
         n.SetUserLookupHandler(Spoil);
       }},
      {"broken",
       [](TName& n, Line& l) {
         const auto provider = std::make_shared<TNameProxyProvider>();
         provider->AddClient("h", l.key, std::make_shared<Broken>());
         n.SetTNameProxyProvider(provider);
       }},
  };
};

// A path that leads nowhere is an illegal value.
NQ_TAny Case::At(const NQ_TString& path) const {
  try {
    return configuration_.ValueAtPath(path.StartsWith("/") ? path.Substring(1) : path, "/");
  } catch (const NQ_EException&) {
    return NQ_TAny::Illegal();
  }
}

NQ_TAny Case::Reply(const NQ_TDict& request) {
  const std::string method = Text(request.At("M"));
  ++calls_;
  if (down_) nq::Throw(NQ_EException("there is no answer"));
  if (!reply_.empty()) return Value(reply_);
  if (method.starts_with("Fail")) nq::Throw(NQ_EException("refused", S(method)));
  if (method == "Odd") throw std::runtime_error("odd");
  if (method == "Number") return calls_;
  if (method == "Tree") return NQ_TTree();
  if (method == "Tokens") return request.At("P1");
  if (method == "Meddle") return Do(names_, Text(request.At("P1"))), S("reply");
  if (method != "[]") return S(method + std::to_string(calls_));
  const NQ_TAny& path = request.At("P1");
  const auto* const paths = path.As<NQ_TArray>();
  if (paths == nullptr) return At(*path.As<NQ_TString>());
  if (!several_.empty()) return Value(several_);
  NQ_TDict
      values;  // the last one first, to see that the order of the reply does not count; what leads nowhere is not in
  for (unsigned int i = paths->Count(); i-- > 0;) {
    const NQ_TString& one = *paths->At(i)->As<NQ_TString>();
    if (NQ_TAny value = At(one); !value.IsIllegal()) values.Add(one, std::move(value));
  }
  return values;
}

void Case::DefineRecords(TName& names, Line& line) {
  const NQ_TTree records = Tree(line.whole);
  for (NQ_TConstIterator i(records); !i.IsDone(); i.Next())
    if (!names.Define(i.Key(), *i.Value().As<NQ_TTree>(), false)) line.given += "refused " + Text(i.Key()) + ' ';
}

void Case::Load(bool fromOwnProxy, Line& line) {
  const auto words = Pieces(Text(line.key), " ");
  const NQ_TString set = S(words.at(0)), scope = S(words.at(1)), name = S(words.at(2));
  const bool loaded = fromOwnProxy ? names_.Define("Shop", set, scope, name, true)
                                   : names_.Define(cfs_, "Shop", set, scope, name, true);
  line.given = loaded ? "loaded" : "failed";
}

void Case::Call(TName& names, Line& line) {
  const auto words = Pieces(line.whole, " ", 4);
  NQ_TAny result("before");
  line.given = names.DoQueryRPC("h", S(words.at(1)), S(words.at(2)), Tree(words.at(3)), result) ? "" : "! ";
  line.given += Text(result);
}

std::string Case::Outcome(const std::string& script) {
  static const std::regex kThrowSite(" \\([^ ]*:[0-9]+\\)\n");
  std::string outcome;
  for (const std::string& step : Pieces(script, "; ")) {
    Output output;
    testing::internal::CaptureStderr();
    std::string given;
    given += Thrown([&] { given = Do(names_, step, words_); });
    outcome += services_.Asked() + output.Take();
    outcome += std::regex_replace(testing::internal::GetCapturedStderr(), kThrowSite, "\n");
    if (!given.empty()) outcome += "= " + given + '\n';
  }
  names_.SetDebugLevel(0);
  EXPECT_TRUE(OtherThreadGetsLock(names_)) << script;
  if (names_.GetError() != 0) outcome += "error " + std::to_string(names_.GetError()) + '\n';
  return std::regex_replace(outcome, kThrowSite, "\n");
}

const RowFile file("Services.txt", {"config:"}, [](const Row& row) {
  static double now = 0;  // every look at the clock takes five seconds
  const NQ_TTime::TClock before = NQ_TTime::SetClock([] { return now += 5000; });
  EXPECT_EQ(Case(row.Setting("config:")).Outcome(row.text), row.below);
  NQ_TTime::SetClock(before);
  unsetenv("NQ_SERVER");
});

/// Processor time of this thread to load that many records, each with a file of its own; the best of three.
double SecondsToLoad(int count) {
  NQ_TTree records;
  for (int i = 0; i < count; ++i) {
    const NQ_TString number(std::to_string(i));
    records.Add(NQ_TString("name") + number, NQ_TTree().Add("Type", "Name").Add("LocalizationFile", NQ_TAny(number)));
  }
  const Services services([&](const NQ_TDict& request) {
    return Text(request.At("P1")).ends_with("/s") ? NQ_TAny("r") : NQ_TAny(records);
  });
  double best = 1e9;
  for (int times = 0; times < 3; ++times) {
    TName names;
    const std::clock_t begin = std::clock();
    EXPECT_TRUE(names.Define("t", "n", "s", "*", false));
    EXPECT_EQ(names.GetLocalizationFiles().Count(), static_cast<unsigned>(count));
    names.ClearCaches();
    best = std::min(best, double(std::clock() - begin) / CLOCKS_PER_SEC);
  }
  return best;
}

// Ten times the names take about ten times as long; work that grows with the square would take a hundred times.
TEST(Services, DefinitionsLoadInLinearTime) { EXPECT_LT(SecondsToLoad(20'000), 35 * SecondsToLoad(2'000)); }

}  // namespace
}  // namespace names_test
