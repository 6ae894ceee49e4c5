// What is odd about a template as it is written: it resolves, and probably not to what its author meant.
//
//   std::vector<TSyntaxNote> notes;
//   NoteTemplateSyntax(u"{{job}}_v1.pdf", notes);                        // marker, 0 to 7, suggestion <<job/>>
//   NoteTokenSyntax(u"job formt=\"%s\"", kDoubleMarkers, 2, notes);      // unknown attribute, <<job format="%s"/>>
//
// What is noted is what plainly looks like a mistake: texts with "<" or braces of another meaning, as XML or code, get
// no note. Nothing is known of names here: whether a name exists is not judged. Pure, any thread; takes time linear in
// the text.
#pragma once

#include <string_view>
#include <vector>

#include "TNameReport.h"
#include "text/Scan.h"

namespace templatenames {

struct TSyntaxNote {
  TNameProblem::TNameProblem_Kind kind;
  std::size_t begin;  // in the template
  std::size_t end;
  NQ_TString reason;      // one sentence for a template author
  NQ_TString suggestion;  // what to put in place of begin to end, or empty
};

/// Of one token: attributes without straight double quotes, of other names than there are, or given twice. `at` is
/// where the token text stands in the template; the notes are about the whole token, and all suggest the same: the
/// token without its mistakes. Looks at the first 20 attributes.
void NoteTokenSyntax(std::u16string_view tokenText, const TMarkers& markers, std::size_t at,
                     std::vector<TSyntaxNote>& notes);

/// Of what lies outside tokens: markers that are stray, mixed or without an end, and tokens of another form. Notes come
/// in the order of their places, TNameReport::kMostKept at most.
void NoteTemplateSyntax(std::u16string_view text, std::vector<TSyntaxNote>& notes);

}  // namespace templatenames
