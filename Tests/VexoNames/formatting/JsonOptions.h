// Options as JSON, the way a context file holds them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TDict.h"

namespace formatting_test {

inline NQ_TAny JsonValue(const nlohmann::json& json) {
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number_integer()) return json.get<int>();
  if (json.is_number()) return json.get<double>();
  if (json.is_string()) return NQ_TString(std::string_view(json.get_ref<const std::string&>()));
  if (json.is_array()) {
    NQ_TArray array;
    for (const auto& element : json) array.Add(JsonValue(element));
    return array;
  }
  if (!json.is_object()) return {};
  NQ_TDict dict;
  for (const auto& [key, value] : json.items()) dict[key.c_str()] = JsonValue(value);
  return dict;
}

inline NQ_TDict JsonOptions(const nlohmann::json& json) { return *JsonValue(json).As<NQ_TDict>(); }

}  // namespace formatting_test
