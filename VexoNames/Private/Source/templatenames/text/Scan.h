// Where the tokens of a template are.
//
//   template  = { text | token } ; a token is   begin-marker token-text end-marker
//   markers   = "<<" and "/>>" when a "<<" begins at or before the first "/>>", else "<" and "/>"
//
// A token ends at the first end marker after the previous token and begins at the last begin marker before that end
// marker. An end marker without a begin marker after the previous token is a syntax error: the scan stops, and the rest
// of the template is text.
//
//   TScanner scanner(text, ChooseMarkers(text));
//   for (TScannedToken token; scanner.Next(token);) ...
//   // scanner.Done() .. end of text is what follows the last token
//
// Scanning knows nothing of the registry, keeps no memory and takes time linear in the text.
#pragma once

#include <cstddef>
#include <string_view>

namespace templatenames {

/// A pair of markers.
struct TMarkers {
  std::u16string_view begin;
  std::u16string_view end;
};

inline constexpr TMarkers kSingleMarkers{u"<", u"/>"};
inline constexpr TMarkers kDoubleMarkers{u"<<", u"/>>"};
/// At the very beginning of a string it makes the rest literal text.
inline constexpr std::u16string_view kLiteralMarker = u"<<CDATA/>>";

TMarkers ChooseMarkers(std::u16string_view text);

/// Whether resolving the text can change it: it begins with the literal marker or holds an end marker.
bool NeedsResolving(std::u16string_view text);

/// One token, as positions in the scanned text.
struct TScannedToken {
  std::size_t literal = 0;    // begin of the text between the previous token and this one
  std::size_t begin = 0;      // of the begin marker, the end of that text
  std::size_t textBegin = 0;  // of the token text
  std::size_t textEnd = 0;    // of the token text
  std::size_t end = 0;        // after the end marker

  /// Whether the markers overlap, so that no text stands between them. Markers of the caller's may; the usual do not.
  bool Overlaps() const { return textBegin > textEnd; }
  /// What stands between the markers, in the scanned text.
  std::u16string_view TextIn(std::u16string_view text) const {
    return Overlaps() ? std::u16string_view() : text.substr(textBegin, textEnd - textBegin);
  }
};

class TScanner {
 public:
  /// Neither is copied. An empty end marker finds no token.
  TScanner(std::u16string_view text, const TMarkers& markers) : text_(text), markers_(markers) {}

  /// The next token; false when there is none, at the end of the text or after a syntax error.
  bool Next(TScannedToken& token);
  /// End of the last token: what follows is text once `Next` has returned false.
  std::size_t Done() const { return done_; }
  /// Whether an end marker without a begin marker stopped the scan.
  bool SyntaxError() const { return syntaxError_; }

 private:
  std::u16string_view text_;
  TMarkers markers_;
  std::size_t done_ = 0;
  bool syntaxError_ = false;
};

}  // namespace templatenames
