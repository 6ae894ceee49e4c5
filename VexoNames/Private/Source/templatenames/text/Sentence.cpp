#include "text/Sentence.h"

#include <unicode/utf16.h>

#include <cstddef>
#include <string>

namespace templatenames {

NQ_TString Quoted(std::u16string_view text) {
  constexpr std::size_t kMostShown = 60;  // a sentence stays one
  if (text.size() <= kMostShown) return Sentence(u"\"", text, u"\"");
  const std::size_t shown = U16_IS_LEAD(text[kMostShown - 1]) ? kMostShown - 1 : kMostShown;
  return Sentence(u"\"", text.substr(0, shown), u"...\"");
}

NQ_TString Choices(std::span<const std::u16string_view> words) {
  NQ_TString choices;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) choices.Append(ViewOf(i + 1 == words.size() ? u" or " : u", "));
    choices.Append(Quoted(words[i]));
  }
  return choices;
}

NQ_TString NumberText(std::int64_t number) { return NQ_TString(std::to_string(number)); }

}  // namespace templatenames
