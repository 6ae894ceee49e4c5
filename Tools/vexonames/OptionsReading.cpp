#include "OptionsReading.h"

#include <string>

#include "NQ_TArray.h"

namespace {

NQ_TAny ReadOption(const TJsonNode& option);

NQ_TAny ReadList(const TJsonNode& list) {
  NQ_TArray elements;
  std::size_t index = 0;
  for (const TJson& element : list.Value()) {
    const std::string place = std::to_string(index++);
    const TJsonNode node(list, place, element);
    if (!element.is_object()) node.FailKind("an object");
    elements.Add(ReadFormattingOptions(node));
  }
  return elements;
}

NQ_TAny ReadOption(const TJsonNode& option) {
  const TJson& value = option.Value();
  if (value.is_string()) return option.Text();
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number_integer()) return option.Int32();
  if (value.is_array()) return ReadList(option);
  option.FailKind("a string, a boolean, an integer or a list");
}

}  // namespace

NQ_TDict ReadFormattingOptions(const TJsonNode& options) {
  NQ_TDict read;
  for (const auto& [key, value] : options.Members()) {
    const TJsonNode node(options, key, value);
    read.Add(NQ_TString(std::string_view(key)), ReadOption(node));
  }
  return read;
}
