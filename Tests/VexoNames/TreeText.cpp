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

/// Takes the beginning, and spaces before it, if the text begins so.
bool Take(std::string_view& text, std::string_view begin) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (!text.starts_with(begin)) return false;
  text.remove_prefix(begin.size());
  return true;
}

std::string_view TakeUntil(std::string_view& text, std::string_view ends) {
  const std::string_view part = text.substr(0, text.find_first_of(ends));
  text.remove_prefix(part.size());
  return part;
}

NQ_TAny Read(std::string_view& text);

template <class Container>
NQ_TAny ReadMembers(std::string_view& text) {
  Container container;
  for (; !text.empty() && !Take(text, "}"); Take(text, ",")) {
    const std::string_view key = TakeUntil(text, "=");
    Take(text, "=");
    container.Add(NQ_TString(key.substr(0, key.find_last_not_of(' ') + 1)), Read(text));
  }
  return container;
}

NQ_TAny Read(std::string_view& text) {
  if (Take(text, "dict {")) return ReadMembers<NQ_TDict>(text);
  if (Take(text, "{")) return ReadMembers<NQ_TTree>(text);
  if (Take(text, "[")) {
    NQ_TArray array;
    for (; !text.empty() && !Take(text, "]"); Take(text, ",")) array.Add(Read(text));
    return array;
  }
  if (!Take(text, "\"")) return Scalar(TakeUntil(text, ",}]"));
  NQ_TString quoted(TakeUntil(text, "\""));
  Take(text, "\"");
  return quoted;
}

}  // namespace

NQ_TAny Value(std::string_view text) {
  std::string_view rest = text;
  NQ_TAny value = Read(rest);
  EXPECT_EQ(rest, "") << "more than a value: " << text;
  return value;
}

NQ_TTree Tree(std::string_view text) {
  const NQ_TAny value = Value(text);
  const auto* const tree = value.As<NQ_TTree>();
  EXPECT_NE(tree, nullptr) << "not a tree: " << text;
  return tree == nullptr ? NQ_TTree() : *tree;
}

}  // namespace names_test
