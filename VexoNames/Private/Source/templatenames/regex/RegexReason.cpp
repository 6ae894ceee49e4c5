#include "regex/RegexReason.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>

#include "NQ_Utf.h"

namespace templatenames {
namespace {

// What would do where PCRE only says what is wrong.
struct TAdvice {
  std::string_view error;
  std::string_view advice;
};
constexpr TAdvice kAdvice[] = {
    {"missing )", "close the bracket, or write \\( for a bracket that is part of the text"},
    {"unmatched parentheses", "open the bracket before it, or write \\) for a bracket that is part of the text"},
    {"missing terminating ] for character class", "close the bracket, or write \\[ for one that is part of the text"},
    {"nothing to repeat", "write a backslash before a *, + or ? that is part of the text"},
    {"\\ at end of pattern", "write \\\\ for a backslash that is part of the text"},
};

// What stopped a search, and what would do.
struct TStop {
  int code;
  std::string_view sentence;
};
constexpr TStop kStops[] = {
    {PCRE_ERROR_MATCHLIMIT,
     " takes more steps than the limit regexMatch allows: repeats within repeats, such as (a+)+, are slow"},
    {PCRE_ERROR_RECURSIONLIMIT,
     " goes deeper than the limit regexRecursion allows: [ab]* goes less deep than (a|b)*, for one"},
    {PCRE_ERROR_RECURSELOOP, " calls itself at the same place of the value for ever"},
    {PCRE_ERROR_BADLENGTH, " cannot be searched for in so long a value"},
};

std::size_t CutBetweenCharacters(std::u16string_view text, std::size_t most) {
  if (text.size() <= most) return text.size();
  return (text[most] & 0xFC00) == 0xDC00 ? most - 1 : most;
}

std::string Quoted(std::u16string_view text) {
  constexpr std::size_t kMost = 60;
  const std::size_t end = CutBetweenCharacters(text, kMost);
  std::string quoted = "\"";
  nq::AppendUtf8(text.substr(0, end), quoted);
  return quoted + (end < text.size() ? "…\"" : "\"");
}

// "(a))", 3 bytes: " at character 4, where ")" stands".
std::string Place(const NQ_TString& pattern, int bytes) {
  const std::string_view text = pattern.Narrow();
  const std::string_view before = text.substr(0, static_cast<std::size_t>(std::max(bytes, 0)));
  const auto isWithin = [](char byte) { return (byte & 0xC0) == 0x80; };
  const auto number = static_cast<std::size_t>(std::count_if(before.begin(), before.end(), std::not_fn(isWithin))) + 1;
  if (before.size() == text.size()) return " at its end";
  std::size_t end = before.size() + 1;
  while (end < text.size() && isWithin(text[end])) ++end;
  return " at character " + std::to_string(number) + ", where \"" +
         std::string(text.substr(before.size(), end - before.size())) + "\" stands";
}

std::string CompileSentence(const TRegexResult& result, const NQ_TString& pattern) {
  const std::string_view error = result.errorText;
  std::string sentence = " cannot be used: " + std::string(error) + Place(pattern, result.errorOffset);
  const auto* const found = std::find_if(std::begin(kAdvice), std::end(kAdvice),
                                         [error](const TAdvice& advice) { return advice.error == error; });
  if (found != std::end(kAdvice)) sentence.append("; ").append(found->advice);
  return sentence;
}

std::string StopSentence(int code) {
  const auto* const found =
      std::find_if(std::begin(kStops), std::end(kStops), [code](const TStop& stop) { return stop.code == code; });
  return found != std::end(kStops) ? std::string(found->sentence)
                                   : " cannot be searched for: PCRE gives the error " + std::to_string(code);
}

std::string NoGroupSentence(int groups) {
  if (groups == 0) {
    return " matches, but nothing in it says which part to take: put round brackets around the part that is wanted";
  }
  return " matches, but its first pair of round brackets has no part in that: put the first pair around the part that "
         "is "
         "wanted, and write (?: for pairs that only hold together";
}

std::string Sentence(const TRegexResult& result, const NQ_TString& pattern) {
  switch (result.kind) {
    case TRegexResult::TKind::CompileError:
      return CompileSentence(result, pattern);
    case TRegexResult::TKind::NoMatch:
      return " matches no part of the value";
    case TRegexResult::TKind::MatchError:
      return StopSentence(result.code);
    case TRegexResult::TKind::TimeSpent:
      return " is searched for when the time that the limit regexMilliseconds allows is over";
    case TRegexResult::TKind::NoGroup:
      return NoGroupSentence(result.groups);
    case TRegexResult::TKind::Matched:
      break;
  }
  return {};
}

}  // namespace

NQ_TString RegexReason(const TRegexResult& result, const NQ_TString& pattern) {
  const std::string sentence = Sentence(result, pattern);
  return sentence.empty() ? NQ_TString()
                          : NQ_TString("the regular expression " + Quoted(pattern.StringView()) + sentence);
}

NQ_TString RegexSuggestion(const TRegexResult& result, const NQ_TString& pattern) {
  if (result.kind != TRegexResult::TKind::NoGroup || result.groups > 0) return {};
  const std::u16string_view text = pattern.StringView();
  // What begins like this holds for the whole pattern only where it stands first.
  if (text.starts_with(u"(*")) return {};
  const NQ_TString bracketed = NQ_TString("(") + pattern + ")";
  // A quote or a comment may reach to the end of the pattern.
  return TRegex(bracketed.StringView()).IsCompiled() ? bracketed : NQ_TString();
}

}  // namespace templatenames
