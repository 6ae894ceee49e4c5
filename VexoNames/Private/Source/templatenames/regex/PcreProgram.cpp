#include "regex/PcreProgram.h"

#include <pthread.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// The slowest patterns known, classes that span all of Unicode without regard to case, compile for a second at this
// length.
constexpr std::size_t kMaxPattern = 16'384;
constexpr const char* kPatternTooLong = "regular expression is longer than 16384 bytes";

constexpr int kOffsets = std::extent_v<TPcreProgram::TOffsets>;
constexpr unsigned long kInterpreterDrag = 10;  // so many times as long takes a step of the interpreter, about

// The stack of the machine code of one thread, grown on demand and kept. Alternatives repeated 20,000 times fit.
class TNativeStack {
 public:
  TNativeStack() : stack_(pcre_jit_stack_alloc(32 * 1024, 4 * 1024 * 1024)) {}
  ~TNativeStack() {
    if (stack_ != nullptr) pcre_jit_stack_free(stack_);
  }
  TNativeStack(const TNativeStack&) = delete;
  TNativeStack& operator=(const TNativeStack&) = delete;

  /// Null when there is no memory for it.
  pcre_jit_stack* Get() const { return stack_; }

 private:
  pcre_jit_stack* const stack_;
};

// How much stack the running thread has left; little when that is unknown.
std::size_t StackLeft() {
  constexpr std::size_t kUnknown = 64 * 1024;
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return kUnknown;
  void* low = nullptr;
  std::size_t size = 0;
  const int failed = pthread_attr_getstack(&attributes, &low, &size);
  pthread_attr_destroy(&attributes);
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  const auto end = reinterpret_cast<std::uintptr_t>(low);
  return failed != 0 || here < end ? kUnknown : here - end;
}

}  // namespace

TPcreProgram::TPcreProgram(const std::string& pattern, int options) {
  if (pattern.size() > kMaxPattern) {
    error_ = kPatternTooLong;
    errorOffset_ = static_cast<int>(kMaxPattern);
    return;
  }
  code_.reset(pcre_compile(pattern.c_str(), PCRE_UTF8 | options, &error_, &errorOffset_, nullptr));
  if (code_ == nullptr) return;
  const char* ignored = nullptr;  // without a study the search is slower, not different
  study_.reset(pcre_study(code_.get(), PCRE_STUDY_JIT_COMPILE, &ignored));
  native_ = study_ != nullptr && (study_->flags & PCRE_EXTRA_EXECUTABLE_JIT) != 0;
  if (native_) usual_ = NativeExtra(kUsualLimits.match);
  const auto ask = [this](int what, void* answer) { pcre_fullinfo(code_.get(), study_.get(), what, answer); };
  unsigned long effective = 0;
  ask(PCRE_INFO_OPTIONS, &effective);
  anchored_ = (effective & PCRE_ANCHORED) != 0;
  int hasRequired = 0;
  std::uint32_t required = 0;
  ask(PCRE_INFO_REQUIREDCHARFLAGS, &hasRequired);
  ask(PCRE_INFO_REQUIREDCHAR, &required);
  if (hasRequired != 0 && required < 0x80) required_ = static_cast<char>(required);
  ask(PCRE_INFO_CAPTURECOUNT, &groups_);
  for (const int what : {PCRE_INFO_SIZE, PCRE_INFO_STUDYSIZE, PCRE_INFO_JITSIZE}) {
    std::size_t bytes = 0;
    ask(what, &bytes);
    bytes_ += bytes;
  }
}

std::ptrdiff_t TPcreProgram::LastStart(std::string_view text) const {
  if (anchored_) return 0;
  if (required_ == 0) return static_cast<std::ptrdiff_t>(text.size());
  // PCRE does not tell whether it means both cases.
  const char lower = static_cast<char>(required_ | 0x20);
  const char other = lower >= 'a' && lower <= 'z' ? static_cast<char>(required_ ^ 0x20) : required_;
  const char either[] = {required_, other};
  return static_cast<std::ptrdiff_t>(text.find_last_of(std::string_view(either, 2)));  // npos is −1
}

pcre_extra TPcreProgram::NativeExtra(unsigned long matchLimit) const {
  constexpr unsigned long kMostSteps = std::numeric_limits<std::uint32_t>::max();  // machine code counts in 32 bits
  pcre_extra extra{};
  extra.flags = PCRE_EXTRA_EXECUTABLE_JIT | PCRE_EXTRA_MATCH_LIMIT;
  extra.executable_jit = study_->executable_jit;
  extra.match_limit = std::clamp(matchLimit, 1UL, kMostSteps);
  return extra;
}

pcre_jit_stack* TPcreProgram::NativeStack() { return TThreadKept<TNativeStack>::Mine().Get(); }

int TPcreProgram::Interpret(std::string_view text, std::size_t start, const TRegexLimits& limits,
                            TOffsets& offsets) const {
  // Called like this, PCRE tells the size of one level of its recursion, negative.
  static const int frame = -pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0);
  const unsigned long levels = StackLeft() / 2 / static_cast<std::size_t>(std::max(frame, 64));
  pcre_extra extra = study_ != nullptr ? *study_ : pcre_extra{};
  extra.flags |= PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
  extra.match_limit = std::max(limits.match / kInterpreterDrag, 1UL);
  extra.match_limit_recursion = std::max(std::min(limits.recursion, levels), 1UL);
  // With room for all groups it says, as machine code does, that a group after the first took part.
  std::vector<int> all(static_cast<std::size_t>(std::max(3 * (groups_ + 1), kOffsets)));
  const int rc = pcre_exec(code_.get(), &extra, text.data(), static_cast<int>(text.size()), static_cast<int>(start),
                           PCRE_NO_UTF8_CHECK, all.data(), static_cast<int>(all.size()));
  std::copy_n(all.begin(), kOffsets, offsets);
  return rc;
}

}  // namespace templatenames
