#include "formatting/text/ReplaceText.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "formatting/text/Rewriting.h"
#include "text/Find.h"

namespace templatenames {
namespace {

// Up to this length a text is compared anew at every place: a bounded number of steps for each character.
constexpr std::size_t kShort = 16;

// Finds a text in another.
class TFinder {
 public:
  TFinder(std::u16string_view text, std::u16string_view find) : text_(text), find_(find) {
    if (find.size() > kShort && find.size() <= text.size()) FillBorders();
  }

  /// The first occurrence at or after that place, or kNone.
  std::size_t Next(std::size_t from) const {
    if (find_.empty() || find_.size() > text_.size() - from) return kNone;
    return borders_.empty() ? FindText(text_, find_, from) : FindByBorders(from);
  }

 private:
  // Knuth, Morris and Pratt: borders_[i] is the length of the longest proper prefix of the text that also ends its
  // first i units.
  void FillBorders() {
    borders_.resize(find_.size() + 1);
    std::uint32_t border = 0;
    for (std::size_t i = 1; i < find_.size(); ++i) {
      while (border > 0 && find_[i] != find_[border]) border = borders_[border];
      if (find_[i] == find_[border]) ++border;
      borders_[i + 1] = border;
    }
  }

  std::size_t FindByBorders(std::size_t from) const {
    std::size_t matched = 0;
    for (std::size_t at = from; at < text_.size(); ++at) {
      while (matched > 0 && text_[at] != find_[matched]) matched = borders_[matched];
      if (text_[at] == find_[matched]) ++matched;
      if (matched == find_.size()) return at + 1 - matched;
    }
    return kNone;
  }

  std::u16string_view text_;
  std::u16string_view find_;
  std::vector<std::uint32_t> borders_;  // empty: the text is short
};

}  // namespace

bool ReplaceText(std::u16string_view find, std::u16string_view replace, std::size_t most, NQ_TString& value) {
  const std::u16string_view text = value.StringView();
  const TFinder finder(text, find);
  std::size_t found = finder.Next(0);
  if (found == kNone) return true;
  TRewriting rewriting(most, value);
  std::size_t done = 0;
  for (; found != kNone && !rewriting.TooLong(); found = finder.Next(done)) {
    rewriting.Add(text.substr(done, found - done));
    rewriting.Add(replace);
    done = found + find.size();
  }
  rewriting.Add(text.substr(done));
  return rewriting.Finish();
}

}  // namespace templatenames
