#include "text/Regex.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace templatenames {

void PrintTo(TRegexResult::TKind kind, std::ostream* out) {
  const char* const names[] = {"CompileError", "NoMatch", "MatchError", "NoGroup", "Matched"};
  *out << names[static_cast<int>(kind)];
}

namespace {

using TKind = TRegexResult::TKind;
using namespace std::string_literals;

NQ_TString Text(const std::string& utf8) { return NQ_TString(std::string_view(utf8)); }

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TRegexOutcome Search(const std::string& pattern, const std::string& input, const TRegexLimits& limits = {}) {
  return FirstGroup(Text(pattern), Text(input), limits);
}

TEST(Regex, FirstGroup) {
  const std::string longest(100'000, '.');
  const struct {
    std::string pattern, input;
    TKind kind;
    std::string group;
  } cases[] = {
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
      {"(" + std::string(16'382, 'a') + ")", std::string(16'382, 'a'), TKind::Matched, std::string(16'382, 'a')},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.pattern.substr(0, 40));
    const TRegexOutcome outcome = Search(row.pattern, row.input);
    EXPECT_EQ(outcome.kind, row.kind);
    EXPECT_EQ(outcome.group, Text(row.group));
  }
  const std::tuple<std::string, int, std::string> refused[] = {
      {"a\u00f8[", 4, "missing terminating ] for character class"},
      {Times(251, "(") + Times(251, ")"), 251, "parentheses are too deeply nested"},
      {"((((a{1,100}){1,100}){1,100}){1,100})", 37, "regular expression is too large"},
      {std::string(16'385, 'a'), 16'384, "regular expression is longer than 16384 bytes"},
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
  const std::pair<std::string, std::string> cases[] = {
      {"(a+)+$", Times(100'000, "a") + "b"},
      {"\\C(a+)+$", Times(300, "a") + "b"},
      {"(.|\\n)*x", Times(1'000'000, "a")},
      {"(\\((?:[^()]|(?1))*\\))", Times(200'000, "(")},
      {"((?:\\w{0,200}\\w{0,200})?[^y]*=)#", Times(4'000, "a") + "= #"},
      {"(\\w+)=#", Times(1'000'000, "a") + " #"},
      {"\\G(\\w*\\w*=)#|(*COMMIT)x", Times(100'000, "a") + "#"},
      {"((?2){73}(?2))((?1){73}(?1))", "a"},
  };
  for (const auto& [pattern, input] : cases) {
    SCOPED_TRACE(pattern + " in " + input.substr(0, 40));
    const TRegexOutcome outcome = Search(pattern, input);
    EXPECT_TRUE(outcome.kind == TKind::MatchError || outcome.kind == TKind::NoMatch);
    EXPECT_EQ(outcome.code < -1, outcome.kind == TKind::MatchError);
    EXPECT_TRUE(outcome.group.Empty());
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
  const std::string pattern = "^(?:a?){10}(a{10})$";
  const std::string input(10, 'a');
  EXPECT_EQ(Search(pattern, input).kind, TKind::Matched);
  EXPECT_EQ(Search(pattern, input, {20, 10'000}).code, PCRE_ERROR_MATCHLIMIT);
  const std::string interpreted = "\\C((?:a|b)*)c";
  EXPECT_EQ(Search(interpreted, Times(100, "ab") + "c").kind, TKind::Matched);
  EXPECT_EQ(Search(interpreted, Times(100, "ab") + "c", {1'000'000, 20}).code, PCRE_ERROR_RECURSIONLIMIT);
}

// The plain way: compiled for the occasion, interpreted, with room for all groups.
TRegexOutcome PlainSearch(const std::string& pattern, const std::string& input) {
  TRegexOutcome outcome;
  pcre* const code = pcre_compile(pattern.c_str(), PCRE_UTF8, &outcome.errorText, &outcome.errorOffset, nullptr);
  if (code == nullptr) return outcome.kind = TKind::CompileError, outcome;
  int offsets[60];
  const int rc = pcre_exec(code, nullptr, input.data(), static_cast<int>(input.size()), 0, 0, offsets, 60);
  pcre_free(code);
  outcome.code = rc < -1 ? rc : 0;
  outcome.kind = rc == -1 ? TKind::NoMatch : rc < -1 ? TKind::MatchError : rc == 1 ? TKind::NoGroup : TKind::Matched;
  if (rc > 1 && offsets[2] >= 0) {
    outcome.group = NQ_TString(input.data() + offsets[2], offsets[3] - offsets[2]);
  }
  return outcome;
}

TEST(Regex, RandomPatternsGiveWhatThePlainSearchGives) {
  static const std::string kPieces[] = {"a",     "b",     ".",      "\u00f8", "[ab]", "[^a]", "\\w",   "\\b",
                                        "^",     "$",     "\\d",    "-",      "A",    "\\s",  "(a|b)", "(?:.b)",
                                        "(\\w)", "(?=a)", "(?<!x)", "(?>a*)", "(",    ")",    "(?:",   "|",
                                        "*",     "+?",    "?",      "{1,2}",  "\\1",  "\\2",  "(?i)",  "\\K"};
  static const std::string kLetters[] = {"a", "b", "A", "x", "-", "1", " ", "\n", "\u00f8", "\u20ac"};
  std::mt19937 random(7);
  const auto some = [&](const auto& from, std::size_t count) {
    std::string text;
    while (count-- > 0) text += from[random() % std::size(from)];
    return text;
  };
  int matched = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::string pattern = "(" + some(kPieces, random() % 4) + ")" + some(kPieces, random() % 8);
    const std::string input = some(kLetters, random() % 30) + Times(i % 100 == 0 ? 3'000 : 0, "ab1 ");
    const TRegexOutcome expected = PlainSearch(pattern, input), outcome = Search(pattern, input);
    SCOPED_TRACE(pattern + " in " + input.substr(0, 100));
    ASSERT_EQ(outcome.kind, expected.kind);
    ASSERT_EQ(outcome.group, expected.group);
    ASSERT_EQ(outcome.errorOffset, expected.errorOffset);
    matched += outcome.group.Empty() ? 0 : 1;
  }
  EXPECT_GT(matched, 500);
}

TEST(KeptRegex, KeepsABoundedNumberOfPatterns) {
  const std::shared_ptr<const TRegex> kept = FindRegex("(kept)");
  EXPECT_EQ(FindRegex("(kept)"), kept);
  EXPECT_EQ(&KeptRegex("(kept)"), kept.get());
  std::shared_ptr<const TRegex> elsewhere;
  std::thread([&] { elsewhere = FindRegex("(kept)"); }).join();
  EXPECT_EQ(elsewhere, kept);

  std::vector<std::weak_ptr<const TRegex>> small;
  for (int i = 0; i < 1'000; ++i) small.push_back(FindRegex(Text("(x" + std::to_string(i) + ")")));
  EXPECT_LE(std::count_if(small.begin(), small.end(), [](const auto& weak) { return !weak.expired(); }), 256 + 16);
  std::vector<std::weak_ptr<const TRegex>> large;
  for (int i = 0; i < 60; ++i) large.push_back(FindRegex(Text(Times(3'200, "\\p{L}") + std::to_string(i))));
  std::size_t bytes = 0;
  for (const auto& weak : large) {
    if (const auto regex = weak.lock()) bytes += regex->Bytes();
  }
  EXPECT_GT(60 * FindRegex(Text(Times(3'200, "\\p{L}") + "0"))->Bytes(), 17U * 1024 * 1024);
  EXPECT_LE(bytes, 17U * 1024 * 1024);
}

TEST(KeptRegex, ThreadsSearchAtTheSameTime) {
  const auto search = [](int first) {
    for (int i = 0; i < 600; ++i) {
      const std::string number = std::to_string((first + i) % 400);
      NQ_TString out("at ");
      KeptRegex(Text("-(" + number + "\u00f8)")).AppendFirstGroup(Text("x-" + number + "\u00f8").StringView(), {}, out);
      EXPECT_EQ(out, Text("at " + number + "\u00f8"));
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(search, i * 100);
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace templatenames
