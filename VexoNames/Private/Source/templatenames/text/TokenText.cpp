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

std::u16string_view AttributeValue(std::u16string_view text, std::u16string_view opening) {
  const std::size_t found = text.find(opening);
  if (found == kNone) return {};
  const std::u16string_view rest = text.substr(found + opening.size());
  return rest.substr(0, rest.find(u'"'));
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
  split.format = AttributeValue(text, u"format=\"");
  split.elem = AttributeValue(text, u"elem=\"");
  split.extract = AttributeValue(text, u"extract=\"");
  split.regex = AttributeValue(text, u"regex=\"");
  return split;
}

}  // namespace templatenames
