#include "regex/Regex.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "NQ_Utf.h"
#include "text/FromUtf8.h"
#include "text/NarrowAscii.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// PCRE counts steps anew at every starting position, and one step may look at the whole rest of the text. So the work
// of a search is steps times starting positions times length. This much takes machine code about half a second at
// worst; what is below runs at one go.
constexpr std::uint64_t kMostWork = 4'000'000'000;

// A search that needs more gets more, by so much at a time, and the clock a look in between.
constexpr std::uint64_t kMoreWork = 5 * kMostWork;

// Texts up to this length may be searched at one go: even if every starting position takes a look at the whole rest
// without a step, that is little work.
constexpr std::size_t kOneGo = 65'535;

constexpr int kTimeSpent = -1'000;  // in place of a code of PCRE's

constexpr std::uint64_t kInterpreterDrag = 10;  // so many times as long takes a step of the interpreter, about

// How many steps make up that much work.
std::uint64_t StepsFor(std::uint64_t work, std::uint64_t workOfAStep) {
  return std::max<std::uint64_t>(work / std::max<std::uint64_t>(workOfAStep, 1), 1);
}

// Runs with few steps first, and with more as long as they are not enough and there is time.
template <class TRun>
int WithRisingSteps(std::uint64_t workOfAStep, const TRegexLimits& limits, TRun run) {
  const std::uint64_t more = StepsFor(kMoreWork, workOfAStep);
  TRegexLimits some = limits;
  some.match = std::min<std::uint64_t>(limits.match, StepsFor(kMostWork, workOfAStep));
  for (;;) {
    const int rc = run(some);
    if (rc != PCRE_ERROR_MATCHLIMIT || some.match == limits.match) return rc;
    if (limits.clock != nullptr && limits.clock->Spent()) return kTimeSpent;
    some.match = std::min<std::uint64_t>(limits.match, some.match + std::min<std::uint64_t>(3 * some.match, more));
  }
}

// The UTF-8 form of an input: a short one on the stack, others in memory that the thread keeps.
class TSubject {
 public:
  explicit TSubject(std::u16string_view input) {
    if (input.size() <= kShort) {
      ascii_ = NarrowAscii(input.data(), input.size(), short_);
      text_ = {short_, ascii_ ? input.size() : nq::Utf16ToUtf8(input, short_)};
    } else {
      Scratch().clear();
      nq::AppendUtf8(input, Scratch());
      text_ = Scratch();
      ascii_ = text_.size() == input.size();  // every other unit takes more than one byte
    }
  }
  ~TSubject() {
    if (text_.size() > kKeptScratch) std::string().swap(Scratch());
  }
  TSubject(const TSubject&) = delete;
  TSubject& operator=(const TSubject&) = delete;

  std::string_view Text() const { return text_; }
  bool IsAscii() const { return ascii_; }

 private:
  static constexpr std::size_t kShort = 256;
  static constexpr std::size_t kKeptScratch = 1024 * 1024;

  static std::string& Scratch() { return TThreadKept<std::string>::Mine(); }

  char short_[3 * kShort];  // a unit takes three bytes at most
  std::string_view text_;
  bool ascii_;
};

void AppendAscii(std::string_view ascii, NQ_TString& out) {
  std::copy_n(ascii.data(), ascii.size(), out.AppendUninitialized(static_cast<unsigned int>(ascii.size())));
}

// Empty when the group took no part in the match. "\\K" can put its end before its begin.
std::string_view FirstGroupIn(std::string_view text, const TPcreProgram::TOffsets& offsets) {
  if (offsets[2] < 0) return {};
  return {text.data() + offsets[2], static_cast<std::size_t>(std::max(offsets[3] - offsets[2], 0))};
}

std::string PatternText(std::u16string_view pattern) {
  std::string text;
  nq::AppendUtf8(pattern.substr(0, pattern.find(u'\0')), text);
  return text;
}

}  // namespace

TRegex::TRegex(std::u16string_view pattern)
    : pattern_(PatternText(pattern)), program_(pattern_), drag_(program_.IsNative() ? 1 : kInterpreterDrag) {}

