// Two of the stages that cut a value down: one element of a separated list, and a piece by position.
//
// Each stage has a specification, "_,1" (the separator, a comma, the index) or "2,3" (the start, a comma, the
// length), that is read first and then applied:
//
//   const TElemSpec spec = ParseElem(u"_,1");
//   if (spec.error == TStageError::None) ...
//   Element(u"job_0815_cover", spec.separator, spec.index.value).text;   // 0815
//
// StageFindings.h has sentences for what went wrong, and for what went otherwise than was probably meant.
//
// Positions count UTF-16 units. Nothing is copied: results lie in the input, separators in what was read. The time
// taken is linear in the input, whatever the separator and the index. Nothing here fails otherwise than by the returned
// error; any thread may call.
#pragma once

#include <cstdint>
#include <string_view>

namespace templatenames {

enum class TStageError : std::uint8_t {
  None,
  ElemSyntax,     // no comma, or nothing before the last one
  ElemIndex,      // the index is negative
  ExtractIndex,   // the start is negative
  ExtractSyntax,  // no comma, or nothing before the first one
};

/// A number as a specification has it.
struct TStageNumber {
  enum class TKind : std::uint8_t {
    Whole,       // the text is the number, but for white space before it
    Front,       // more follows the number, and was ignored
    Missing,     // there is none; it counts as 0
    OutOfRange,  // too large or too small; the nearest int counts
  };

  int value = 0;
  TKind kind = TKind::Missing;
};

/// The number at the front of the text, after white space and a sign, as C's atoi reads it, 0 when there is none. A
/// number out of range, for which atoi promises nothing, gives the nearest int.
TStageNumber ReadStageNumber(std::u16string_view text);

/// What the element stage is to do; without meaning when there is an error.
struct TElemSpec {
  TStageError error = TStageError::None;
  TStageNumber index;
  std::u16string_view separator;
};

/// Reads a specification of the element stage; the separator, which may hold commas itself, ends at the last comma.
TElemSpec ParseElem(std::u16string_view spec);

struct TElement {
  std::u16string_view text;  // empty when there is no such piece
  bool exists = false;
  int pieces = 0;  // how many there are; only known when there is no such piece
};

/// The piece with that index, counted from 0, of the input cut at every occurrence of the separator, which is not
/// empty. The search for the next occurrence goes on one unit after the beginning of the one before: of a longer
/// separator, all but the first unit belongs to the piece that follows it.
TElement Element(std::u16string_view input, std::u16string_view separator, int index);

/// What the extract stage is to do; without meaning when there is an error. A negative length means: to the end.
struct TExtractSpec {
  TStageError error = TStageError::None;
  TStageNumber start;
  TStageNumber length;
};

/// Reads a specification of the extract stage.
TExtractSpec ParseExtract(std::u16string_view spec);

struct TExtract {
  std::u16string_view text;
  bool pastEnd = false;  // the start lies at the end or past it: nothing is left
};

/// At most length units from start, which is not negative, on; to the end when length is negative.
TExtract Extract(std::u16string_view input, int start, int length);

}  // namespace templatenames
