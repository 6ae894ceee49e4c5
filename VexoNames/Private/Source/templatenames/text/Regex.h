// The first capturing group of a regular expression.
//
// Patterns are PCRE's, in UTF-8 mode, with its default character tables. The input is searched once, from its
// beginning. Patterns and inputs may come from anywhere: every search ends.
//
//   NQ_TString group;
//   KeptRegex(u"([0-9]+)").AppendFirstGroup(u"job123x", TRegexLimits(), group);    // Matched, 123
//
// A compiled pattern is immutable; threads may use one together. Compiled patterns are kept, see KeptRegex.
//
// Refused as a CompileError: what PCRE refuses, and patterns of more than 16,384 bytes of UTF-8. A pattern ends at its first U+0000, as a C string does; an input does not.
//
// A group 1 that took no part in the match although a later group did gives the empty text.
#pragma once

#include <pcre.h>

#include <cstddef>
#include <memory>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

/// What one search may cost. A search that would exceed a limit is a MatchError with PCRE's code for that limit.
struct TRegexLimits {
  /// Steps of the matcher at one starting position. A search of a long input, with its many starting positions, gets a
  /// thousand times as many in all, evenly spread: about a second of work when it is a million.
  unsigned long match = 1'000'000;
  /// Depth of the matcher without compiled code. The stack that the thread has left bounds it too.
  unsigned long recursion = 10'000;
};

struct TRegexResult {
  enum class TKind { CompileError, NoMatch, MatchError, NoGroup, Matched };

  TKind kind = TKind::NoMatch;
  int code = 0;                     // PCRE's code of a MatchError, below −1
  int errorOffset = 0;              // of a CompileError, in bytes of the pattern
  const char* errorText = nullptr;  // of a CompileError; static
};

class TRegex {
 public:
  /// Never fails: what is wrong with the pattern is told by each search.
  explicit TRegex(std::u16string_view pattern);
  TRegex(const TRegex&) = delete;
  TRegex& operator=(const TRegex&) = delete;

  /// Appends group 1 when the kind is Matched; otherwise out is unchanged. The input may lie in out.
  TRegexResult AppendFirstGroup(std::u16string_view input, const TRegexLimits& limits, NQ_TString& out) const;

  /// Memory held.
  std::size_t Bytes() const { return bytes_; }

 private:
  struct TFree {
    void operator()(pcre* code) const { pcre_free(code); }
    void operator()(pcre_extra* study) const { pcre_free_study(study); }
  };

  int Search(std::string_view subject, const TRegexLimits& limits, int (&offsets)[6]) const;
  int SearchInterpreted(std::string_view subject, const TRegexLimits& limits, int (&offsets)[6]) const;

  std::unique_ptr<pcre, TFree> code_;         // null: the pattern is refused
  std::unique_ptr<pcre_extra, TFree> study_;  // may be null
  bool native_ = false;                       // there is machine code
  int groups_ = 0;
  std::size_t bytes_ = 0;
  int errorOffset_ = 0;
  const char* errorText_ = nullptr;
};

struct TRegexOutcome : TRegexResult {
  NQ_TString group;
};

/// The compiled pattern, kept from an earlier call when possible: 256 patterns and 16 MiB per process, of them 16 per
/// thread that are found without a lock. Keeping the pointer spares the search for the pattern too.
std::shared_ptr<const TRegex> FindRegex(const NQ_TString& pattern);

/// The same, valid until this thread's next call of it.
const TRegex& KeptRegex(const NQ_TString& pattern);

TRegexOutcome FirstGroup(const NQ_TString& pattern, const NQ_TString& input, const TRegexLimits& limits);

}  // namespace templatenames
