// The first capturing group of a regular expression.
//
// Patterns are PCRE's, in UTF-8 mode, with its default character tables. The input is searched once, from its
// beginning, and the result is that of a plain pcre_exec with room for one group.
//
//   NQ_TString group;
//   KeptRegex("([0-9]+)").AppendFirstGroup(u"job123x", TRegexLimits(), group);    // Matched, 123
//
// Patterns and inputs may come from anywhere. A search that exceeds the limits on steps or depth is a MatchError; one
// that goes on when the limits' clock says that the time is over is TimeSpent. The clock is asked between parts of a
// search that take a few seconds at most. Only a tied pattern (see Pattern.h) cannot be cut into parts: on a long
// input, it gets so few steps that it ends soon.
//
// Refused as a CompileError: what PCRE refuses, and patterns of more than 16,384 bytes of UTF-8. A pattern ends at its
// first U+0000, as a C string does; an input does not. Throws std::bad_alloc when there is no memory.
//
// A TRegex is immutable; threads may use one together. Compiled patterns are kept, see KeptRegex.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "NQ_TString.h"
#include "regex/PcreProgram.h"

namespace templatenames {

struct TRegexResult {
  enum class TKind {
    CompileError,
    NoMatch,
    MatchError,
    TimeSpent,
    NoGroup,  // a match, with pcre_exec's code 1: group 1 took no part
    Matched,  // with another code; a group 1 that took no part gives the empty text
  };

  TKind kind = TKind::NoMatch;
  int code = 0;                     // PCRE's code of a MatchError, below −1
  int errorOffset = 0;              // of a CompileError, in bytes of the pattern's UTF-8 form
  const char* errorText = nullptr;  // of a CompileError; static
  int groups = 0;                   // of NoGroup: how many the pattern has
};

class TRegex {
 public:
  /// Throws only for lack of memory: what is wrong with the pattern is told by each search.
  explicit TRegex(std::u16string_view pattern);
  bool IsCompiled() const { return program_.Error() == nullptr; }

  /// Appends group 1 when the kind is Matched; otherwise out is unchanged. The input may lie in out.
  TRegexResult AppendFirstGroup(std::u16string_view input, const TRegexLimits& limits, NQ_TString& out) const;

  /// The same for an input that is known to be ASCII: true, and where group 1 lies in it, when the kind is Matched.
  bool FindFirstGroup(std::string_view ascii, const TRegexLimits& limits, std::string_view& group) const;

  /// Memory held.
  std::size_t Bytes() const { return pattern_.size() + program_.Bytes(); }

 private:
  int Search(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  int SearchInParts(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  int SearchAtOneGo(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  int SearchStartByStart(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  int MatchAt(std::string_view text, std::size_t at, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  const TPcreProgram& AnchoredProgram() const;

  std::string pattern_;
  TPcreProgram program_;
  std::uint64_t drag_;  // so many times as long as one of machine code takes a step of the program, about
  mutable std::once_flag once_;
  mutable std::unique_ptr<const TPcreProgram> anchored_;  // the same, to match at one place; made when first needed
};

/// The compiled pattern, kept from an earlier call when possible: up to 256 patterns and 16 MiB per process, of them 16
/// per thread that are found without a lock, those with a CompileError among them. Keeping the pointer spares the
/// search for the pattern too. Compiling takes up to a second, whatever the limits of a search are.
std::shared_ptr<const TRegex> FindRegex(const NQ_TString& pattern);

/// The same, valid until this thread's next call of FindRegex or KeptRegex.
const TRegex& KeptRegex(const NQ_TString& pattern);

struct TRegexOutcome : TRegexResult {
  NQ_TString group;
};

/// The name in TNameLimits of the limit that a search exceeded; empty when it exceeded none.
std::string_view ExceededLimit(const TRegexResult& result);

/// For single searches; where time counts, AppendFirstGroup does without a string of its own.
TRegexOutcome FirstGroup(const NQ_TString& pattern, const NQ_TString& input, const TRegexLimits& limits);

}  // namespace templatenames
