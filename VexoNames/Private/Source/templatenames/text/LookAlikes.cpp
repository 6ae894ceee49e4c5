#include "text/LookAlikes.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "text/Find.h"
#include "text/TokenText.h"

namespace templatenames {
namespace {

bool IsLetter(char16_t unit) { return u_isalpha(unit) != 0; }
bool IsNameUnit(char16_t unit) { return u_isalnum(unit) != 0 || unit == u'_'; }
bool IsJoint(char16_t unit) { return unit == u'.' || unit == u':' || unit == u'-' || unit == u'%'; }
bool IsBlank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

char16_t UnitAt(std::u16string_view text, std::size_t at) { return at < text.size() ? text[at] : u'\0'; }
char16_t UnitBefore(std::u16string_view text, std::size_t at) { return at > 0 ? text[at - 1] : u'\0'; }

std::size_t SkipBlanks(std::u16string_view text, std::size_t at) {
  while (IsBlank(UnitAt(text, at))) ++at;
  return at;
}

std::size_t NameEnd(std::u16string_view text, std::size_t at) {
  if (!IsLetter(UnitAt(text, at))) return at;
  std::size_t end = at;
  for (; end < text.size() && (IsNameUnit(text[end]) || IsJoint(text[end])); ++end) {
  }
  while (IsJoint(text[end - 1])) --end;
  return end;
}

// The end of the attribute that begins there, or `at`.
std::size_t AttributeEnd(std::u16string_view text, std::size_t at) {
  for (const std::u16string_view name : kAttributeNames) {
    if (!text.substr(at).starts_with(name) || !text.substr(at + name.size()).starts_with(u"=\"")) continue;
    const std::size_t close = text.find_first_of(u"\"\n", at + name.size() + 2);
    if (close != kNone && text[close] == u'"') return close + 1;
  }
  return at;
}

/// What may stand where a token would end: "/", "\" or nothing, and ">" up to two times.
struct TClosing {
  explicit TClosing(std::u16string_view text, std::size_t at) {
    at = SkipBlanks(text, at);
    if (UnitAt(text, at) == u'/' || UnitAt(text, at) == u'\\') slash = text[at++];
    const std::size_t angle = SkipBlanks(text, at);
    isSpaced = angle != at;
    for (end = angle; angles < 2 && UnitAt(text, end) == u'>'; ++end) ++angles;
  }