// Most texts are short: even if every starting position took all its steps, there would be time for that.
inline int TRegex::Search(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const {
  const bool fits = text.size() <= kOneGo && limits.match <= kMostWork / kInterpreterDrag;
  if (fits && limits.match * text.size() * text.size() * drag_ <= kMostWork) {
    const int rc = program_.Search(text, 0, limits, offsets);
    if (rc != PCRE_ERROR_MATCHLIMIT) return rc;
  }
  return SearchInParts(text, limits, offsets);
}

TRegexResult TRegex::AppendFirstGroup(std::u16string_view input, const TRegexLimits& limits, NQ_TString& out) const {
  using TKind = TRegexResult::TKind;
  if (program_.Error() != nullptr) return {TKind::CompileError, 0, program_.ErrorOffset(), program_.Error()};
  const TSubject subject(input);
  TPcreProgram::TOffsets offsets;
  const int rc = Search(subject.Text(), limits, offsets);
  if (rc == PCRE_ERROR_NOMATCH) return {};
  if (rc == kTimeSpent) return {TKind::TimeSpent};
  if (rc < 0) return {TKind::MatchError, rc};
  if (rc == 1) return {TKind::NoGroup, 0, 0, nullptr, program_.Groups()};
  const std::string_view group = FirstGroupIn(subject.Text(), offsets);
  subject.IsAscii() ? AppendAscii(group, out) : AppendFromUtf8(group, out);
  return {TKind::Matched};
}

bool TRegex::FindFirstGroup(std::string_view ascii, const TRegexLimits& limits, std::string_view& group) const {
  if (program_.Error() != nullptr) return false;
  TPcreProgram::TOffsets offsets;
  const int rc = Search(ascii, limits, offsets);
  if (rc < 0 || rc == 1) return false;
  group = FirstGroupIn(ascii, offsets);
  return true;
}

int TRegex::SearchInParts(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const {
  if (text.size() > std::numeric_limits<int>::max()) return PCRE_ERROR_BADLENGTH;
  if (program_.IsTied()) return SearchAtOneGo(text, limits, offsets);
  if (text.size() <= kOneGo && drag_ * text.size() * text.size() <= kMostWork) {
    TRegexLimits first = limits;
    first.match = std::min<std::uint64_t>(limits.match, StepsFor(kMostWork, drag_ * text.size() * text.size()));
    const int rc = program_.Search(text, 0, first, offsets);
    if (rc != PCRE_ERROR_MATCHLIMIT) return rc;
  }
  return SearchStartByStart(text, limits, offsets);
}

int TRegex::SearchAtOneGo(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const {
  const std::uint64_t most = StepsFor(kMoreWork, drag_ * text.size());
  const std::uint64_t starts = program_.Starts().Count(text, most);
  if (starts > most) return PCRE_ERROR_MATCHLIMIT;  // a single step at each is too much, and nobody looks at a clock
  return WithRisingSteps(starts * drag_ * text.size(), limits,
                         [&](const TRegexLimits& some) { return program_.Search(text, 0, some, offsets); });
}

// Tries the starting positions one after the other, so that each can have many steps, and the clock a look in between.
int TRegex::SearchStartByStart(std::string_view text, const TRegexLimits& limits,
                               TPcreProgram::TOffsets& offsets) const {
  const TStarts& starts = program_.Starts();
  // The interpreter would not know beforehand that there is no match, but might stop with an error.
  const std::ptrdiff_t last = program_.IsNative() ? starts.Last(text) : static_cast<std::ptrdiff_t>(text.size());
  for (std::size_t at = starts.Next(text, 0); at != TStarts::kNone; at = starts.Next(text, at + 1)) {
    if (static_cast<std::ptrdiff_t>(at) > last) break;
    const int rc = MatchAt(text, at, limits, offsets);
    if (rc != PCRE_ERROR_NOMATCH) return rc;
    if (limits.clock != nullptr && limits.clock->Spent()) return kTimeSpent;
  }
  return PCRE_ERROR_NOMATCH;
}

// The interpreter has the last word on the limit of steps, which are its own.
int TRegex::MatchAt(std::string_view text, std::size_t at, const TRegexLimits& limits,
                    TPcreProgram::TOffsets& offsets) const {
  if (program_.IsNative()) {
    const TPcreProgram& program = AnchoredProgram();
    const int rc = WithRisingSteps(text.size(), limits,
                                   [&](const TRegexLimits& some) { return program.Search(text, at, some, offsets); });
    if (rc != PCRE_ERROR_MATCHLIMIT) return rc;
  }
  return WithRisingSteps(kInterpreterDrag * text.size(), limits,
                         [&](const TRegexLimits& some) { return program_.MatchAt(text, at, some, offsets); });
}

const TPcreProgram& TRegex::AnchoredProgram() const {
  std::call_once(once_, [this] { anchored_ = std::make_unique<const TPcreProgram>(pattern_, PCRE_ANCHORED); });
  return *anchored_;
}

std::string_view ExceededLimit(const TRegexResult& result) {
  if (result.kind == TRegexResult::TKind::TimeSpent) return "regexMilliseconds";
  if (result.kind != TRegexResult::TKind::MatchError) return {};
  if (result.code == PCRE_ERROR_MATCHLIMIT) return "regexMatch";
  return result.code == PCRE_ERROR_RECURSIONLIMIT ? "regexRecursion" : std::string_view();
}

}  // namespace templatenames
