#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "NQ_TArray.h"
#include "NQ_TString.h"
#include "NQ_TTime.h"
#include "NQ_TURL.h"

namespace names_test {
namespace {

NQ_TAny Scalar(std::string_view text) {
  const auto after = [&](std::string_view begin) { return text.substr(begin.size()); };
  if (text == "true" || text == "false") return text == "true";
  if (text == "null") return {};
  if (text == "illegal") return NQ_TAny::Illegal();
  if (text.starts_with("url ")) return NQ_TURL(NQ_TString(after("url ")));
  if (text.starts_with("time ")) return NQ_TTime::FromMilliseconds(std::stod(std::string(after("time "))));
  const bool isNumber = !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  if (isNumber) return std::stoi(std::string(text));
  return NQ_TString(text);
}

class TReader {
 public:
  explicit TReader(std::string_view text) : text_(text) {}

  NQ_TAny Read() {
    if (Take("dict {")) return Members(NQ_TDict());
    if (Take("{")) return Members(NQ_TTree());
    if (Take("[")) return Elements();
    if (!Take("\"")) return Scalar(Until(",}]"));
    NQ_TString text(Until("\""));
    Take("\"");
    return text;
  }

  bool AtEnd() const { return text_.empty(); }

 private:
  void SkipSpaces() { text_.remove_prefix(std::min(text_.find_first_not_of(' '), text_.size())); }

  bool Take(std::string_view begin) {
    SkipSpaces();
    if (!text_.starts_with(begin)) return false;
    text_.remove_prefix(begin.size());
    return true;
  }

  std::string_view Until(std::string_view ends) {
    const std::string_view part = text_.substr(0, text_.find_first_of(ends));
    text_.remove_prefix(part.size());
    return part;
  }

  template <class Container>
  NQ_TAny Members(Container container) {
    while (!text_.empty() && !Take("}")) {
      SkipSpaces();
      const std::string_view key = Until("=");
      Take("=");
      container.Add(NQ_TString(key.substr(0, key.find_last_not_of(' ') + 1)), Read());
      Take(",");
    }
    return container;
  }

  NQ_TAny Elements() {
    NQ_TArray array;
    while (!text_.empty() && !Take("]")) {
      array.Add(Read());
      Take(",");
    }
    return array;
  }

  std::string_view text_;
};

}  // namespace

NQ_TAny Value(std::string_view text) {
  TReader reader(text);
  NQ_TAny value = reader.Read();
  EXPECT_TRUE(reader.AtEnd()) << "more than a value: " << text;
  return value;
}

NQ_TTree Tree(std::string_view text) {
  const NQ_TAny value = Value(text);
  const auto* const tree = value.As<NQ_TTree>();
  EXPECT_NE(tree, nullptr) << "not a tree: " << text;
  return tree == nullptr ? NQ_TTree() : *tree;
}

}  // namespace names_test
