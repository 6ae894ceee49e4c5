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

TEST(Threads, DefineSetResolveAndUndefineTheSameNames) {
  Names names("text A = a; number N = 1; text B = <A/><A/>; text Fix = f");
  const std::set<std::string> values = {"a", "", "bb", "5", "0", "<A/>"};  // those of a fresh definition among them
  Watch watch;
  OnThreads([&](int thread) {
    for (int i = 0; i < Scaled(2000); ++i) {
      try {
        switch ((thread + i) % 10) {
          case 0:
            Do(names, i % 3 == 0 ? "number A = 5" : "text A = a");
            break;
          case 1:
            names.SetValue("A", "bb");
            break;
          case 2:
            if (i % 4 == 0) names.UnDefine("A");
            break;
          case 3:
            names.SetDescription("A", "d");
            break;
          case 4:
            names.GetTNames();
            names.SetFormat("Fix", i % 2 == 0 ? "%s" : "(%s)");
            break;
          case 5: {
            // The lock is held over the whole template: every token of a name shows the same value.
            const std::string got = Resolved(names, "<A/>|<A/>|<B/>");
            const std::string text = got.substr(got.starts_with("! ") ? 2 : 0);
            const std::string a = text.substr(0, text.find('|'));
            watch.Expect(values.contains(a) && text == a + "|" + a + "|" + a + a, got);
            break;
          }
          case 6: {
            const std::string got = ResolvedToken(names, "Fix");
            watch.Expect(got == "f" || got == "(f)", got);
            break;
          }
          case 7: {
            NQ_TURL url;
            watch.Expect(names.Resolve(S("//h/<Fix/>"), url), Text(url.Text()));
            break;
          }
          case 8:
            names.Increment("N");
            break;
          default:
            watch.Expect(Resolved(names, std::to_string(i % 300) + "<U/>") == "! " + std::to_string(i % 300) + "<U/>",
                         "undefined name");
        }
      } catch (const NQ_EException& error) {
        const std::string name = error.ClassName();
        watch.Expect(name == "NQ_ENoSuchKey" || name == "NQ_EIncompatibleType", name);
      }
    }
  });
  EXPECT_EQ(names.GetValue("N"), NQ_TAny(1 + kThreads * Scaled(2000) / 10));
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

TEST(Threads, SettersAndHandlersWhileOthersResolve) {
  Names names("text A = a");
  Watch watch;
  OnThreads([&](int thread) {
    for (int i = 0; i < Scaled(1000); ++i) {
      if (thread == 0) {
        names.SetElemHandler(nullptr);
        names.SetUserLookupHandler([](const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
          value = "u";
          return true;
        });
        names.SetUserLookupHandler(nullptr);
        names.SetError(TName::TName_ErrorNone);
        names.SetLimits(TNameLimits());
        names.SetDebugLevel(0);
      } else {
        const std::string got = Resolved(names, "<A/>");
        watch.Expect(got == "a" || got == "u", got);
        watch.Expect(names.GetError() == 0 && names.GetDebugLevel() == 0 && names.GetLimits().nestedDepth == 64,
                     "state");
      }
    }
  });
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
