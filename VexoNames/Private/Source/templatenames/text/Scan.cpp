#include "text/Scan.h"

#include "text/Find.h"

namespace templatenames {

TMarkers ChooseMarkers(std::u16string_view text) {
  const std::size_t end = FindText(text, kDoubleMarkers.end, 0);
  if (end == kNone) return kSingleMarkers;
  return FindTextBackward(text, kDoubleMarkers.begin, end, 0) == kNone ? kSingleMarkers : kDoubleMarkers;
}

bool NeedsResolving(std::u16string_view text) { return FindText(text, kSingleMarkers.end, 0) != kNone; }

bool TScanner::Next(TScannedToken& token) {
  if (syntaxError_ || markers_.end.empty()) return false;
  const std::size_t end = FindText(text_, markers_.end, done_);
  if (end == kNone) return false;
  // An empty begin marker begins everywhere, last of all at the end marker itself.
  const std::size_t begin = markers_.begin.empty() ? end : FindTextBackward(text_, markers_.begin, end, done_);
  if (begin == kNone) {
    syntaxError_ = true;
    return false;
  }
  const std::size_t textBegin = begin + markers_.begin.size();
  token = {done_, begin, textBegin, end, end + markers_.end.size()};
  done_ = token.end;
  return true;
}

}  // namespace templatenames
