// Objects of a context file, read by a table: one row per key that they may have.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "JsonNode.h"
#include "Suggest.h"

template <class TTarget>
struct TKeyRow {
  const char* key;
  /// Checks the value, and puts it where it belongs.
  void (*read)(const TJsonNode& value, TTarget& target);
};

/// Reads all members in the order of the file. A key that is in no row is refused.
template <class TTarget, std::size_t kRows>
void ReadMembers(const TJsonNode& object, const TKeyRow<TTarget> (&rows)[kRows], TTarget& target) {
  for (const auto& [key, value] : object.Members()) {
    const TJsonNode node(object, key, value);
    const TKeyRow<TTarget>* found = nullptr;
    for (const auto& row : rows) {
      if (key == row.key) found = &row;
    }
    if (found == nullptr) {
      std::vector<NQ_TString> known;
      for (const auto& row : rows) known.emplace_back(row.key);
      node.Fail("there is no such key" + Suggestion(NQ_TString(std::string_view(key)), known));
    }
    found->read(node, target);
  }
}
