// Parts of the sentences that tell a template author what was found and what would do.
//
//   Sentence(u"Transformation ", Quoted(text), u" is none of ", Choices(words));
//
// Made only where somebody asks for them: nothing here is fast. Any thread may call.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

inline std::u16string_view ViewOf(const NQ_TString& part) { return part.StringView(); }
inline std::u16string_view ViewOf(std::u16string_view part) { return part; }
inline std::u16string_view ViewOf(const char16_t* part) { return part; }

/// The parts, one after the other; each is an NQ_TString or UTF-16 text.
template <class... Parts>
NQ_TString Sentence(const Parts&... parts) {
  NQ_TString sentence;
  (sentence.Append(ViewOf(parts)), ...);
  return sentence;
}

/// The text between double quotes; of a long one its beginning and three dots.
NQ_TString Quoted(std::u16string_view text);

/// "a", "b" or "c"
NQ_TString Choices(std::span<const std::u16string_view> words);

/// In decimal.
NQ_TString NumberText(std::int64_t number);

}  // namespace templatenames
