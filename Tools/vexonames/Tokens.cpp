#include "Tokens.h"

TScan ScanTemplate(std::u16string_view text) {
  constexpr auto kNone = std::u16string_view::npos;
  TScan scan{u"<", u"/>", {}, {}};
  if (text.starts_with(u"<<CDATA/>>")) return scan;
  const std::size_t firstDouble = text.find(u"/>>");
  if (firstDouble != kNone && text.rfind(u"<<", firstDouble) != kNone) {
    scan.beginMarker = u"<<";
    scan.endMarker = u"/>>";
  }
  std::size_t done = 0;
  for (auto end = text.find(scan.endMarker); end != kNone; end = text.find(scan.endMarker, done)) {
    const std::size_t begin = text.rfind(scan.beginMarker, end);
    if (begin == kNone || begin < done) {
      scan.strayEnd = end;
      break;
    }
    done = end + scan.endMarker.size();
    scan.tokens.push_back({begin, begin + scan.beginMarker.size(), end, done});
  }
  return scan;
}