  char16_t slash = 0;
  bool isSpaced = false;  // between "/" and ">"
  int angles = 0;
  std::size_t end = 0;
};

// HTML elements without content, whose tags end as single-marker tokens do.
bool IsHtmlTag(std::u16string_view name) {
  constexpr std::u16string_view kTags[] = {u"br",  u"hr",   u"img",   u"input", u"meta",   u"link",  u"area",
                                           u"col", u"base", u"embed", u"wbr",   u"source", u"track", u"param"};
  return std::ranges::find(kTags, name) != std::end(kTags);
}

// "{{name}}" or "${name}".
std::optional<TLookAlike> BracesAt(std::u16string_view text, std::size_t at) {
  const bool isDouble = text[at] == u'{';
  if (UnitAt(text, at + 1) != u'{' || UnitBefore(text, at) == u'{') return {};
  const std::size_t begin = SkipBlanks(text, at + 2);
  const std::size_t end = NameEnd(text, begin);
  const std::size_t close = SkipBlanks(text, end);
  const std::u16string_view braces = isDouble ? u"}}" : u"}";
  if (end == begin || !text.substr(close).starts_with(braces)) return {};
  if (isDouble && UnitAt(text, close + 2) == u'}') return {};
  return TLookAlike{TLookAlikeForm::Other, at, close + braces.size(), text.substr(begin, end - begin)};
}

bool IsAllCapitals(std::u16string_view name) {
  return std::ranges::none_of(name, [](char16_t unit) { return u_islower(unit) != 0; });
}

// "<<name" without an end. In a template without double markers it may also be a shift, a stream or a here-document.
std::optional<TLookAlike> UnclosedAt(std::u16string_view text, std::size_t at, const TLookAlikeSetting& setting) {
  std::size_t end = TokenTextEnd(text, at + 2);
  const std::u16string_view name = text.substr(at + 2, NameEnd(text, at + 2) - at - 2);
  const char16_t next = UnitAt(text, SkipBlanks(text, end));
  const char16_t before = UnitBefore(text, at);
  if (name.size() < 2 || next == u';' || next == u'(' || next == u'=') return {};
  const std::size_t angle = text.find_first_of(u"<>\n", end);
  if (angle != kNone && text[angle] == u'>') return {};
  if (!setting.hasDouble && (setting.isMarkup || next == u'<' || IsAllCapitals(name) || u_isalnum(before) != 0 ||
                             before == u'<' || before == u')' || before == u']'))
    return {};
  // A dot is rather that of a file name.
  if (end == at + 2 + name.size()) end = std::min(end, at + 2 + std::min(name.find(u'.'), name.size()));
  return TLookAlike{TLookAlikeForm::Unclosed, at, end, text.substr(at + 2, end - at - 2)};
}

// "<<" and a name.
std::optional<TLookAlike> DoubleAt(std::u16string_view text, std::size_t at, const TLookAlikeSetting& setting) {
  const bool slashFirst = UnitAt(text, at + 2) == u'/';
  const std::size_t begin = at + (slashFirst ? 3 : 2);
  const std::size_t end = TokenTextEnd(text, begin);
  if (end == begin) return {};
  const TClosing closing(text, end);
  if (closing.angles == 0) return slashFirst ? std::nullopt : UnclosedAt(text, at, setting);
  if (closing.angles == 1 && (slashFirst || (closing.slash == 0 && setting.isMarkup))) return {};
  const bool isMixed = closing.slash == u'/' && closing.angles == 1 && !closing.isSpaced;
  return TLookAlike{isMixed ? TLookAlikeForm::Mixed : TLookAlikeForm::Other, at, closing.end,
                    text.substr(begin, end - begin)};
}

// "<" and a name: with "/>" where markers are double, or with "\>" or "/ >".
std::optional<TLookAlike> SingleAt(std::u16string_view text, std::size_t at, const TLookAlikeSetting& setting) {
  const std::size_t end = TokenTextEnd(text, at + 1);
  const TClosing closing(text, end);
  if (end == at + 1 || closing.angles == 0 || closing.slash == 0 || UnitBefore(text, at) == u'\\') return {};
  const bool isToken = closing.slash == u'/' && !closing.isSpaced;
  const std::u16string_view tokenText = text.substr(at + 1, end - at - 1);
  if (closing.slash == u'/' && (setting.isMarkup || IsHtmlTag(tokenText))) return {};
  return TLookAlike{isToken ? TLookAlikeForm::Single : TLookAlikeForm::Other, at, closing.end, tokenText, false};
}

std::optional<TLookAlike> LookAlikeAt(std::u16string_view text, std::size_t at, const TLookAlikeSetting& setting) {
  if (text[at] != u'<') return BracesAt(text, at);
  if (UnitAt(text, at + 1) != u'<') return SingleAt(text, at, setting);
  return UnitAt(text, at + 2) == u'<' ? std::nullopt : DoubleAt(text, at, setting);
}

}  // namespace

bool LooksLikeMarkup(std::u16string_view text) {
  for (std::size_t at = FindUnit(text, u'<', 0); at != kNone; at = FindUnit(text, u'<', at + 1)) {
    const char16_t next = UnitAt(text, at + 1);
    if (next == u'!' || next == u'?' || (next == u'/' && UnitBefore(text, at) != u'<')) return true;
  }
  return false;
}

std::size_t TokenTextEnd(std::u16string_view text, std::size_t at) {
  std::size_t end = NameEnd(text, at);
  if (end == at) return at;
  for (;;) {
    const std::size_t begin = SkipBlanks(text, end);
    const std::size_t next = begin == end ? begin : AttributeEnd(text, begin);
    if (next == begin) return end;
    end = next;
  }
}

std::optional<TLookAlike> FindLookAlike(std::u16string_view text, std::size_t from, const TLookAlikeSetting& setting) {
  const TUnitBlock begins[] = {UnitBlock(u'<'), UnitBlock(u'{'), UnitBlock(u'$')};
  for (std::size_t at = FindAnyUnit(text, begins, from); at != kNone; at = FindAnyUnit(text, begins, at + 1))
    if (const auto found = LookAlikeAt(text, at, setting)) return found;
  return {};
}

}  // namespace templatenames
