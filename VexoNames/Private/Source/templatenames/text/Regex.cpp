#include "text/Regex.h"

#include <pthread.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "NQ_Utf.h"
#include "text/FromUtf8.h"

namespace templatenames {
namespace {

// The slowest patterns known, classes that span all of Unicode without regard to case, compile for a second at this
// length.
constexpr std::size_t kMaxPattern = 16'384;
constexpr const char* kPatternTooLong = "regular expression is longer than 16384 bytes";

// PCRE counts steps anew at every starting position. Up to this many positions each gets the full number; with more
// the number shrinks, but not below what searches without much backtracking need.
constexpr unsigned long kFullStarts = 1'000;
constexpr unsigned long kFewestSteps = 200;
constexpr unsigned long kMostSteps = std::numeric_limits<std::uint32_t>::max();  // machine code counts in 32 bits
// Interpreting takes about ten times as long per step as machine code.
constexpr unsigned long kInterpreterDrag = 10;

// Stack of the machine code. It grows on demand and is kept by the thread; alternatives repeated 20,000 times, all
// that the limits allow, fit.
constexpr int kFirstNativeStack = 32 * 1024;
constexpr int kNativeStack = 4 * 1024 * 1024;

// Longer scratch text is given back after use.
constexpr std::size_t kKeptScratch = 1024 * 1024;

// What a thread uses again and again.
struct TScratch {
  TScratch() : stack(pcre_jit_stack_alloc(kFirstNativeStack, kNativeStack)) {}
  ~TScratch() {
    if (stack != nullptr) pcre_jit_stack_free(stack);
  }
  TScratch(const TScratch&) = delete;
  TScratch& operator=(const TScratch&) = delete;

