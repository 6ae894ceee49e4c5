// What became of the tokens of one call.
//
//   TNameReport report;
//   names.Resolve("<<custmer/>>_v<<version format=\"%s\"/>>.pdf", path, report);
//   for (const TNameProblem& problem : report.Failures())
//     std::cerr << problem.Token() << ": " << problem.Reason() << '\n';   // <<custmer/>>: there is no name "custmer"
//
// A failure is a token that is counted: it stays in the text as written. A note is something that resolves and is
// probably not meant; it changes neither text nor count. Docs/why-did-it-fail.md has an example of each kind.
//
// Values; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "NQ_Export.h"
#include "NQ_TString.h"

/// One failure or note.
class NQ_EXPORT TNameProblem {
 public:
  /// What it is about. Failures come first, notes from TNameProblem_KindUnknownOption on.
  enum TNameProblem_Kind : std::int32_t {
    TNameProblem_KindUndefined,  // no such name
    TNameProblem_KindNoValue,    // the name has no value, or its lookup gave none
    TNameProblem_KindFormat,     // the format is refused
    TNameProblem_KindElem,       // the element specification cannot be used
    TNameProblem_KindExtract,    // the extract specification cannot be used
    TNameProblem_KindRegex,      // the regular expression cannot be compiled, has no group, or its search failed
    TNameProblem_KindOptions,    // the formatting options cannot be used
    TNameProblem_KindUnit,       // an unknown unit or category of units
    TNameProblem_KindCycle,      // the value leads back to the name
    TNameProblem_KindCounter,    // the counter is at its end
    TNameProblem_KindLimit,      // a limit ran out: Limit() names it
    TNameProblem_KindService,    // a service failed, or could not be asked
    TNameProblem_KindLookup,     // nothing says where the value comes from
    TNameProblem_KindType,       // the value cannot be written as text
    TNameProblem_KindException,  // a handler threw

    TNameProblem_KindUnknownOption,      // a formatting option that nobody reads
    TNameProblem_KindOptionKind,         // an option of another kind than is read
    TNameProblem_KindOptionValue,        // an option with a word that is none of those possible
    TNameProblem_KindUnreadRest,         // a number or date was read in part
    TNameProblem_KindUnreadable,         // a number or date could not be read
    TNameProblem_KindUnlikely,           // a year outside 1900 to 2200, or a pattern whose letters are easily mixed up
    TNameProblem_KindUnknownZone,        // a time zone that is not known: UTC was taken
    TNameProblem_KindUnknownLanguage,    // a language that is not known: the default was taken
    TNameProblem_KindNoZone,             // a time without a zone was taken as UTC
    TNameProblem_KindUnquoted,           // an attribute without straight double quotes
    TNameProblem_KindUnknownAttribute,   // an attribute that does not exist
    TNameProblem_KindRepeatedAttribute,  // an attribute that is there twice
    TNameProblem_KindMarker,             // a stray, mixed or unclosed marker, or a token of another form
    TNameProblem_KindEmpty,              // an element or a piece that leaves nothing of a text
    TNameProblem_KindNoMatch,            // an expression that does not match
    TNameProblem_KindNotANumber,         // an index or a length that is no number
    TNameProblem_KindNoConversion,       // a format that does not write the value, or that this type does not use
  };

  /// What a problem is made of; see the accessors.
  struct TFields {
    TNameProblem_Kind kind = TNameProblem_KindUndefined;
    std::size_t begin = 0;
    std::size_t end = 0;
    NQ_TString token;
    NQ_TString key;
    std::vector<NQ_TString> within;
    NQ_TString reason;
    NQ_TString suggestion;
    NQ_TString limit;
  };

  explicit TNameProblem(TFields fields) : fields_(std::move(fields)) {}

  TNameProblem_Kind Kind() const { return fields_.kind; }
  /// A stable word for programs: "undefined", "no-value", "unread-rest".
  std::string_view KindName() const { return NameOf(fields_.kind); }
  static std::string_view NameOf(TNameProblem_Kind kind);
  bool IsFailure() const { return fields_.kind < TNameProblem_KindUnknownOption; }

  /// Where it stands in the text that was given, in UTF-16 units: the token with its markers; for a token in the value
  /// of a name, the outermost token through which it was reached.
  std::size_t Begin() const { return fields_.begin; }
  std::size_t End() const { return fields_.end; }
  /// The token as written, with its markers; of a marker that belongs to no token, the marker.
  const NQ_TString& Token() const { return fields_.token; }
  /// The token's name.
  const NQ_TString& Key() const { return fields_.key; }
  /// The names through whose values the token was reached, the outermost first.
  const std::vector<NQ_TString>& Within() const { return fields_.within; }
  /// One sentence for a template author: what was found, and what would do.
  const NQ_TString& Reason() const { return fields_.reason; }
  /// The nearest right text, to be put in place of the wrong one; empty when there is none.
  const NQ_TString& Suggestion() const { return fields_.suggestion; }
  /// The limit that ran out, as TNameLimits names it; else empty.
  const NQ_TString& Limit() const { return fields_.limit; }

 private:
  TFields fields_;
};

/// The failures and notes of one call, each in the order in which they were met.
class NQ_EXPORT TNameReport {
 public:
  /// So many of each are kept; of what comes after only the number.
  static constexpr std::size_t kMostKept = 1'000;

  /// `Failures().size()` is the number of tokens that failed, up to kMostKept.
  const std::vector<TNameProblem>& Failures() const { return failures_; }
  const std::vector<TNameProblem>& Notes() const { return notes_; }
  /// How many there were, also of those that were not kept.
  std::size_t FailureCount() const { return failureCount_; }
  std::size_t NoteCount() const { return noteCount_; }

  void Clear();
  /// Files the problem by its kind.
  void Add(TNameProblem problem);

 private:
  std::vector<TNameProblem> failures_;
  std::vector<TNameProblem> notes_;
  std::size_t failureCount_ = 0;
  std::size_t noteCount_ = 0;
};

/// A place in a text, for people and for programs that count otherwise.
struct TNamePlace {
  std::size_t line = 1;    // from 1; lines end with LF, CR or CR LF
  std::size_t column = 1;  // from 1, in characters (code points)
  std::size_t byte = 0;    // from 0, of the text's UTF-8 form
};

/// Turns positions in UTF-16 units into places. Positions that come in rising order cost time linear in the text
/// together. The text must not change meanwhile.
class NQ_EXPORT TNamePlaces {
 public:
  explicit TNamePlaces(const NQ_TString& text) : text_(text.StringView()) {}
  TNamePlace At(std::size_t unit);

 private:
  std::u16string_view text_;
  std::size_t unit_ = 0;  // the position of place_
  TNamePlace place_;
};
