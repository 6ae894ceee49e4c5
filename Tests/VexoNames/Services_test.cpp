// Names whose values and definitions come from services. Most cases stand in Services.txt: after "> " operations, and
// below them what these lead to, in this order: requests ("asks ..."), what is written, what is given ("= ..."); at the
// end the error code that is left.
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <regex>
#include <sstream>

#include "CFS/Server/cfs_tproxy.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "Support.h"
#include "definitions/Definitions.h"
#include "TNameProxyProvider.h"
#include "TreeText.h"

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
  /// An operation: a word, and what follows it.
  struct TStep {
    std::string_view word;
    void (*act)(Case& at, const std::string& operand);
  };
  static const TStep kSteps[];

  void Act(const std::string& step);
  void Load(const std::string& operand);
  void Call(const std::string& operand);
  void DefineRecords(const std::string& records);
  NQ_TAny At(const NQ_TString& path) const;
  NQ_TAny Reply(const NQ_TDict& request);

  const NQ_TTree configuration_;
  Services services_;
  CFS_TProxy cfs_;
  TName names_;
  std::string reply_;    // to all requests when it is not empty
  bool down_ = false;    // no service answers
  std::string several_;  // to those for several paths
  std::string given_;    // by the last operation
  int calls_ = 0;
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

void Case::DefineRecords(const std::string& records) {
  const NQ_TTree tree = Tree(records);
  for (NQ_TConstIterator i(tree); !i.IsDone(); i.Next())
    if (!names_.Define(i.Key(), *i.Value().As<NQ_TTree>(), false)) given_ += "refused " + Text(i.Key()) + ' ';
}

void Case::Load(const std::string& operand) {
  std::istringstream words(operand);
  std::string set, scope, name;
  words >> set >> scope >> name;
  given_ = names_.Define(cfs_, "Shop", S(set), S(scope), S(name), true) ? "loaded" : "failed";
}

void Case::Call(const std::string& operand) {
  std::istringstream words(operand);
  std::string server, method, params;
  words >> server >> method;
  std::getline(words, params);
  NQ_TAny result("before");
  given_ = names_.DoQueryRPC("h", S(server), S(method), Tree(params), result) ? "" : "! ";
  given_ += Text(result);
}

const Case::TStep Case::kSteps[] = {
    {"{", [](Case& at, const std::string& records) { at.DefineRecords('{' + records); }},
    {"<", [](Case& at, const std::string& text) { at.given_ = Resolved(at.names_, '<' + text); }},
    {"reply ", [](Case& at, const std::string& value) { at.reply_ = value; }},
    {"several ", [](Case& at, const std::string& value) { at.several_ = value; }},
    {"load ", [](Case& at, const std::string& what) { at.Load(what); }},
    {"call ", [](Case& at, const std::string& what) { at.Call(what); }},
    {"root ", [](Case& at, const std::string& path) { at.cfs_.AddCacheRoot(S(path)); }},
    {"debug ", [](Case& at, const std::string& level) { at.names_.SetDebugLevel(stoi(level)); }},
    {"error ", [](Case& at, const std::string& code) { at.names_.SetError(TName::TName_Error(stoi(code))); }},
    {"down", [](Case& at, const std::string&) { at.down_ = true; }},
    {"reason",
     [](Case& at, const std::string&) {
       const NQ_TString reason = at.names_.GetErrorReason();
       at.given_ = reason.Empty() ? "none" : Text(reason);
     }},
    {"clear ", [](Case& at, const std::string& key) { at.names_.ClearCache(S(key)); }},
    {"clear all", [](Case& at, const std::string&) { at.names_.ClearCaches(); }},
    {"kept ", [](Case& at, const std::string& key) { at.given_ = at.names_.HasValue(S(key)) ? "kept" : "none"; }},
    {"files", [](Case& at, const std::string&) { at.given_ = Text(NQ_TAny(at.names_.GetLocalizationFiles())); }},
    {"get default file",
     [](Case& at, const std::string&) { at.given_ = Text(at.names_.GetDefaultLocalizationFile()); }},
    {"default file ", [](Case& at, const std::string& file) { templatenames::SetDefaultLocalizationFile(at.names_.Engine(), S(file)); }},
    {"queries ", [](Case& at, const std::string& most) { at.names_.SetLimits({.queries = stoi(most)}); }},
    {"no time", [](Case& at, const std::string&) { at.names_.SetLimits({.queryMilliseconds = 0}); }},
    {"spoil ",
     [](Case& at, const std::string& what) {
       spoiled = what;
       at.names_.SetUserLookupHandler(Spoil);
     }},
    {"broken ",
     [](Case& at, const std::string& server) {
       const auto provider = std::make_shared<TNameProxyProvider>();
       provider->AddClient("h", S(server), std::make_shared<Broken>());
       at.names_.SetTNameProxyProvider(provider);
     }},
};

