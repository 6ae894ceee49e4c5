// The nearest of a few words: "did you mean".
//
//   constexpr std::u16string_view kWords[] = {u"format", u"elem", u"extract", u"regex"};
//   NearestWord(u"formt", kWords);    // "format"
//   NearestWord(u"colour", kWords);   // empty: nothing is near
//
// For lists of up to about 1,000 short words, such as option keys, units or zones: each of them is looked at. Names of
// a registry have an index instead, see text/NearestName.h. Case never counts, and letters are compared one UTF-16
// unit at a time. Pure, any thread.
#pragma once

#include <span>
#include <string_view>

namespace templatenames {

/// The unit without its case: Unicode simple case folding.
char16_t FoldedUnit(char16_t unit);

/// More edits than this make another word of any word.
inline constexpr unsigned kMostEdits = 3;

/// How many edits a word of that length may suffer and still be recognised.
unsigned BearableEdits(std::size_t length);

/// The fewest edits that turn one text into the other: a unit inserted, deleted or replaced, or two neighbours
/// exchanged (optimal string alignment). `most`, at most kMostEdits, bounds the work to the length of the texts;
/// `most` + 1 says that it takes more. Case counts here: the texts are folded beforehand.
unsigned EditsBetween(std::u16string_view a, std::u16string_view b, unsigned most);

/// The candidate that equals the text but for case, or else is the fewest edits away, as many as BearableEdits allows;
/// of several the one with the same first letter, then the first. Empty when none is near.
std::u16string_view NearestWord(std::u16string_view text, std::span<const std::u16string_view> candidates);

}  // namespace templatenames
