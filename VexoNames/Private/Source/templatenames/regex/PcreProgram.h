// One compiled PCRE pattern and its run over UTF-8 text.
//
// A run gives what pcre_exec gives for the whole text, without study and options, with room for one group. It is done
// by machine code where that is certain to give the same, and by PCRE's interpreter for other patterns. A program is
// immutable; threads may use one together. A run never overflows the stack: machine code has one of its own per thread,
// and the interpreter gets another stack when the running thread's is too small.
#pragma once

#include <pcre.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "regex/RegexLimits.h"
#include "regex/Starts.h"

namespace templatenames {

class TPcreProgram {
 public:
  /// Compiles the pattern with PCRE_UTF8 and the options given. Patterns of more than 16,384 bytes are refused. Throws
  /// std::bad_alloc when there is no memory.
  explicit TPcreProgram(const std::string& pattern, int options = 0);

  /// Null when the pattern is compiled, else what is wrong with it; static.
  const char* Error() const { return code_ != nullptr ? nullptr : error_; }
  int ErrorOffset() const { return errorOffset_; }
  int Groups() const { return groups_; }
  /// Whether the text must be searched at one go, because places where a match can begin depend on each other.
  bool IsTied() const { return tied_; }
  /// Whether there is machine code. Programs that are tied have none.
  bool IsNative() const { return native_; }
  const TStarts& Starts() const { return starts_; }
  /// Memory held.
  std::size_t Bytes() const { return bytes_; }

  /// Where the match begins and ends, then group 1: −1 if it took no part.
  using TOffsets = int[6];

  /// Searches the text, valid UTF-8 of less than 2^31 bytes, from a character on. Returns what pcre_exec returns, but
  /// perhaps 0 in place of 2, and PCRE_ERROR_MATCHLIMIT sooner or later when there is machine code, which counts its
  /// steps in another way. The limits' clock is not asked.
  int Search(std::string_view text, std::size_t start, const TRegexLimits& limits, TOffsets& offsets) const {
    pcre_jit_stack* const stack = native_ ? NativeStack() : nullptr;
    const int rc =
        stack == nullptr ? Interpret(text, start, 0, limits, offsets) : Run(*stack, text, start, limits, offsets);
    return rc == PCRE_ERROR_JIT_STACKLIMIT ? Interpret(text, start, 0, limits, offsets) : rc;
  }
  /// The same for a match that begins there, by the interpreter.
  int MatchAt(std::string_view text, std::size_t start, const TRegexLimits& limits, TOffsets& offsets) const {
    return Interpret(text, start, PCRE_ANCHORED, limits, offsets);
  }

 private:
  struct TFree {
    void operator()(pcre* code) const { pcre_free(code); }
    void operator()(pcre_extra* study) const { pcre_free_study(study); }
  };

  void MakeNative();
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
    const int rc = pcre_jit_exec(code_.get(), &extra, text.data(), static_cast<int>(text.size()),
                                 static_cast<int>(start), 0, offsets, std::extent_v<TOffsets>, &stack);
    // Machine code counts groups for which there is no room, the interpreter does not.
    return rc == 0 && offsets[2] < 0 ? 1 : rc;
  }
  int Interpret(std::string_view text, std::size_t start, int options, const TRegexLimits& limits,
                TOffsets& offsets) const;

  std::unique_ptr<pcre, TFree> code_;
  std::unique_ptr<pcre_extra, TFree> study_;  // may be null
  bool native_ = false;                       // there is machine code
  bool tied_ = false;
  pcre_extra usual_{};  // for machine code, with the usual limits
  TStarts starts_;
  int groups_ = 0;
  std::size_t bytes_ = 0;
  const char* error_ = nullptr;
  int errorOffset_ = 0;
};

}  // namespace templatenames
