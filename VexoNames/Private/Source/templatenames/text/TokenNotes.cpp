#include "text/TokenNotes.h"

#include <algorithm>
#include <array>
#include <span>

#include "text/Find.h"
#include "text/Nearest.h"
#include "text/NoteText.h"
#include "text/TokenText.h"

namespace templatenames {
namespace {

constexpr std::u16string_view kBlanks = u" \t\r\n\u00A0";
constexpr std::u16string_view kDoubleQuotes = u"\"\u201C\u201D\u201E\u201F\u00AB\u00BB\u2033\uFF02";
constexpr std::u16string_view kSingleQuotes = u"'`\u00B4\u2018\u2019\u201A\u201B\u2032\uFF07";

bool IsOneOf(char16_t unit, std::u16string_view units) { return units.find(unit) != kNone; }

std::u16string_view Trimmed(std::u16string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  return begin == kNone ? text.substr(0, 0) : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// Why the value of an attribute is not read, or read too far.
enum class TFlaw { None, Bare, OtherQuotes, Spaces, Unclosed };

struct TWrittenAttribute {
  std::u16string_view name;
  std::u16string_view value;
  TFlaw flaw = TFlaw::None;
};

/// Reads attributes as their author may have meant them.
///
///   attribute = name blanks "=" blanks ( quote value quote | value )
///
/// A value without quotes reaches to the next attribute.
class TAttributeReader {
 public:
  explicit TAttributeReader(std::u16string_view text) : text_(text) {}

  bool Next(TWrittenAttribute& attribute);
  /// What stands before the first attribute; valid after `Next`.
  std::u16string_view Key() const { return text_.substr(0, keyEnd_); }
  /// Whether there was text that belongs to no attribute.
  bool FoundOther() const { return foundOther_; }

 private:
  void ReadValue(TWrittenAttribute& attribute, std::size_t at);
  void ReadQuoted(TWrittenAttribute& attribute, std::size_t at, std::u16string_view closing);
  std::size_t NextAttribute(std::size_t from) const;

  std::u16string_view text_;
  std::size_t at_ = 0;
  std::size_t keyEnd_ = kNone;
  bool foundOther_ = false;
};

bool TAttributeReader::Next(TWrittenAttribute& attribute) {
  const std::size_t equals = text_.find(u'=', at_);
  if (equals == kNone) {
    if (keyEnd_ != kNone && !Trimmed(text_.substr(at_)).empty()) foundOther_ = true;
    return false;
  }
  std::size_t end = equals;
  while (end > at_ && IsOneOf(text_[end - 1], kBlanks)) --end;
  std::size_t begin = end;
  while (begin > at_ && !IsOneOf(text_[begin - 1], kBlanks) && text_[begin - 1] != u'"') --begin;
  if (keyEnd_ == kNone)
    keyEnd_ = begin;
  else if (!Trimmed(text_.substr(at_, begin - at_)).empty())
    foundOther_ = true;
  attribute = {text_.substr(begin, end - begin), {}, end == equals ? TFlaw::None : TFlaw::Spaces};
  std::size_t value = equals + 1;
  while (value < text_.size() && IsOneOf(text_[value], kBlanks)) ++value;
  if (value > equals + 1) attribute.flaw = TFlaw::Spaces;
  ReadValue(attribute, value);
  return true;
}

void TAttributeReader::ReadValue(TWrittenAttribute& attribute, std::size_t at) {
  const char16_t first = at < text_.size() ? text_[at] : u' ';
  if (first == u'"') return ReadQuoted(attribute, at + 1, u"\"");
  const bool isDouble = IsOneOf(first, kDoubleQuotes);
  if (isDouble || IsOneOf(first, kSingleQuotes)) {
    attribute.flaw = TFlaw::OtherQuotes;
    return ReadQuoted(attribute, at + 1, isDouble ? kDoubleQuotes : kSingleQuotes);
  }
  at_ = NextAttribute(at);
  attribute.flaw = TFlaw::Bare;
  attribute.value = Trimmed(text_.substr(at, at_ - at));
  if (!attribute.value.empty() && IsOneOf(attribute.value.back(), kDoubleQuotes)) attribute.value.remove_suffix(1);
}

// The next attribute's opening quote is what closes a value whose own closing quote is missing.
void TAttributeReader::ReadQuoted(TWrittenAttribute& attribute, std::size_t at, std::u16string_view closing) {
  const std::size_t close = std::min(text_.find_first_of(closing, at), text_.size());
  attribute.value = text_.substr(at, close - at);
  at_ = std::min(close + 1, text_.size());
  std::size_t end = close;
  for (const std::u16string_view name : kAttributeNames) {
    const std::size_t before = close - at < name.size() + 2 ? kNone : close - name.size() - 2;
    if (before == kNone || text_[close - 1] != u'=' || !IsOneOf(text_[before], kBlanks)) continue;
    if (text_.substr(before + 1, name.size()) == name) at_ = end = before;
  }
  if (end == close && close < text_.size()) return;
  if (attribute.flaw == TFlaw::None) attribute.flaw = TFlaw::Unclosed;
  attribute.value = Trimmed(text_.substr(at, end - at));
  if (!attribute.value.empty() && IsOneOf(attribute.value.back(), kDoubleQuotes)) attribute.value.remove_suffix(1);
}

// Where, after a blank, letters and "=" follow; else the end.
std::size_t TAttributeReader::NextAttribute(std::size_t from) const {
  for (std::size_t equals = text_.find(u'=', from); equals != kNone; equals = text_.find(u'=', equals + 1)) {
    std::size_t end = equals;
    while (end > from && IsOneOf(text_[end - 1], kBlanks)) --end;
    std::size_t begin = end;
    while (begin > from && FoldedUnit(text_[begin - 1]) >= u'a' && FoldedUnit(text_[begin - 1]) <= u'z') --begin;
    if (begin > from && begin < end && IsOneOf(text_[begin - 1], kBlanks)) return begin;
  }
  return text_.size();
}

/// Judges the attributes of one token.
class TTokenJudge {
 public:
  TTokenJudge(std::u16string_view text, const TMarkers& markers) : text_(text), markers_(markers) {}

  void Judge();
  void Report(std::size_t at, std::vector<TSyntaxNote>& notes) const;

 private:
  static constexpr int kMostAttributes = 20;

  struct TFound {
    TNameProblem::TNameProblem_Kind kind;
    NQ_TString reason;
  };
  /// An attribute as it was meant, the first of its name.
  struct TMeant {
    std::u16string_view name;
    std::u16string_view value;
    bool isRead = false;  // one of that name is read
  };

  void JudgeKey(std::u16string_view key);
  void JudgeAttribute(const TWrittenAttribute& attribute);
  TMeant& MeantBy(std::u16string_view name, std::u16string_view value);
  NQ_TString Suggestion() const;

  std::u16string_view text_;
  TMarkers markers_;
  std::vector<TFound> found_;
  std::u16string_view key_;
  std::array<TMeant, std::size(kAttributeNames)> meant_;
  std::size_t meantCount_ = 0;
  bool correctable_ = true;
};

void TTokenJudge::Judge() {
  TAttributeReader reader(text_);
  TWrittenAttribute attribute;
  int count = 0;
  while (count < kMostAttributes && reader.Next(attribute)) {
    if (count++ == 0) JudgeKey(reader.Key());
    JudgeAttribute(attribute);
  }
  if (count == kMostAttributes || reader.FoundOther()) correctable_ = false;
}

void TTokenJudge::JudgeKey(std::u16string_view key) {
  key_ = Trimmed(key);
  if (key_.empty()) correctable_ = false;
  const std::size_t last = key.find_last_not_of(kBlanks);
  if (last == kNone || key.find_first_not_of(u' ', last + 1) == kNone) return;
  found_.push_back({TNameProblem::TNameProblem_KindUnquoted,
                    NQ_TString("only spaces separate a name from its attributes, not tabs or line ends")});
}

NQ_TString ReasonOf(TFlaw flaw, std::u16string_view name) {
  switch (flaw) {
    case TFlaw::Bare:
      return Sentence({u"the value of ", name, u" is not read: it stands without double quotes"});
    case TFlaw::OtherQuotes:
      return Sentence({u"the value of ", name, u" is not read: its quotes are not straight double quotes"});
    case TFlaw::Spaces:
      return Sentence({u"the value of ", name, u" is not read: there is a blank beside its \"=\""});
    default:
      return Sentence({u"the value of ", name, u" has no closing quote: it reaches to the next one, or to the end"});
  }
}

void TTokenJudge::JudgeAttribute(const TWrittenAttribute& attribute) {
  const bool isKnown = std::ranges::count(kAttributeNames, attribute.name) > 0;
  const std::u16string_view name = isKnown ? attribute.name : NearestWord(attribute.name, kAttributeNames);
  if (!isKnown)
    found_.push_back({TNameProblem::TNameProblem_KindUnknownAttribute,
                      Sentence({u"there is no attribute ", Quoted(attribute.name).StringView(),
                                u": a token may have format, elem, extract and regex, in small letters"})});
  if (name.empty()) {
    correctable_ = false;
    return;
  }
  TMeant& meant = MeantBy(name, attribute.value);
  if (attribute.flaw != TFlaw::None)
    found_.push_back({TNameProblem::TNameProblem_KindUnquoted, ReasonOf(attribute.flaw, name)});
  else if (isKnown && meant.isRead)
    found_.push_back(
        {TNameProblem::TNameProblem_KindRepeatedAttribute, Sentence({name, u" is there twice: the first one counts"})});
  if (isKnown && (attribute.flaw == TFlaw::None || attribute.flaw == TFlaw::Unclosed)) meant.isRead = true;
}

TTokenJudge::TMeant& TTokenJudge::MeantBy(std::u16string_view name, std::u16string_view value) {
  const auto end = meant_.begin() + static_cast<std::ptrdiff_t>(meantCount_);
  const auto before = std::ranges::find(meant_.begin(), end, name, &TMeant::name);
  if (before != end) return *before;
  return meant_[meantCount_++] = {name, value};
}

// Without mistakes; empty when that cannot be written.
NQ_TString TTokenJudge::Suggestion() const {
  if (!correctable_) return {};
  NQ_TString token = Sentence({markers_.begin, key_});
  for (const auto& [name, value, isRead] : std::span(meant_).first(meantCount_)) {
    if (value.find(u'"') != kNone) return {};
    token.Append(Sentence({u" ", name, u"=\"", value, u"\""}));
  }
  return token.Append(markers_.end);
}

void TTokenJudge::Report(std::size_t at, std::vector<TSyntaxNote>& notes) const {
  if (found_.empty()) return;
  const NQ_TString suggestion = Suggestion();
  for (const auto& [kind, reason] : found_)
    notes.push_back({kind, at - markers_.begin.size(), at + text_.size() + markers_.end.size(), reason, suggestion});
}

}  // namespace

void NoteTokenSyntax(std::u16string_view tokenText, const TMarkers& markers, std::size_t at,
                     std::vector<TSyntaxNote>& notes) {
  if (FindUnit(tokenText, u'=', 0) == kNone) return;
  TTokenJudge judge(tokenText, markers);
  judge.Judge();
  judge.Report(at, notes);
}

}  // namespace templatenames
