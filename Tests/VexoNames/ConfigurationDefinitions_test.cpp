// Names from the configuration server: what is read, in which order, and what is defined of it.
#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "CFS/Server/cfs_tproxy.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "Services.h"
#include "TreeText.h"

namespace names_test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kConfiguration =
    "{Resources = {"
    "  Shop = {Names = {global = \"A,B\", user = \"B,A\", one = A, gap = \"A,,B,\", none = \"\", absent = X, odd = L, "
    "                   bad = \"Bad,B\", number = 5}, "
    "          All = {user = \"B,A\", global = \"A\"}, Broken = {a = A, b = 5}, Lost = {a = \"A,X\"}, Void = {}, "
    "          Stops = {z = A, a = Bad}}, "
    "  A = {a = {Type = Name, Value = a}, b = {Type = Number, Value = 5}}, "
    "  B = {b = {Type = Name, Value = other}, c = {Type = Name, LocalizationFile = l}}, "
    "  Bad = {d = {Type = Name}, e = {Type = Nme}, f = {Type = Name}}, "
    "  L = {g = {Type = Name}, h = text, i = dict {Type = Name}, j = {Type = Name}}}}";

/// A configuration server. A path that leads nowhere is an illegal value; in a reply of several it is left out.
class Configuration : public Services {
 public:
  Configuration() : Services([](const NQ_TDict& request) { return Reply(*request.ValueOfKey("P1")); }) {}

 private:
  static NQ_TAny At(const NQ_TString& path) {
    static const NQ_TTree tree = Tree(kConfiguration);
    try {
      return tree.ValueAtPath(path.StartsWith("/") ? path.Substring(1) : path, "/");
    } catch (const NQ_EException&) {
      return NQ_TAny::Illegal();
    }
  }

  static NQ_TAny Reply(const NQ_TAny& path) {
    const auto* const paths = path.As<NQ_TArray>();
    if (paths == nullptr) return At(*path.As<NQ_TString>());
    NQ_TDict values;  // the last one first, to see that the order of the reply does not count
    for (unsigned int i = paths->Count(); i-- > 0;) {
      const NQ_TString& one = *paths->At(i)->As<NQ_TString>();
      if (NQ_TAny value = At(one); !value.IsIllegal()) values.Add(one, std::move(value));
    }
    return values;
  }
};

/// "/p" as the request that reads it; "[/p, /q]" likewise.
Lines Reads(const Lines& paths) {
  Lines reads;
  for (const std::string& path : paths) reads.push_back("localhost:1 {M = [], P1 = " + path + ", P2 = 0}");
  return reads;
}

const std::string kTwiceB = "Duplicate VexoName found: /Resources/B/b\n{Type = Name, Value = other}\n";