  pcre_jit_stack* const stack;
  std::string text;
};

// A plain pointer in front: looking at an object that is constructed at first use costs a check of its own.
constinit thread_local TScratch* tScratch = nullptr;

TScratch& NewScratch() {
  thread_local TScratch scratch;
  tScratch = &scratch;
  return scratch;
}

TScratch& Scratch() {
  TScratch* const scratch = tScratch;
  return scratch != nullptr ? *scratch : NewScratch();
}

// Copies a block of units, a multiple of four, as bytes; returns the bits of all units, four units side by side.
template <std::size_t kUnits>
std::uint64_t NarrowBlock(const char16_t* __restrict in, char* __restrict out) {
  std::uint64_t seen = 0;
  for (std::size_t i = 0; i < kUnits; i += 4) {
    std::uint64_t word = 0;
    std::memcpy(&word, in + i, sizeof word);
    seen |= word;
  }
  for (std::size_t i = 0; i < kUnits; ++i) out[i] = static_cast<char>(in[i]);
  return seen;
}

// Copies in blocks of a fixed size, which become vector code; the last one overlaps the one before. Returns whether
// the units were ASCII.
bool NarrowAscii(const char16_t* in, std::size_t length, char* out) {
  std::uint64_t seen = 0;
  if (length >= 16) {
    for (std::size_t at = 0; at + 16 < length; at += 16) seen |= NarrowBlock<16>(in + at, out + at);
    seen |= NarrowBlock<16>(in + length - 16, out + length - 16);
  } else if (length >= 8) {
    seen = NarrowBlock<8>(in, out) | NarrowBlock<8>(in + length - 8, out + length - 8);
  } else if (length >= 4) {
    seen = NarrowBlock<4>(in, out) | NarrowBlock<4>(in + length - 4, out + length - 4);
  } else {
    for (std::size_t at = 0; at < length; ++at) {
      seen |= in[at];
      out[at] = static_cast<char>(in[at]);
    }
  }
  return (seen & 0xFF80'FF80'FF80'FF80) == 0;
}

// The UTF-8 form of an input, on the stack if it is short ASCII.
class TSubject {
 public:
  explicit TSubject(std::u16string_view input) : length_(input.size()) {
    if (input.size() <= sizeof short_ && NarrowAscii(input.data(), input.size(), short_)) return;
    std::string& text = Scratch().text;
    text.clear();
    nq::AppendUtf8(input, text);
    bytes_ = text.data();
    length_ = text.size();
  }
  ~TSubject() {
    if (!Ascii() && Scratch().text.capacity() > kKeptScratch) std::string().swap(Scratch().text);
  }
  TSubject(const TSubject&) = delete;
  TSubject& operator=(const TSubject&) = delete;

  std::string_view View() const { return {bytes_, length_}; }
  bool Ascii() const { return bytes_ == short_; }

 private:
  char short_[256];
  const char* bytes_ = short_;
  std::size_t length_;
};

unsigned long StepsPerStart(unsigned long steps, unsigned long starts) {
  steps = std::clamp(steps, 1UL, kMostSteps);
  if (starts < 2 * kFullStarts) return steps;
  return std::max(steps / (starts / kFullStarts), std::min(steps, kFewestSteps));
}

// How much stack the running thread has left; little when that is unknown.
std::size_t StackLeft() {
  constexpr std::size_t kUnknown = 64 * 1024;
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return kUnknown;
  void* low = nullptr;
  std::size_t size = 0;
  const int failed = pthread_attr_getstack(&attributes, &low, &size);
  pthread_attr_destroy(&attributes);
  const auto here = reinterpret_cast<std::uintptr_t>(&attributes);
  const auto end = reinterpret_cast<std::uintptr_t>(low);
  return failed != 0 || here < end ? kUnknown : here - end;
}

void AppendAscii(std::string_view ascii, NQ_TString& out) {
  std::copy_n(ascii.data(), ascii.size(), out.AppendUninitialized(static_cast<unsigned int>(ascii.size())));
}

}  // namespace

TRegex::TRegex(std::u16string_view pattern) {
  std::string utf8;
  nq::AppendUtf8(pattern.substr(0, pattern.find(u'\0')), utf8);
  if (utf8.size() > kMaxPattern) {
    errorOffset_ = static_cast<int>(kMaxPattern);
    errorText_ = kPatternTooLong;
    return;
  }
  code_.reset(pcre_compile(utf8.c_str(), PCRE_UTF8, &errorText_, &errorOffset_, nullptr));
  if (code_ == nullptr) return;
  const char* ignored = nullptr;  // without a study the search is slower, not different
  study_.reset(pcre_study(code_.get(), PCRE_STUDY_JIT_COMPILE, &ignored));
  native_ = study_ != nullptr && (study_->flags & PCRE_EXTRA_EXECUTABLE_JIT) != 0;
  pcre_fullinfo(code_.get(), study_.get(), PCRE_INFO_CAPTURECOUNT, &groups_);
  for (const int what : {PCRE_INFO_SIZE, PCRE_INFO_STUDYSIZE, PCRE_INFO_JITSIZE}) {
    std::size_t bytes = 0;
    if (pcre_fullinfo(code_.get(), study_.get(), what, &bytes) == 0) bytes_ += bytes;
  }
}

TRegexResult TRegex::AppendFirstGroup(std::u16string_view input, const TRegexLimits& limits, NQ_TString& out) const {
  using TKind = TRegexResult::TKind;
  if (code_ == nullptr) return {TKind::CompileError, 0, errorOffset_, errorText_};
  const TSubject subject(input);
  int offsets[6];
  const int rc = Search(subject.View(), limits, offsets);
  if (rc == PCRE_ERROR_NOMATCH) return {};
  if (rc < 0) return {TKind::MatchError, rc};
  if (rc == 1) return {TKind::NoGroup};
  if (offsets[2] >= 0) {
    const std::string_view group(subject.View().data() + offsets[2],
                                 static_cast<std::size_t>(std::max(offsets[3] - offsets[2], 0)));
    subject.Ascii() ? AppendAscii(group, out) : AppendFromUtf8(group, out);
  }
  return {TKind::Matched};
}

// Returns PCRE's code; offsets are those of the match and of group 1. The subject is UTF-8 that was made here, so it is
// not checked once more.
int TRegex::Search(std::string_view subject, const TRegexLimits& limits, int (&offsets)[6]) const {
  if (subject.size() > std::numeric_limits<int>::max()) return PCRE_ERROR_BADLENGTH;
  const unsigned long steps = StepsPerStart(limits.match, subject.size());
  pcre_jit_stack* const stack = native_ ? Scratch().stack : nullptr;
  if (stack == nullptr) return SearchInterpreted(subject, {steps, limits.recursion}, offsets);
  pcre_extra extra{};  // only what machine code looks at: copying all of the study would cost more than all the rest
  extra.flags = PCRE_EXTRA_EXECUTABLE_JIT | PCRE_EXTRA_MATCH_LIMIT;
  extra.executable_jit = study_->executable_jit;
  extra.match_limit = steps;
  return pcre_jit_exec(code_.get(), &extra, subject.data(), static_cast<int>(subject.size()), 0, 0, offsets, 6, stack);
}

int TRegex::SearchInterpreted(std::string_view subject, const TRegexLimits& limits, int (&offsets)[6]) const {
  // Called like this, PCRE tells the size of one level of its recursion, negative.
  static const int frame = -pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0);
  const unsigned long levels = StackLeft() / 2 / static_cast<std::size_t>(std::max(frame, 64));
  pcre_extra extra = study_ != nullptr ? *study_ : pcre_extra{};
  extra.flags |= PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
  extra.match_limit = std::max(limits.match / kInterpreterDrag, 1UL);
  extra.match_limit_recursion = std::max(std::min(limits.recursion, levels), 1UL);
  // With room for all groups it says, as machine code does, that a group after the first took part.
  std::vector<int> all(3 * (static_cast<std::size_t>(groups_) + 1));
  const int rc = pcre_exec(code_.get(), &extra, subject.data(), static_cast<int>(subject.size()), 0, PCRE_NO_UTF8_CHECK,
                           all.data(), static_cast<int>(all.size()));
  std::copy_n(all.begin(), std::min<std::size_t>(all.size(), 4), offsets);
  return rc;
}

}  // namespace templatenames
