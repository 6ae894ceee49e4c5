// Searches of single patterns, what is refused, that hostile patterns end soon, and what is kept.
#include "regex/Regex.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "Support.h"

namespace templatenames {

void PrintTo(TRegexResult::TKind kind, std::ostream* out) { *out << static_cast<int>(kind); }

namespace {

using TKind = TRegexResult::TKind;
using names_test::Repeated;
using names_test::S;
using std::string;
using namespace std::string_literals;

TRegexOutcome Search(const string& pattern, const string& input, const TRegexLimits& limits = {}) {
  return FirstGroup(S(pattern), S(input), limits);
}

TEST(Regex, FirstGroup) {
  const string longest(100'000, '.'), manyLetters(16'382, 'a');
  const std::tuple<string, string, TKind, string> cases[] = {
      {"", "a", TKind::NoGroup, ""},
      {"(b.)", "a\0b\0"s, TKind::Matched, "b\0"s},
      {"(a)\0(["s, "a", TKind::Matched, "a"},  // U+0000 ends the pattern
      {"x(.*)y", "x" + longest.substr(0, 1000) + "\u00f8y", TKind::Matched, longest.substr(0, 1000) + "\u00f8"},
      // Inputs so long that the search goes from start to start.
      {"\\b(\\d+)", longest + "\u00f8 42", TKind::Matched, "42"},
      {"(\\d+)", longest, TKind::NoMatch, ""},
      {"^(\\d+)", longest + "\n42", TKind::NoMatch, ""},
      {"(?m)^(\\d+)", longest + "\n42", TKind::Matched, "42"},
      {"(?<=\\.\u00f8)(\\d+)", longest + "\u00f842", TKind::Matched, "42"},
      {"(?i)X(\\d)", longest + "x4", TKind::Matched, "4"},
      {"(?i)(\\.M)", longest + "m.", TKind::Matched, ".m"},
      {"(\\d*)$", longest + "42", TKind::Matched, "42"},
      {"x((?:.|\\n)*)y", "x" + longest.substr(0, 20'000) + "y", TKind::Matched, longest.substr(0, 20'000)},
      {"(" + manyLetters + ")", manyLetters, TKind::Matched, manyLetters},
      {"(.*)\\.-", longest + "\n" + longest + "-", TKind::Matched, longest.substr(1)},
      {"C:\\\\Gerber\\\\(.)", longest + "C:\\Gerber\\x", TKind::Matched, "x"},
      {"x|\\G(4)", longest + "\n42", TKind::NoMatch, ""},
      {"x(*COMMIT)(\\d)", longest + "x4", TKind::Matched, "4"},
      {"(?x)x # \\G and (*COMMIT)\n (\\d)", longest + "x4", TKind::Matched, "4"},
      // PCRE's code is 1 unless group 1 took part, or there is room for others because the pattern refers to them.
      {"([0-9]+)x|x([0-9]+)", "x5", TKind::NoGroup, ""},
      {"(a)?(b)\\2", "bb", TKind::Matched, ""},
  };
  for (const auto& [pattern, input, kind, group] : cases) {
    const TRegexOutcome outcome = Search(pattern, input);
    EXPECT_EQ(outcome.kind, kind) << pattern.substr(0, 40);
    EXPECT_EQ(outcome.group, S(group)) << pattern.substr(0, 40);
  }
  const std::tuple<string, int, string> refused[] = {
      {"a\u00f8[", 4, "missing terminating ] for character class"},
      {Repeated("(", 251) + Repeated(")", 251), 251, "parentheses are too deeply nested"},
      {"((((a{1,100}){1,100}){1,100}){1,100})", 37, "regular expression is too large"},
      {string(16'385, 'a'), 16'384, "regular expression is longer than 16384 bytes"},
  };
  for (const auto& [pattern, offset, text] : refused) {
    const TRegexOutcome outcome = Search(pattern, "a");
    EXPECT_EQ(outcome.kind, TKind::CompileError) << pattern.substr(0, 40);
    EXPECT_EQ(outcome.errorOffset, offset);
    EXPECT_EQ(outcome.errorText, text);
  }
}

// Is over after that many milliseconds.
class TDeadline final : public TRegexClock {
 public:
  explicit TDeadline(int milliseconds) : end_(TTime::now() + std::chrono::milliseconds(milliseconds)) {}
  bool Spent() override { return TTime::now() > end_; }

 private:
  using TTime = std::chrono::steady_clock;
  const TTime::time_point end_;
};

// Each of these would run for ages, or out of stack; the stack here is small.
void* SearchTheHostile(void*) {
  const std::pair<string, string> cases[] = {
      {"(a+)+$", Repeated("a", 100'000) + "b"},
      {"\\C(a+)+$", Repeated("a", 300) + "b"},
      {"(.|\\n)*x", Repeated("a", 1'000'000)},
      {"(\\((?:[^()]|(?1))*\\))", Repeated("(", 200'000)},
      {"((?:\\w{0,200}\\w{0,200})?[^y]*=)#", Repeated("a", 4'000) + "= #"},
      {"((?:(?:a|a){19}b|.*\\w*=))#", Repeated("a", 2'000'000) + " =#"},
      {"(\\w+)=#", Repeated("a", 1'000'000) + " #"},
      {"[^a](\\w*\\w*=)#|(*COMMIT)x", Repeated("a", 100'000) + "#"},
      {"((?2){73}(?2))((?1){73}(?1))", "a"},
  };
  for (const auto& [pattern, input] : cases) {
    TDeadline deadline(500);
    const TRegexOutcome outcome = Search(pattern, input, {1'000'000, 10'000, &deadline});
    const bool stopped = outcome.kind == TKind::MatchError && outcome.code < -1;
    EXPECT_TRUE(stopped || outcome.kind == TKind::TimeSpent || outcome.kind == TKind::NoMatch) << pattern;
    EXPECT_TRUE(outcome.group.Empty()) << pattern;
  }
  // Another stack is large enough for what harms nobody.
  EXPECT_EQ(Search("\\C((?:a|b)*)c", Repeated("ab", 2'000) + "c").kind, TKind::Matched);
  return nullptr;
}

TEST(Regex, HostilePatternsAndInputsEndSoon) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  const auto begin = std::chrono::steady_clock::now();
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, SearchTheHostile, nullptr), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::minutes(1));  // usually two seconds
}

TEST(Regex, SaysWhichLimitWasExceeded) {
  TDeadline over(-1);
  const string deep = "\\C((?:a|b)*)c", letters = Repeated("ab", 100) + "c", many = Repeated("a", 70'000);
  const std::tuple<string, string, TRegexLimits, TKind, string> cases[] = {
      {"^(?:a?){10}(a{10})$", "aaaaaaaaaa", {1'000'000, 10'000, &over}, TKind::Matched, ""},
      {"^(?:a?){10}(a{10})$", "aaaaaaaaaa", {20, 10'000, nullptr}, TKind::MatchError, "regexMatch"},
      {deep, letters, {1'000'000, 10'000, nullptr}, TKind::Matched, ""},
      {deep, letters, {1'000'000, 20, nullptr}, TKind::MatchError, "regexRecursion"},
      // Machine code counts more steps, or has too small a stack; the interpreter has the last word.
      {".*\\pN*?ab|()", "aaaaaaaaaaaaaaaa", {23, 10'000, nullptr}, TKind::Matched, ""},
      {"((?:.|\\n)*)c", Repeated(many, 20) + "c", {1'000'000, 10'000, nullptr}, TKind::MatchError, "regexRecursion"},
      {"(a+)b", many + "cb", {1'000'000, 10'000, &over}, TKind::TimeSpent, "regexMilliseconds"},
      {"((?(?=a)(?1)|b))x", many, {1'000'000, 10'000, nullptr}, TKind::MatchError, ""},
      {"((?(?=a)(?1)|b))", "a", {1'000'000, 10'000, &over}, TKind::MatchError, ""},
  };
  for (const auto& [pattern, input, limits, kind, limit] : cases) {
    const TRegexOutcome outcome = Search(pattern, input, limits);
    EXPECT_EQ(outcome.kind, kind) << pattern;
    EXPECT_EQ(ExceededLimit(outcome), limit) << pattern;
  }
}

TEST(KeptRegex, KeepsABoundedNumberOfPatterns) {
  const std::shared_ptr<const TRegex> kept = FindRegex("(kept)");
  EXPECT_EQ(FindRegex("(kept)"), kept);
  EXPECT_EQ(&KeptRegex("(kept)"), kept.get());
  std::thread([&] { EXPECT_EQ(FindRegex("(kept)"), kept); }).join();

  std::vector<std::weak_ptr<const TRegex>> small, large;
  for (int i = 0; i < 1'000; ++i) small.push_back(FindRegex(NQ_TString::Format("(x%d)", i)));
  EXPECT_LE(std::count_if(small.begin(), small.end(), [](const auto& weak) { return !weak.expired(); }), 256 + 16);
  constexpr std::size_t kMost = 17U * 1024 * 1024;
  const auto nthLarge = [](int n) { return FindRegex(S(Repeated("\\p{L}", 3'200) + std::to_string(n))); };
  for (int i = 0; i < 60; ++i) large.push_back(nthLarge(i));
  std::size_t bytes = 0;
  for (const auto& weak : large) {
    if (const auto regex = weak.lock()) bytes += regex->Bytes();
  }
  EXPECT_GT(60 * nthLarge(0)->Bytes(), kMost);
  EXPECT_LE(bytes, kMost);
}

TEST(KeptRegex, KeepsWhatIsRefusedButNotALackOfMemory) {
  EXPECT_EQ(FindRegex("(refused"), FindRegex("(refused"));
  const auto usual = pcre_malloc;
  pcre_malloc = [](std::size_t) -> void* { return nullptr; };
  EXPECT_THROW(FindRegex("(memory)"), std::bad_alloc);
  pcre_malloc = usual;
  EXPECT_TRUE(FindRegex("(memory)")->IsCompiled());
}

}  // namespace
}  // namespace templatenames
