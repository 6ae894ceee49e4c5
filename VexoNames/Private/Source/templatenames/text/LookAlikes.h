// Plain text that looks like a token and is none.
//
//   {{job}}  ${job}  <<job>>  <</job>>  <<job/ >>  <job\>     of another form
//   <<job/>  <job/>                                           with single markers, where the template has double ones
//   <<job                                                     without an end
//
// Judged strictly: between the markers stands a name (a letter, then letters, digits and "_", and inside also ".", ":",
// "-" and "%"), perhaps with attributes. Shifts, streams, here-documents, comparisons, XML and HTML are none.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace templatenames {

enum class TLookAlikeForm { Other, Single, Mixed, Unclosed };

struct TLookAlike {
  TLookAlikeForm form = TLookAlikeForm::Other;
  std::size_t begin = 0;
  std::size_t end = 0;
  std::u16string_view tokenText;
  bool isDouble = true;  // it rather has double markers
};

/// What of a template decides whether something looks like a token in it.
struct TLookAlikeSetting {
  bool hasDouble = false;  // it has tokens with double markers
  bool isMarkup = false;   // it holds XML or HTML
};

bool LooksLikeMarkup(std::u16string_view text);

/// The first look-alike that begins at or after `from`. All of the text after the last token is looked at, up to the
/// end of `text`; what stands before `from` is only seen as what it follows on.
std::optional<TLookAlike> FindLookAlike(std::u16string_view text, std::size_t from, const TLookAlikeSetting& setting);

/// The end of a token text that begins there: a name, perhaps with attributes; `at` itself when there is none.
std::size_t TokenTextEnd(std::u16string_view text, std::size_t at);

}  // namespace templatenames