void Case::Act(const std::string& step) {
  const TStep* found = nullptr;  // the longest one that fits
  for (const TStep& known : kSteps)
    if (step.starts_with(known.word) && (found == nullptr || known.word.size() > found->word.size())) found = &known;
  found != nullptr ? found->act(*this, step.substr(found->word.size())) : void(given_ = Do(names_, step));
}

std::string Case::Outcome(const std::string& script) {
  static const std::regex kThrowSite(" \\([^ ]*:[0-9]+\\)\n");
  std::string outcome;
  for (std::size_t begin = 0; begin < script.size();) {
    const std::size_t end = std::min(script.find("; ", begin), script.size());
    Output output;
    testing::internal::CaptureStderr();
    given_.clear();
    given_ += Thrown([&] { Act(script.substr(begin, end - begin)); });
    outcome += services_.Asked() + output.Take();
    outcome += std::regex_replace(testing::internal::GetCapturedStderr(), kThrowSite, "\n");
    if (!given_.empty()) outcome += "= " + given_ + '\n';
    begin = end + 2;
  }
  names_.SetDebugLevel(0);
  EXPECT_TRUE(OtherThreadGetsLock(names_)) << script;
  if (names_.GetError() != 0) outcome += "error " + std::to_string(names_.GetError()) + '\n';
  return std::regex_replace(outcome, kThrowSite, "\n");
}

TEST(Services, CasesHaveTheirOutcomes) {
  static double now = 0;  // every look at the clock takes five seconds
  const NQ_TTime::TClock before = NQ_TTime::SetClock([] { return now += 5000; });
  std::string configuration, script, expected;
  int cases = 0;
  std::vector<std::string> lines = Lines("Services.txt");
  lines.emplace_back("> ");
  for (const std::string& line : lines) {
    if (line.starts_with("config: ")) {
      configuration += line.substr(8);
    } else if (!line.starts_with("> ")) {
      expected += line + '\n';
    } else {
      if (!script.empty()) {
        EXPECT_EQ(Case(configuration).Outcome(script), expected) << script;
        ++cases;
      }
      script = line.substr(2);
      expected.clear();
    }
  }
  EXPECT_GT(cases, 100);
  NQ_TTime::SetClock(before);
}

// ---- the configuration server

TEST(Services, TheProxyOfItsOwnAsksTheServerOfTheEnvironment) {
  for (const char* host : {"", "srv"}) {
    host[0] == 0 ? unsetenv("NQ_SERVER") : setenv("NQ_SERVER", host, 1);
    Services services([](const NQ_TDict&) { return S("A"); });
    TName names;
    EXPECT_FALSE(names.Define("Shop", "Names", "one", "b", false));
    const std::string asks =
        std::string("asks CFS@") + (host[0] == 0 ? "localhost" : host) + " {M = [], P1 = /Resources/";
    EXPECT_EQ(services.Asked(), asks + "Shop/Names/one, P2 = 0}\n" + asks + "A/b, P2 = 0}\n");
  }
  unsetenv("NQ_SERVER");
}

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