TEST(ConfigurationDefinitions, ReadsAndDefinesExactlyThis) {
  const struct {
    const char *set, *scope, *name;
    bool ok;
    const char* keys;
    Lines reads;  // below /Resources/Shop/ when a path does not begin with "/"
    std::string said;
  } rows[] = {
      {"Names", "global", "*", true, "a b c", {"Names/global", "/Resources/A", "/Resources/B"}, kTwiceB},
      {"Names", "one", "*", true, "a b", {"Names/one", "/Resources/A"}, ""},
      {"Names", "gap", "*", true, "a b c", {"Names/gap", "/Resources/A", "/Resources/B"}, kTwiceB},
      {"Names", "none", "*", true, "", {"Names/none"}, ""},
      // One name: from the first resource; the second one has it too, which is a failure.
      {"Names", "global", "b", false, "b", {"Names/global", "/Resources/A/b", "/Resources/B/b"}, ""},
      {"Names", "one", "b", true, "b", {"Names/one", "/Resources/A/b"}, ""},
      // Reading fails at a resource without it.
      {"Names", "global", "a", false, "a", {"Names/global", "/Resources/A/a", "/Resources/B/a"}, ""},
      {"Names", "user", "a", false, "", {"Names/user", "/Resources/B/a"}, ""},
      // A record that fails ends the loading; what comes later is read all the same.
      {"Names", "bad", "*", false, "d", {"Names/bad", "/Resources/Bad", "/Resources/B"}, ""},
      {"Names",
       "odd",
       "*",
       true,
       "g j",
       {"Names/odd", "/Resources/L"},
       "Invalid VexoName definition found in CFS: /Resources/L/h\n\ttext\n"
       "Invalid VexoName definition found in CFS: /Resources/L/i\n\t{Type = Name}\n"},
      {"Names", "absent", "*", false, "", {"Names/absent", "/Resources/X"}, ""},
      {"Names", "number", "*", false, "", {"Names/number"}, ""},
      {"Names", "nowhere", "*", false, "", {"Names/nowhere"}, ""},
      // All scopes: each resource once, in the order of the paths; a name to choose is not looked at.
      {"All", "*", "*", true, "a b c", {"All", "[/Resources/A, /Resources/B]"}, kTwiceB},
      {"All", "*", "c", true, "a b c", {"All", "[/Resources/A, /Resources/B]"}, kTwiceB},
      {"Void", "*", "*", true, "", {"Void", "[]"}, ""},
      {"Lost", "*", "*", true, "a b", {"Lost", "[/Resources/A, /Resources/X]"}, ""},
      {"Stops", "*", "*", false, "a b d", {"Stops", "[/Resources/A, /Resources/Bad]"}, ""},
      {"Broken", "*", "*", false, "", {"Broken"}, ""},
      {"Nowhere", "*", "*", false, "", {"Nowhere"}, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.set) + " " + row.scope + " " + row.name);
    Configuration configuration;
    CFS_TProxy cfs;
    cfs.SetConnectionAddress("", 1);
    TName names;
    Output output;
    EXPECT_EQ(names.Define(cfs, "Shop", row.set, row.scope, row.name, true), row.ok);
    EXPECT_EQ(output.Take(), row.said);
    EXPECT_EQ(KeysText(names), row.keys);
    Lines paths = row.reads;
    paths[0] = "/Resources/Shop/" + paths[0];
    EXPECT_EQ(configuration.Asked(), Reads(paths));
    if (!names.IsDefined("b")) continue;
    EXPECT_TRUE(names.IsUserDefined("b"));
    EXPECT_EQ(Resolved(names, "<b/>"), "5");
  }
}

TEST(ConfigurationDefinitions, CountsDuplicatesOfARecordsOwnFailureOnly) {
  TName names;
  names.SetError(TName::TName_ErrorAlreadyDefined);  // left from before: the failure of a value is none of duplicates
  Services services([](const NQ_TDict& request) {
    const bool isList = Text(*request.ValueOfKey("P1")).ends_with("/s");
    return isList ? Value("r") : Value("{a = {Type = Name}, b = {Type = Name, Value = 5}, c = {Type = Name}}");
  });
  CFS_TProxy cfs;
  cfs.SetConnectionAddress("", 1);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(names.Define(cfs, "t", "n", "s", "*", false));
  EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with("Defining VexoName b failed\n"));
  EXPECT_EQ(KeysText(names), "a b");
}

TEST(ConfigurationDefinitions, Log) {
  static double now = 0;  // every look at the clock takes five seconds
  const NQ_TTime::TClock before = NQ_TTime::SetClock([] { return now += 5000; });
  const std::string took = "CFS Get of /Resources/A took " + Text(NQ_TInterval(5000)) + "\n";
  const struct {
    const char *set, *scope;
    int level;
    std::string line;
  } rows[] = {
      {"Names", "one", 2, "TName::Define: Template resource = A\n"},
      {"Names", "one", 1, took},
      {"Names", "one", 1, "Defined 2 VexoNames from /Resources/A\n"},
      {"Names", "global", 1, "Defined 2 VexoNames from /Resources/B\n"},  // the duplicate counts
      {"Names", "odd", 1, "Defined 2 VexoNames from /Resources/L\n"},     // what is no record does not
      {"Names", "bad", 1, "Defined 1 VexoNames from /Resources/Bad\n"},
      {"All", "*", 2, "TName::Define: Template resource name = user\n"},
      {"All", "*", 2, "TName::Define: Template resource =      B\n"},
  };
  for (const auto& row : rows) {
    for (int level = 0; level <= 2; ++level) {
      SCOPED_TRACE(row.line + std::to_string(level));
      Configuration configuration;
      CFS_TProxy cfs;
      cfs.SetConnectionAddress("", 1);
      TName names;
      names.SetDebugLevel(level);
      Output output;
      names.Define(cfs, "Shop", row.set, row.scope, "*", false);
      EXPECT_EQ(output.Take().find(row.line) != std::string::npos, level >= row.level);
    }
  }
  NQ_TTime::SetClock(before);
}

