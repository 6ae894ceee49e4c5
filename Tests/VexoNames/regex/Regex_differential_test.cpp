// Random patterns and inputs against pcre_exec asked plainly: no study, no options, room for one group.
#include <algorithm>
#include <array>
#include <random>

#include "Support.h"
#include "formatting/OptionsText.h"
#include "regex/Regex.h"

namespace templatenames {
namespace {

using names_test::Repeated;
using std::string;
using TKind = TRegexResult::TKind;

// Each alone is a pattern, or fails to be one together with others, which then must be said alike.
constexpr const char* kAtoms[] = {
    "a",           "b",         "ab",
    ".",           "\u00f8",    "\u20ac",
    "[ab]",        "[^a]",      "[\u00f8-\u20ac]",
    "\\w",         "\\W",       "\\d",
    "\\s",         "\\S",       "\\b",
    "\\B",         "^",         "$",
    "\\A",         "\\Z",       "\\z",
    "\\G",         "\\K",       "\\C",
    "\\R",         "\\X",       "\\N",
    "\\h",         "\\v",       "\\p{L}",
    "\\P{Lu}",     "\\pN",      "\\x{f8}",
    "\\x41",       "\\012",     "\\cA",
    "\\\\G",       "\\.",       "-",
    "A",           "1",         "\\1",
    "\\2",         "\\g{-1}",   "\\g1",
    "(?1)",        "(?2)",      "(?R)",
    "\\g<1>",      "(?C)",      "(?C7)",
    "(?i)",        "(?-i)",     "(?s)",
    "(?m)",        "(?U)",      "(?J)",
    "(?x)",        "# (\n",     " ",
    "(?# ( )",     "(?=a)",     "(?<!x)",
    "(*F)",        "(*THEN)",   "(*SKIP)",
    "(*PRUNE)",    "(*COMMIT)", "(*ACCEPT)",
    "(*MARK:m)",   "(*SKIP:m)", "(*PRUNE:m)",
    "[[:alpha:]]", "[]a]",      "[^]a]",
    "[\\Qa]\\E]",  "\\Q(a\\E",  "[\\d-]",
    "(a)",         "(b)?",      "()",
    "k",           "s",         "\u017f",
    "\u212a",      ".*",        "\\w+",
    "a*",
};
constexpr std::array<const char*, 2> kGroups[] = {
    {"(", ")"},          {"(", ")"},
    {"(", ")"},          {"(?:", ")"},
    {"(?|", ")"},        {"(?>", ")"},
    {"(?=", ")"},        {"(?!", ")"},
    {"(?<=", ")"},       {"(?<!", ")"},
    {"(?<n>", ")"},      {"(?P<p>", ")"},
    {"(?i:", ")"},       {"(?x: ", "#)\n)"},
    {"(?(1)", ")"},      {"(?(2)", "|b)"},
    {"(?(?=a)", ")"},    {"(?(R)", ")"},
    {"(?'q'", ")(?&q)"}, {"(?(DEFINE)(?<d>", "))"},
    {"(?:\\k<n>|", ")"}, {"(?J)(?<s>a)|(?<s>", ")"},
};
constexpr const char* kRepeats[] = {"*", "+", "?", "+?", "*?", "??", "*+", "?+", "{1,2}", "{2}", "{0}", "{2,}"};
constexpr const char* kBegins[] = {"(*UTF8)",
                                   "(*UCP)",
                                   "(*CRLF)",
                                   "(*CR)",
                                   "(*ANY)",
                                   "(*ANYCRLF)",
                                   "(*BSR_ANYCRLF)",
                                   "(*LIMIT_MATCH=9)",
                                   "(*NO_START_OPT)",
                                   "(*NO_AUTO_POSSESS)",
                                   "(*LIMIT_RECURSION=9)",
                                   "(*COMMIT)",
                                   "(?x)",
                                   "\\G"};
// What makes it hard to tell where an escape, a quote, a class or a comment ends.
constexpr const char* kSoup[] = {"\\",   "\\",    "\\\\", "G",         "\\G",  "\\Q", "\\E", "Q", "E",
                                 "[",    "]",     "^",    "[:alpha:]", "[:",   ":]",  "(",   ")", "(?",
                                 "(?x)", "(?-x)", "(?x:", "(?i-x:",    "(?#",  "#",   "\n",  "c", "\\c",
                                 "a",    "-",     "*",    "|",         "(*F)", "(?:"};
constexpr const char* kLetters[] = {"a",  "b",  "a",    "b",      "A",      "x",      "-", "1", " ", "G",
                                    "\n", "\r", "\r\n", "\u00f8", "\u20ac", "\u017f", "k", "S", "#", "\\"};

class TRandom {
 public:
  explicit TRandom(unsigned seed) : random_(seed) {}

  bool OneIn(std::size_t count) { return Below(count) == 0; }
  std::size_t Below(std::size_t count) { return random_() % count; }
  template <class T>
  const auto& Of(const T& table) {
    return table[Below(std::size(table))];
  }

  string Pattern() {
    if (OneIn(4)) return Soup();
    return (OneIn(8) ? Of(kBegins) : "") + (OneIn(3) ? Branches(3) : "(" + Branches(2) + ")" + Branches(2));
  }

  string Input(std::size_t letters) {
    string text;
    while (letters-- > 0) text += Of(kLetters);
    return text;
  }

