#include "regex/Regex.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>

#include "NQ_Utf.h"
#include "text/FromUtf8.h"
#include "text/NarrowAscii.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// PCRE counts steps anew at every starting position, and one step may look at the whole rest of the text. So what a
// search may take is measured in steps times starting positions times length. This much takes about half a second.
constexpr std::uint64_t kMostWork = 4'000'000'000;

// A search that is done start by start ends after that long.
constexpr auto kPatience = std::chrono::seconds(1);

// Texts up to this length are searched at one go first: even if every starting position takes a look at the whole rest
// without a step, half a second is enough.
constexpr std::size_t kOneGo = 65'535;

// What makes a search depend on where it began, or skip starting positions by itself.
constexpr const char* kTiedToStart[] = {"\\G", "(*COMMIT", "(*SKIP", "(*CR", "(*ANY"};

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

TRegex::TRegex(std::u16string_view pattern) : pattern_(PatternText(pattern)), program_(pattern_) {}

// Most texts are short: even if every starting position took all its steps, there would be time for that.
inline int TRegex::Search(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const {
  const bool fits = text.size() <= kOneGo && limits.match <= kMostWork;
  if (fits && limits.match * text.size() * text.size() <= kMostWork) return program_.Search(text, 0, limits, offsets);
  return SearchInParts(text, limits, offsets);
}

TRegexResult TRegex::AppendFirstGroup(std::u16string_view input, const TRegexLimits& limits, NQ_TString& out) const {
  using TKind = TRegexResult::TKind;
  if (program_.Error() != nullptr) return {TKind::CompileError, 0, program_.ErrorOffset(), program_.Error()};
  const TSubject subject(input);
  TPcreProgram::TOffsets offsets;
  const int rc = Search(subject.Text(), limits, offsets);
  if (rc == PCRE_ERROR_NOMATCH) return {};
  if (rc < 0) return {TKind::MatchError, rc};
  if (rc == 1) return {TKind::NoGroup};
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
  const std::uint64_t length = text.size();
  if (length > std::numeric_limits<int>::max()) return PCRE_ERROR_BADLENGTH;
  if (length <= kOneGo) {
    const std::uint64_t most = kMostWork / std::max<std::uint64_t>(length * length, 1);
    const TRegexLimits first{std::min<unsigned long>(limits.match, most), limits.recursion};
    const int rc = program_.Search(text, 0, first, offsets);
    if (rc != PCRE_ERROR_MATCHLIMIT || first.match == limits.match) return rc;
  }
  return SearchStartByStart(text, limits, offsets);
}

// Tries the starting positions one after the other, so that each can have many steps, and the clock a look in between.
int TRegex::SearchStartByStart(std::string_view text, const TRegexLimits& limits,
                               TPcreProgram::TOffsets& offsets) const {
  const auto tied = [this](const char* piece) { return pattern_.find(piece) != std::string::npos; };
  if (std::any_of(std::begin(kTiedToStart), std::end(kTiedToStart), tied)) return PCRE_ERROR_MATCHLIMIT;
  const TPcreProgram& program = AnchoredProgram();
  const TRegexLimits each{std::min<unsigned long>(limits.match, kMostWork / text.size()), limits.recursion};
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  const std::ptrdiff_t last = program_.LastStart(text);
  for (std::ptrdiff_t start = 0; start <= last; ++start) {
    const auto at = static_cast<std::size_t>(start);
    if (at < text.size() && (text[at] & 0xC0) == 0x80) continue;  // within a character
    const int rc = program.Search(text, at, each, offsets);
    if (rc != PCRE_ERROR_NOMATCH) return rc;
    if (std::chrono::steady_clock::now() > deadline) return PCRE_ERROR_MATCHLIMIT;
  }
  return PCRE_ERROR_NOMATCH;
}

const TPcreProgram& TRegex::AnchoredProgram() const {
  std::call_once(once_, [this] { anchored_ = std::make_unique<const TPcreProgram>(pattern_, PCRE_ANCHORED); });
  return *anchored_;
}

}  // namespace templatenames
