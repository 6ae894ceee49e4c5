// The word that somebody probably meant.
//
//   NearestWord(u"Upercase", words);   // UPPERCASE
//
// Any thread may call.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace templatenames {

/// How many characters have to be added, dropped or replaced to make one text of the other; ASCII letters are equal in
/// either case.
inline std::size_t EditsBetween(std::u16string_view from, std::u16string_view to) {
  const auto lower = [](char16_t unit) { return unit >= u'A' && unit <= u'Z' ? unit + 32 : unit + 0; };
  std::vector<std::size_t> row(to.size() + 1);
  for (std::size_t j = 0; j <= to.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (lower(from[i]) == lower(to[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

/// The candidate that is the text but for case, else the one with the fewest edits: one for each three characters, at
/// least one and at most three. Empty when none is so near. Of equally near ones the first.
inline std::u16string_view NearestWord(std::u16string_view text, std::span<const std::u16string_view> candidates) {
  constexpr std::size_t kLongest = 64;
  if (text.empty() || text.size() > kLongest) return {};
  std::size_t most = std::clamp<std::size_t>(text.size() / 3, 1, 3);
  std::u16string_view nearest;
  for (const std::u16string_view candidate : candidates) {
    const std::size_t edits = EditsBetween(text, candidate);
    if (edits > most || edits >= std::max(text.size(), candidate.size())) continue;
    if (edits == 0) return candidate;
    if (nearest.empty() || edits < most) nearest = candidate;
    most = std::min(most, edits);
  }
  return nearest;
}

}  // namespace templatenames
