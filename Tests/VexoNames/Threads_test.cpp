// Several threads on one TName, and several on one each.
#include <atomic>
#include <set>
#include <sstream>
#include <thread>

#include "Support.h"

namespace names_test {
namespace {

constexpr int kThreads = 8;

template <class Work>
void OnThreads(Work work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

/// Counts results outside the allowed ones, and remembers one of them.
class Watch {
 public:
  void Expect(bool right, const std::string& what) {
    if (right) return;
    if (++wrong_ == 1) first_ = what;
  }
  ~Watch() { EXPECT_EQ(wrong_.load(), 0) << first_; }

 private:
  std::atomic<int> wrong_{0};
  std::string first_;
};

bool Answer(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  value = "u";
  return true;
}

TEST(Threads, ChangeAndResolveTheSameNames) {
  constexpr const char* kScripts[] = {"number A = 5", "text A = a",     "string A = bb",  "undefine A",
                                      "keys",         "category A = c", "increment N",    "format Fix = (%s)",
                                      "no warn",      "no regex",       "format Fix = %s"};
  Names names("number N = 0; text B = <A/><A/>; text Fix = f");
  const std::set<std::string> values = {"a", "", "bb", "5", "0", "u", "<A/>"};  // those of a fresh definition too
  Watch watch;
  OnThreads([&](int thread) {
    for (int i = 0; i < Scaled(1100); ++i) {
      const std::string thrown = Thrown([&] { Do(names, kScripts[(thread + i) % std::ssize(kScripts)]); });
      watch.Expect(thrown == "" || thrown == "NQ_ENoSuchKey: A" || thrown == "NQ_EIncompatibleType: A", thrown);
      if (i % 50 == 0) {
        names.SetUserLookupHandler(thread == 0 ? Answer : nullptr);
        names.SetLimits(TNameLimits());
        names.SetError(TName::TName_ErrorNone);
        names.SetDebugLevel(0);
      }
      // The lock is held over the whole template: every token of a name shows the same.
      const std::string got = Resolved(names, "<A/>|<A/>|<B/>|<Fix/>"), text = got.substr(got[0] == '!' ? 2 : 0);
      const std::string a = text.substr(0, text.find('|')), start = a + "|" + a + "|";
      watch.Expect(values.contains(a) && (text.starts_with(start + a + a + "|") || text.starts_with(start + "u|")),
                   got);
      NQ_TURL url;
      watch.Expect(names.Resolve(S("http://h" + std::to_string(i % 300) + "/<Fix/>"), url), Text(url.Text()));
    }
  });
  EXPECT_EQ(names.GetValue("N"), NQ_TAny(kThreads * Scaled(1100) / 11));
}

TEST(Threads, CountersLoseNothing) {
  Names names("auto K = 0; number N = 0");
  std::vector<std::vector<int>> seen(kThreads);
  OnThreads([&](int thread) {
    for (int i = 0; i < Scaled(2000); ++i) {
      names.Increment("N");
      const std::string shown = i % 2 == 0 ? Resolved(names, "<K/>") : ResolvedToken(names, "K");
      seen[std::size_t(thread)].push_back(std::stoi(shown));
    }
  });
  std::set<int> all;
  for (const auto& numbers : seen) all.insert(numbers.begin(), numbers.end());
  const int total = kThreads * Scaled(2000);
  EXPECT_EQ(int(all.size()), total);
  EXPECT_EQ(*all.rbegin(), total);
  EXPECT_EQ(names.GetValue("N"), NQ_TAny(total));
}

TEST(Threads, OneRegistryEach) {
  Watch watch;
  OnThreads([&](int thread) {
    const std::string number = std::to_string(thread);
    Names names("text A = v_" + number + "; number N = " + number + "; time T");
    // The same templates, patterns and formats on every thread.
    for (int i = 0; i < Scaled(1000); ++i) {
      const std::string pattern = "(v|[0-9]+x" + std::to_string(i % 40) + ")";
      const std::string got =
          Resolved(names, "<<A elem=\"_,1\"/>>/<<N format=\"%03d\"/>>/<<A regex=\"" + pattern + "\"/>>");
      watch.Expect(got == number + "/00" + number + "/v", got);
      watch.Expect(Resolved(names, "<T format=\"%Y\"/>").size() == 4, "time");
    }
  });
}

TEST(Threads, UrlsOnSeveralThreadsLeaveTheDebugLevelAlone) {
  Names names("text A = a");
  names.SetDebugLevel(1);
  Output output;
  OnThreads([&](int) {
    for (int i = 0; i < Scaled(1000); ++i) Do(names, "to url //h/<A/>");
  });
  EXPECT_EQ(names.GetDebugLevel(), 1);
}

TEST(Threads, LogLinesDoNotMix) {
  Names names("text A = a");
  names.SetDebugLevel(2);
  Output output;
  OnThreads([&](int) {
    for (int i = 0; i < 20; ++i) names.IsDefined("A"), names.SetDescription("A", "d");
  });
  const std::string log = output.Take();
  std::set<std::string> lines;
  std::istringstream stream(log);
  for (std::string line; std::getline(stream, line);) lines.insert(line);
  EXPECT_EQ(lines, (std::set<std::string>{"TName::IsDefined: Key = \"A\"",
                                          "TName::SetDescription: Key = \"A\"; Description = \"d\""}));
}

}  // namespace
}  // namespace names_test
