#include "regex/PcreProgram.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

#include "regex/LargeStack.h"
#include "regex/Pattern.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// The slowest patterns known, classes that span all of Unicode without regard to case, compile for a second at this
// length.
constexpr std::size_t kMaxPattern = 16'384;
constexpr const char* kPatternTooLong = "regular expression is longer than 16384 bytes";

constexpr int kCompileErrorNoMemory = 21;

// More would need hundreds of megabytes of stack.
constexpr unsigned long kMostLevels = 200'000;

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

// Stack for what is not recursion, with much to spare.
constexpr std::size_t kRoom = 256 * 1024;

// What one level of the interpreter's recursion takes.
std::size_t BytesPerLevel() {
  // Called like this, PCRE tells the size, negative.
  static const int frame = -pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0);
  return static_cast<std::size_t>(std::max(frame, 64));
}

}  // namespace

TPcreProgram::TPcreProgram(const std::string& pattern, int options) {
  if (pattern.size() > kMaxPattern) {
    error_ = kPatternTooLong;
    errorOffset_ = static_cast<int>(kMaxPattern);
    return;
  }
  int error = 0;
  const TPattern read = ReadPattern(pattern);
  code_.reset(pcre_compile2(read.text.c_str(), PCRE_UTF8 | options, &error, &error_, &errorOffset_, nullptr));
  if (error == kCompileErrorNoMemory) throw std::bad_alloc();
  if (code_ == nullptr) return;
  tied_ = read.tied;
  if (!read.interpreted) MakeNative();
  starts_ = TStarts(code_.get(), study_.get());
  const auto ask = [this](int what, void* answer) { pcre_fullinfo(code_.get(), study_.get(), what, answer); };
  ask(PCRE_INFO_CAPTURECOUNT, &groups_);
  for (const int what : {PCRE_INFO_SIZE, PCRE_INFO_STUDYSIZE, PCRE_INFO_JITSIZE}) {
    std::size_t bytes = 0;
    ask(what, &bytes);
    bytes_ += bytes;
  }
}

void TPcreProgram::MakeNative() {
  const char* ignored = nullptr;  // without a study the search is slower, not different
  study_.reset(pcre_study(code_.get(), PCRE_STUDY_JIT_COMPILE, &ignored));
  native_ = study_ != nullptr && (study_->flags & PCRE_EXTRA_EXECUTABLE_JIT) != 0;
  if (native_) usual_ = NativeExtra(kUsualLimits.match);
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

// On this thread's stack when that is large enough, else on another one.
int TPcreProgram::Interpret(std::string_view text, std::size_t start, int options, const TRegexLimits& limits,
                            TOffsets& offsets) const {
  const auto run = [&](std::size_t levels) {
    pcre_extra extra{};
    extra.flags = PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
    extra.match_limit = std::max(limits.match, 1UL);
    extra.match_limit_recursion = levels;
    return pcre_exec(code_.get(), &extra, text.data(), static_cast<int>(text.size()), static_cast<int>(start),
                     options | PCRE_NO_UTF8_CHECK, offsets, std::extent_v<TOffsets>);
  };
  const std::size_t levels = std::clamp(limits.recursion, 1UL, kMostLevels);
  const std::size_t here = std::max(StackLeft() / 2 / BytesPerLevel(), std::size_t{1});
  int rc = run(std::min(levels, here));
  if (rc != PCRE_ERROR_RECURSIONLIMIT || levels <= here) return rc;
  CallOnStack(levels * BytesPerLevel() + kRoom, [&] { rc = run(levels); });
  return rc;
}

}  // namespace templatenames
