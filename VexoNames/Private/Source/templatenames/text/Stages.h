// Two of the stages that cut a value down: one element of a separated list, and a piece by position.
//
// Each stage has a specification, "_,1" (the separator, a comma, the index) or "2,3" (the start, a comma, the
// length), that is read first and then applied:
//
//   std::u16string_view separator;
//   int index = 0;
//   if (ParseElem(u"_,1", separator, index) == TStageError::None) ...
//   Element(u"job_0815_cover", separator, index);   // 0815
//
// Positions count UTF-16 units. Nothing is copied: results lie in the input, separators in what was read.
// The time taken is linear in the input, whatever the separator and the index. Nothing here fails otherwise
// than by the returned error; any thread may call.
#pragma once

#include <string_view>

namespace templatenames {

enum class TStageError {
  None,
  ElemSyntax,     // no comma, or nothing before the last one
  ElemIndex,      // the index is negative
  ExtractIndex,   // the start is negative
  ExtractSyntax,  // no comma, or nothing before the first one
};

/// Reads a specification of the element stage; the separator, which may hold commas itself, ends at the last
/// comma. On failure the outputs are unchanged.
TStageError ParseElem(std::u16string_view spec, std::u16string_view& separator, int& index);

/// The piece with that index, counted from 0, of the input cut at every occurrence of the separator, which is
/// not empty; the empty text when there are fewer pieces. The search for the next occurrence goes on one unit
/// after the beginning of the one before: of a longer separator, all but the first unit belongs to the piece
/// that follows it.
std::u16string_view Element(std::u16string_view input, std::u16string_view separator, int index);

/// Reads a specification of the extract stage. A negative length means: to the end. On failure the outputs
/// are unchanged.
TStageError ParseExtract(std::u16string_view spec, int& start, int& length);

/// At most length units from start, which is not negative, on; to the end when length is negative. A start
/// past the end gives the empty text.
std::u16string_view Extract(std::u16string_view input, int start, int length);

/// The number at the front of the text, after white space and a sign, as C's atoi reads it; 0 when there is
/// none. A number out of range, for which atoi promises nothing, gives the nearest int.
int Atoi(std::u16string_view text);

}  // namespace templatenames
