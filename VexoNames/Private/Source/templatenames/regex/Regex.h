// The first capturing group of a regular expression.
//
// Patterns are PCRE's, in UTF-8 mode, with its default character tables. The input is searched once, from its
// beginning. Patterns and inputs may come from anywhere: a search ends within a few seconds, whatever they are, and is
// a MatchError if it would take longer.
//
//   NQ_TString group;
//   KeptRegex("([0-9]+)").AppendFirstGroup(u"job123x", TRegexLimits(), group);    // Matched, 123
//
// Refused as a CompileError: what PCRE refuses, and patterns of more than 16,384 bytes of UTF-8. A pattern ends at its
// first U+0000, as a C string does; an input does not. A group 1 that took no part in the match although a later group
// did gives the empty text.
//
// A TRegex is immutable; threads may use one together. Compiled patterns are kept, see KeptRegex.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "NQ_TString.h"
#include "regex/PcreProgram.h"

namespace templatenames {

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

  /// Appends group 1 when the kind is Matched; otherwise out is unchanged. The input may lie in out.
  TRegexResult AppendFirstGroup(std::u16string_view input, const TRegexLimits& limits, NQ_TString& out) const;

  /// The same for an input that is known to be ASCII: true, and where group 1 lies in it, when the kind is Matched.
  bool FindFirstGroup(std::string_view ascii, const TRegexLimits& limits, std::string_view& group) const;

  /// Memory held.
  std::size_t Bytes() const { return pattern_.size() + program_.Bytes(); }

 private:
  int Search(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  int SearchInParts(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  int SearchStartByStart(std::string_view text, const TRegexLimits& limits, TPcreProgram::TOffsets& offsets) const;
  const TPcreProgram& AnchoredProgram() const;

  std::string pattern_;
  TPcreProgram program_;
  mutable std::once_flag once_;
  mutable std::unique_ptr<const TPcreProgram> anchored_;  // the same, to match at one place; made when first needed
};

/// The compiled pattern, kept from an earlier call when possible: up to 256 patterns and 16 MiB per process, of them 16
/// per thread that are found without a lock. Keeping the pointer spares the search for the pattern too.
std::shared_ptr<const TRegex> FindRegex(const NQ_TString& pattern);

/// The same, valid until this thread's next call of FindRegex or KeptRegex.
const TRegex& KeptRegex(const NQ_TString& pattern);

struct TRegexOutcome : TRegexResult {
  NQ_TString group;
};

/// For single searches; where time counts, AppendFirstGroup does without a string of its own.
TRegexOutcome FirstGroup(const NQ_TString& pattern, const NQ_TString& input, const TRegexLimits& limits);

}  // namespace templatenames
