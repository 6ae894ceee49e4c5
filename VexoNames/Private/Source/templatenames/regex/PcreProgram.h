// One compiled PCRE pattern and its run over UTF-8 text.
//
// Compiled to machine code where PCRE can do that, and interpreted elsewhere. A program is immutable; threads may use
// one together. A run never overflows the stack: machine code has one of its own per thread, and how deep the
// interpreter goes depends on what the running thread has left.
#pragma once

#include <pcre.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace templatenames {

/// What one search may cost. A search that would exceed a limit is a matching error with PCRE's code for that limit.
struct TRegexLimits {
  /// Steps of the matcher from one starting position. Long inputs, with their many positions, may get fewer.
  unsigned long match = 1'000'000;
  /// Depth of the matcher where there is no machine code.
  unsigned long recursion = 10'000;
};

inline constexpr TRegexLimits kUsualLimits;

class TPcreProgram {
 public:
  /// Compiles the pattern with PCRE_UTF8 and the options given. Patterns of more than 16,384 bytes are refused.
  explicit TPcreProgram(const std::string& pattern, int options = 0);

  /// Null when the pattern is compiled, else what is wrong with it; static.
  const char* Error() const { return code_ != nullptr ? nullptr : error_; }
  int ErrorOffset() const { return errorOffset_; }
  /// The last place of the text at which a match can begin, as far as that is known beforehand; −1 for none.
  std::ptrdiff_t LastStart(std::string_view text) const;
  /// Memory held.
  std::size_t Bytes() const { return bytes_; }

  /// Where the match begins and ends, then group 1: −1 if it took no part.
  using TOffsets = int[6];

  /// Searches the text, valid UTF-8 of less than 2^31 bytes, from a character on. Returns what pcre_exec returns, but
  /// never 1 when a group after the first took part.
  int Search(std::string_view text, std::size_t start, const TRegexLimits& limits, TOffsets& offsets) const {
    pcre_jit_stack* const stack = native_ ? NativeStack() : nullptr;
    return stack == nullptr ? Interpret(text, start, limits, offsets) : Run(*stack, text, start, limits, offsets);
  }

 private:
  struct TFree {
    void operator()(pcre* code) const { pcre_free(code); }
    void operator()(pcre_extra* study) const { pcre_free_study(study); }
  };

  /// The running thread's; null when there is no memory for it.
  static pcre_jit_stack* NativeStack();
  /// What machine code looks at: copying all of the study takes longer than all else here.
  pcre_extra NativeExtra(unsigned long matchLimit) const;
  // The text is known to be UTF-8, so that PCRE need not check it again; machine code never does.
  int Run(pcre_jit_stack& stack, std::string_view text, std::size_t start, const TRegexLimits& limits,
          TOffsets& offsets) const {
    if (limits.match != kUsualLimits.match) return Run(stack, text, start, NativeExtra(limits.match), offsets);
    return Run(stack, text, start, usual_, offsets);
  }
  int Run(pcre_jit_stack& stack, std::string_view text, std::size_t start, const pcre_extra& extra,
          TOffsets& offsets) const {
    return pcre_jit_exec(code_.get(), &extra, text.data(), static_cast<int>(text.size()), static_cast<int>(start), 0,
                         offsets, std::extent_v<TOffsets>, &stack);
  }
  int Interpret(std::string_view text, std::size_t start, const TRegexLimits& limits, TOffsets& offsets) const;

  std::unique_ptr<pcre, TFree> code_;
  std::unique_ptr<pcre_extra, TFree> study_;  // may be null
  bool native_ = false;                       // there is machine code
  pcre_extra usual_{};                        // for that, with the usual limits
  bool anchored_ = false;                     // a match begins at the beginning of the text
  char required_ = 0;                         // a letter of either case or another character of every match
  int groups_ = 0;
  std::size_t bytes_ = 0;
  const char* error_ = nullptr;
  int errorOffset_ = 0;
};

}  // namespace templatenames
