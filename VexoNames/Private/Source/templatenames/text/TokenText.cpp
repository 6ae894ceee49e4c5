#include "text/TokenText.h"

#include "text/Find.h"

namespace templatenames {
namespace {

// The last character of the key, given the position of the first "=": the attribute's name ends there, and the key
// before the spaces in front of that name.
std::size_t KeyEndBefore(std::u16string_view text, std::size_t equals, std::size_t begin) {
  std::size_t end = equals;
  while (end > begin && text[end] != u' ') --end;
  while (end > begin && text[end] == u' ') --end;
  return end;
}

struct TAttribute {
  std::u16string_view name;
  std::u16string_view TTokenText::*value;
};

constexpr TAttribute kAttributes[] = {
    {kAttributeNames[0], &TTokenText::format},
    {kAttributeNames[1], &TTokenText::elem},
    {kAttributeNames[2], &TTokenText::extract},
    {kAttributeNames[3], &TTokenText::regex},
};

// Takes the attribute whose name ends before the "=" at that position, unless it occurred before.
void TakeAttribute(std::u16string_view text, std::size_t equals, TTokenText& split) {
  for (const auto& [name, value] : kAttributes) {
    if ((split.*value).data() != nullptr || !text.substr(0, equals).ends_with(name)) continue;
    const std::u16string_view rest = text.substr(equals + 2);
    split.*value = rest.substr(0, rest.find(u'"'));
  }
}

}  // namespace

TTokenText SplitTokenText(std::u16string_view text) {
  TTokenText split;
  std::size_t begin = 0;
  while (begin < text.size() && text[begin] == u' ') ++begin;
  const std::size_t equals = text.find(u'=');
  if (equals == kNone) {
    std::size_t end = text.size();
    while (end > begin + 1 && text[end - 1] == u' ') --end;
    split.key = text.substr(begin, end - begin);
    return split;
  }
  split.key = text.substr(begin, KeyEndBefore(text, equals, begin) - begin + 1);
  for (std::size_t at = equals; at != kNone; at = text.find(u'=', at + 1))
    if (text.substr(at + 1).starts_with(u'"')) TakeAttribute(text, at, split);
  return split;
}

}  // namespace templatenames
