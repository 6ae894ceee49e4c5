// Searches against PCRE asked plainly, what is refused, and that hostile patterns end soon.
#include "regex/Regex.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <random>
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
      {"(?i)(\\.M)", longest + "m.", TKind::Matched, ".m"},
      {"(\\d*)$", longest + "42", TKind::Matched, "42"},
      {"x((?:.|\\n)*)y", "x" + longest.substr(0, 20'000) + "y", TKind::Matched, longest.substr(0, 20'000)},
      {"(" + manyLetters + ")", manyLetters, TKind::Matched, manyLetters},
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

// Each of these would run for ages, or out of stack; the stack here is small.
void* SearchTheHostile(void*) {
  const std::pair<string, string> cases[] = {
      {"(a+)+$", Repeated("a", 100'000) + "b"},
      {"\\C(a+)+$", Repeated("a", 300) + "b"},
      {"(.|\\n)*x", Repeated("a", 1'000'000)},
      {"(\\((?:[^()]|(?1))*\\))", Repeated("(", 200'000)},
      {"((?:\\w{0,200}\\w{0,200})?[^y]*=)#", Repeated("a", 4'000) + "= #"},
      {"(\\w+)=#", Repeated("a", 1'000'000) + " #"},
      {"\\G(\\w*\\w*=)#|(*COMMIT)x", Repeated("a", 100'000) + "#"},
      {"((?2){73}(?2))((?1){73}(?1))", "a"},
  };
  for (const auto& [pattern, input] : cases) {
    const TRegexOutcome outcome = Search(pattern, input);
    EXPECT_TRUE(outcome.kind == TKind::MatchError ? outcome.code < -1 : outcome.kind == TKind::NoMatch) << pattern;
    EXPECT_TRUE(outcome.group.Empty()) << pattern;
  }
  return nullptr;
}

TEST(Regex, HostilePatternsAndInputsEndSoon) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
  const auto begin = std::chrono::steady_clock::now();
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, SearchTheHostile, nullptr), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::minutes(1));  // usually two seconds
}

TEST(Regex, HonoursTheLimitsGiven) {
  const string pattern = "^(?:a?){10}(a{10})$", input(10, 'a'), interpreted = "\\C((?:a|b)*)c";
  EXPECT_EQ(Search(pattern, input).kind, TKind::Matched);
  EXPECT_EQ(Search(pattern, input, {20, 10'000}).code, PCRE_ERROR_MATCHLIMIT);
  EXPECT_EQ(Search(interpreted, Repeated("ab", 100) + "c").kind, TKind::Matched);
  EXPECT_EQ(Search(interpreted, Repeated("ab", 100) + "c", {1'000'000, 20}).code, PCRE_ERROR_RECURSIONLIMIT);
}

// The plain way: compiled for the occasion, interpreted, with room for all groups.
TRegexOutcome PlainSearch(const string& pattern, const string& input) {
  TRegexOutcome outcome;
  pcre* const code = pcre_compile(pattern.c_str(), PCRE_UTF8, &outcome.errorText, &outcome.errorOffset, nullptr);
  if (code == nullptr) return outcome.kind = TKind::CompileError, outcome;
  int offsets[60];
  const int rc = pcre_exec(code, nullptr, input.data(), static_cast<int>(input.size()), 0, 0, offsets, 60);
  pcre_free(code);
  outcome.kind = rc == -1 ? TKind::NoMatch : rc < -1 ? TKind::MatchError : rc == 1 ? TKind::NoGroup : TKind::Matched;
  if (rc > 1 && offsets[2] >= 0) outcome.group = NQ_TString(input.data() + offsets[2], offsets[3] - offsets[2]);
  return outcome;
}

TEST(Regex, RandomPatternsGiveWhatThePlainSearchGives) {
  static const string kPieces[] = {"a",     "b",     ".",      "\u00f8", "[ab]", "[^a]", "\\w",   "\\b",
                                   "^",     "$",     "\\d",    "-",      "A",    "\\s",  "(a|b)", "(?:.b)",
                                   "(\\w)", "(?=a)", "(?<!x)", "(?>a*)", "(",    ")",    "(?:",   "|",
                                   "*",     "+?",    "?",      "{1,2}",  "\\1",  "\\2",  "(?i)",  "\\K"};
  static const string kLetters[] = {"a", "b", "A", "x", "-", "1", " ", "\n", "\u00f8", "\u20ac"};
  std::mt19937 random(7);
  const auto some = [&](const auto& from, std::size_t count) {
    string text;
    while (count-- > 0) text += from[random() % std::size(from)];
    return text;
  };
  int matched = 0;
  for (int i = 0; i < 20'000; ++i) {
    const string pattern = "(" + some(kPieces, random() % 4) + ")" + some(kPieces, random() % 8);
    const string input = some(kLetters, random() % 30) + Repeated("ab1 ", i % 100 == 0 ? 3'000 : 0);
    const TRegexOutcome expected = PlainSearch(pattern, input), outcome = Search(pattern, input);
    ASSERT_EQ(std::tie(outcome.kind, outcome.group, outcome.errorOffset),
              std::tie(expected.kind, expected.group, expected.errorOffset))
        << pattern << " in " << input.substr(0, 100);
    matched += outcome.group.Empty() ? 0 : 1;
  }
  EXPECT_GT(matched, 500);
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

}  // namespace
}  // namespace templatenames
