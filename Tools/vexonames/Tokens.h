// Where the tokens of a template are, so that a failed one can be shown and tried by itself.
//
// The engine finds tokens by itself; this follows its rules: a template uses "<<" and "/>>" when a "<<" begins at or
// before the first "/>>", else "<" and "/>"; a token ends at the first end marker after the one before it and begins at
// the last begin marker before that; an end marker without a begin marker stops the search.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

/// Positions in the template.
struct TTokenPlace {
  std::size_t begin = 0;      // of the begin marker
  std::size_t textBegin = 0;  // of what stands between the markers
  std::size_t textEnd = 0;
  std::size_t end = 0;  // after the end marker
};

struct TScan {
  std::u16string_view beginMarker;
  std::u16string_view endMarker;
  std::vector<TTokenPlace> tokens;
  std::optional<std::size_t> strayEnd;  // of the end marker that has no begin marker

  bool IsDouble() const { return beginMarker.size() == 2; }
};

/// Neither the scan nor its views keep the text. A text that begins with "<<CDATA/>>" has no tokens.
TScan ScanTemplate(std::u16string_view text);