 private:
  string Soup() {
    string text = "(";
    for (std::size_t pieces = Below(9) + 1; pieces > 0; --pieces) text += Of(kSoup);
    return text + ")";
  }
  string Branches(int depth) {
    string text = Branch(depth);
    while (OneIn(4)) text += "|" + Branch(depth);
    return text;
  }
  string Branch(int depth) {
    string text;
    for (std::size_t items = Below(4); items > 0; --items) {
      const auto& group = Of(kGroups);
      text += depth > 0 && OneIn(3) ? group[0] + Branches(depth - 1) + group[1] : Of(kAtoms);
      if (OneIn(4)) text += Of(kRepeats);
    }
    return text;
  }

  std::mt19937 random_;
};

struct TOutcome {
  TKind kind;
  int code;
  int errorOffset;
  string group;
  bool operator==(const TOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const TOutcome& outcome) {
  return out << "kind " << static_cast<int>(outcome.kind) << ", code " << outcome.code << ", offset "
             << outcome.errorOffset << ", group '" << outcome.group.substr(0, 100) << '\'';
}

TOutcome PlainSearch(const string& pattern, const string& input, const TRegexLimits& limits) {
  TOutcome outcome{TKind::CompileError, 0, 0, ""};
  const char* error = nullptr;
  pcre* const code = pcre_compile(pattern.c_str(), PCRE_UTF8, &error, &outcome.errorOffset, nullptr);
  if (code == nullptr) return outcome;
  pcre_extra extra{};
  extra.flags = PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
  extra.match_limit = limits.match;
  extra.match_limit_recursion = limits.recursion;
  int offsets[6];
  const int rc = pcre_exec(code, &extra, input.data(), static_cast<int>(input.size()), 0, 0, offsets, 6);
  pcre_free(code);
  if (rc < -1) return {TKind::MatchError, rc, 0, ""};
  if (rc == -1 || rc == 1) return {rc == 1 ? TKind::NoGroup : TKind::NoMatch, 0, 0, ""};
  const int begin = std::max(offsets[2], 0), end = std::max(offsets[3], begin);
  // By \C a group may begin or end within a character.
  return {TKind::Matched, 0, 0, names_test::Text(NQ_TString(input.data() + begin, end - begin))};
}

TOutcome Search(const string& pattern, const string& input, const TRegexLimits& limits) {
  const TRegex regex(NQ_TString(pattern).StringView());
  NQ_TString group;
  const TRegexResult result = regex.AppendFirstGroup(NQ_TString(input).StringView(), limits, group);
  std::string_view found;
  if (std::none_of(input.begin(), input.end(), [](char byte) { return (byte & 0x80) != 0; })) {
    EXPECT_EQ(regex.FindFirstGroup(input, limits, found), result.kind == TKind::Matched) << pattern;
    EXPECT_EQ(found, group.Narrow()) << pattern;
  }
  return {result.kind, result.code, result.errorOffset, names_test::Text(group)};
}

// These cannot be cut into attempts, and so are given up where the text is long.
bool IsGivenUp(const string& pattern, const string& input, const TOutcome& outcome) {
  const auto holds = [&](const char* verb) { return pattern.find(verb) != string::npos; };
  const bool tied = holds("(*COMMIT") || holds("(*SKIP") || holds("(*CR") || holds("(*ANY");
  return tied && input.size() > 40'000 && outcome.code == PCRE_ERROR_MATCHLIMIT;
}

// What the plain search does not finish, the other one may.
bool IsUnfinished(const TOutcome& plain) {
  return plain.code == PCRE_ERROR_MATCHLIMIT || plain.code == PCRE_ERROR_RECURSIONLIMIT;
}

struct TRound {
  int patterns;
  int repeated;  // so often a few letters stand at the beginning of the input; the longest is searched place by place
  TRegexLimits limits;
};
constexpr TRound kRounds[] = {
    {60'000, 0, {10'000, 10'000}},  {10'000, 0, {20, 10'000}},   {10'000, 0, {10'000, 8}},
    {4'000, 1'100, {1'000, 3'000}}, {300, 17'000, {100, 3'000}},
};

TEST(RegexAgainstPcre, RandomPatterns) {
  TRandom random(20'240'517);
  for (const TRound& round : kRounds) {
    int searched = 0, matched = 0;
    const int patterns = formatting_test::Rounds(names_test::Scaled(round.patterns));
    for (int i = 0; i < patterns; ++i) {
      const string pattern = random.Pattern();
      const string input = Repeated(random.Input(random.Below(4) + 1), round.repeated) + random.Input(random.Below(30));
      const TOutcome expected = PlainSearch(pattern, input, round.limits);
      if (IsUnfinished(expected)) continue;
      const TOutcome outcome = Search(pattern, input, round.limits);
      if (IsGivenUp(pattern, input, outcome)) continue;
      ASSERT_EQ(outcome, expected) << pattern << " in " << input.size() << " bytes, " << input.substr(0, 100);
      searched += expected.kind == TKind::CompileError ? 0 : 1;
      matched += expected.group.empty() ? 0 : 1;
    }
    EXPECT_GT(searched, patterns / 3);
    EXPECT_GT(matched, patterns / 60);
  }
}

}  // namespace
}  // namespace templatenames