TEST(ConfigurationDefinitions, CacheRootsAnswerWithoutARequest) {
  Configuration configuration;
  CFS_TProxy cfs;
  cfs.SetConnectionAddress("", 1);
  cfs.AddCacheRoot("Resources");
  for (const char* name : {"*", "a"}) {
    TName names;
    EXPECT_TRUE(names.Define(cfs, "Shop", "Names", "one", name, false));
    EXPECT_EQ(KeysText(names), std::string_view(name) == "*" ? "a b" : "a");
  }
  EXPECT_EQ(configuration.Asked(), Reads({"Resources"}));
  TName names;  // several paths are always asked for
  EXPECT_TRUE(names.Define(cfs, "Shop", "Void", "*", "*", false));
  EXPECT_EQ(configuration.Asked(), Reads({"[]"}));
  EXPECT_FALSE(names.Define(cfs, "Shop", "Names", "absent", "*", false));
  EXPECT_FALSE(names.Define(cfs, "Shop", "Names", "one", "none", false));
}

TEST(ConfigurationDefinitions, TheProxyOfItsOwnAsksTheServerOfTheEnvironment) {
  for (const char* host : {"", "srv"}) {
    host[0] == 0 ? unsetenv("NQ_SERVER") : setenv("NQ_SERVER", host, 1);
    Configuration configuration;
    TName names;
    EXPECT_TRUE(names.Define("Shop", "Names", "one", "b", false));
    EXPECT_EQ(names.IsUserDefined("b"), false);
    const std::string at = std::string("CFS@") + (host[0] == 0 ? "localhost" : host);
    EXPECT_EQ(configuration.Asked(), (Lines{at + " {M = [], P1 = /Resources/Shop/Names/one, P2 = 0}",
                                            at + " {M = [], P1 = /Resources/A/b, P2 = 0}"}));
  }
  unsetenv("NQ_SERVER");
  Services broken([](const NQ_TDict&) -> NQ_TAny { throw 5; });
  TName names;
  EXPECT_FALSE(names.Define("Shop", "Names", "one", "*", false));
}

TEST(ConfigurationDefinitions, RepliesOfAnyShapeDefineWhatTheyHold) {
  for (const char* reply : {"5", "null", "[]", "{}", "text", "[{Type = Name}]"}) {
    for (const char* scope : {"s", "*"}) {
      SCOPED_TRACE(std::string(reply) + scope);
      Services services([&](const NQ_TDict&) { return Value(reply); });
      TName names;
      EXPECT_EQ(names.Define("t", "n", scope, "*", false), reply == std::string("{}") && scope == std::string("*"));
      EXPECT_EQ(KeysText(names), "");
    }
  }
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
TEST(ConfigurationDefinitions, LoadInLinearTime) { EXPECT_LT(SecondsToLoad(20'000), 35 * SecondsToLoad(2'000)); }

// ---- localization files

/// Reaches the one operation that is for the owner of the names only.
template <auto Member>
struct TReach {
  friend void SetDefaultFile(TName& names, const NQ_TString& file) { (names.*Member)(file); }
};
void SetDefaultFile(TName& names, const NQ_TString& file);
template struct TReach<&TName::SetDefaultLocalizationFile>;

TEST(LocalizationFiles, AreListedOnceInTheOrderOfUse) {
  TName names;
  EXPECT_EQ(names.GetLocalizationFiles().Count(), 0U);
  EXPECT_TRUE(names.Define("a", Tree("{Type = Name}"), false));
  EXPECT_TRUE(names.Define("b", Tree("{Type = Name, LocalizationFile = other}"), false));
  EXPECT_TRUE(names.Define("c", Tree("{Type = Name}"), false));
  Do(names, "text d = x");  // says nothing of a file
  EXPECT_EQ(Text(NQ_TAny(names.GetLocalizationFiles())), "(templates, other)");
  EXPECT_EQ(Text(names.GetLocalizationFile("d")), "");
  EXPECT_EQ(Thrown([&] { names.GetLocalizationFile("none"); }), "NQ_ENoSuchKey: none");

  names.SetDebugLevel(2);
  Output output;
  SetDefaultFile(names, "mine");
  names.GetLocalizationFiles();
  EXPECT_EQ(output.Take(),
            "TName::SetDefaultLocalizationFile: FileName = \"mine\"\nTName::GetLocalizationFiles: method called\n");
  names.SetDebugLevel(0);
  EXPECT_EQ(Text(names.GetDefaultLocalizationFile()), "mine");
  EXPECT_TRUE(names.Define("e", Tree("{Type = Name}"), false));
  EXPECT_EQ(Text(NQ_TAny(names.GetLocalizationFiles())), "(templates, other, mine)");
}

}  // namespace
}  // namespace names_test
