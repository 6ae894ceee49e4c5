#include "JsonValue.h"

#include <limits>
#include <optional>
#include <string>

#include "NQ_TArray.h"
#include "NQ_TTree.h"
#include "TimeText.h"

namespace {

NQ_TAny ReadNumber(const TJson& value) {
  using TLimits = std::numeric_limits<std::int32_t>;
  const auto number = value.get<double>();
  if (!value.is_number_integer() || number < TLimits::min() || number > TLimits::max()) return number;
  return value.get<std::int32_t>();
}

NQ_TAny ReadArray(const TJsonNode& node) {
  NQ_TArray elements;
  for (const TJson& element : node.Value()) {
    const std::string place = std::to_string(elements.Count());
    elements.Add(ReadValue(TJsonNode(node, place, element)));
  }
  return elements;
}

NQ_TAny ReadObject(const TJsonNode& node) {
  if (node.Wrapped("$url") != nullptr) return ReadUrl(node);
  if (node.Wrapped("$time") != nullptr) return ReadTime(node);
  NQ_TTree tree;
  for (const auto& [key, value] : node.Members())
    tree.Add(NQ_TString(std::string_view(key)), ReadValue(TJsonNode(node, key, value)));
  return tree;
}

}  // namespace

NQ_TAny ReadValue(const TJsonNode& node) {
  const TJson& value = node.Value();
  if (value.is_string()) return node.Text();
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number()) return ReadNumber(value);
  if (value.is_array()) return ReadArray(node);
  return value.is_object() ? ReadObject(node) : NQ_TAny();
}

NQ_TURL ReadUrl(const TJsonNode& node) {
  const TJson* const wrapped = node.Wrapped("$url");
  const TJson& text = wrapped == nullptr ? node.Value() : *wrapped;
  if (!text.is_string()) node.FailKind("a URL as a string or {\"$url\": ...}");
  const NQ_TString url = TJsonNode(node, "$url", text).Text();
  if (url.Find("://") <= 0) node.Fail("expected a URL such as file://host/path");
  return NQ_TURL(url);
}

NQ_TTime ReadTime(const TJsonNode& node) {
  std::optional<NQ_TTime> time;
  const TJson* const wrapped = node.Wrapped("$time");
  const TJson& given = wrapped == nullptr ? node.Value() : *wrapped;
  if (wrapped != nullptr && given.is_string()) {
    time = ParseTime(given.get_ref<const std::string&>());
  } else if (given.is_number()) {
    const auto milliseconds = given.get<double>();
    if (IsSensibleTime(milliseconds)) time = NQ_TTime::FromMilliseconds(milliseconds);
  } else {
    node.FailKind("milliseconds or {\"$time\": ...}");
  }
  if (!time) node.Fail("expected a time such as {\"$time\": \"2026-05-17T13:05:00+02:00\"}");
  return *time;
}
