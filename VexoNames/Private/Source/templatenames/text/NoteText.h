// The sentences of notes, put together from texts of the program and of the template.
#pragma once

#include <initializer_list>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

inline NQ_TString Sentence(std::initializer_list<std::u16string_view> parts) {
  NQ_TString sentence;
  for (const std::u16string_view part : parts) sentence.Append(part);
  return sentence;
}

/// A piece of a template for a sentence: what is too long to be read is cut.
inline NQ_TString Quoted(std::u16string_view text) {
  constexpr std::size_t kReadable = 80;
  return Sentence({u"\"", text.substr(0, kReadable), text.size() > kReadable ? u"...\"" : u"\""});
}

}  // namespace templatenames
