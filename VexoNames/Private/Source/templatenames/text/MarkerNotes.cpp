// What lies outside tokens: NoteTemplateSyntax.
#include "text/TokenNotes.h"

#include <algorithm>
#include <optional>

#include "text/Find.h"
#include "text/LookAlikes.h"
#include "text/Nearest.h"
#include "text/NoteText.h"
#include "text/TokenText.h"

namespace templatenames {
namespace {

enum class TFaultKind { Other, Single, Mixed, Unclosed, Stray, MixedStray, Joined, Literal };

struct TFault {
  TFaultKind kind;
  std::size_t begin;
  std::size_t end;
  std::u16string_view tokenText;
  bool isDouble = true;  // the token that was meant rather has double markers
};

TFault FaultOf(const TLookAlike& found) {
  constexpr TFaultKind kKinds[] = {TFaultKind::Other, TFaultKind::Single, TFaultKind::Mixed, TFaultKind::Unclosed};
  return {kKinds[static_cast<std::size_t>(found.form)], found.begin, found.end, found.tokenText, found.isDouble};
}

/// Walks over a template as the scan does.
class TTemplateJudge {
 public:
  explicit TTemplateJudge(std::u16string_view text) : text_(text), markers_(ChooseMarkers(text)) {}

  void Judge();
  void Report(std::vector<TSyntaxNote>& notes);

 private:
  bool IsDouble() const { return markers_.begin.size() == kDoubleMarkers.begin.size(); }
  void Add(const TFault& fault) {
    if (faults_.size() < TNameReport::kMostKept) faults_.push_back(fault);
  }
  void JudgeGap(std::size_t from, std::size_t to);
  void JudgeToken(const TScannedToken& token);
  void JudgeStray(std::size_t from, std::size_t at);
  void FollowAngles(std::size_t from, std::size_t to);
  void CloseAngle();
  TMarkers RightMarkers(const TFault& fault) const;
  NQ_TString SuggestionFor(const TFault& fault) const;
  NQ_TString ReasonFor(const TFault& fault, const NQ_TString& suggestion) const;

  std::u16string_view text_;
  TMarkers markers_;
  std::optional<TLookAlikeSetting> setting_;  // found out when it is needed
  std::vector<TFault> faults_;
  std::size_t properTokens_ = 0;

  // Of a template with single markers.
  TScannedToken last_;           // token
  std::size_t angle_ = kNone;    // a "<" on this line that no ">" has closed yet
  std::optional<TFault> mixed_;  // "<<job/>", unless its first "<" is closed
};

void TTemplateJudge::Judge() {
  TScanner scanner(text_, markers_);
  for (TScannedToken token; faults_.size() < TNameReport::kMostKept && scanner.Next(token);) {
    JudgeGap(token.literal, token.begin);
    JudgeToken(token);
  }
  const std::size_t rest = scanner.Done();
  const std::size_t end = scanner.SyntaxError() ? FindText(text_, markers_.end, rest) : text_.size();
  JudgeGap(rest, end);
  CloseAngle();
  if (scanner.SyntaxError()) JudgeStray(rest, end);
}

void TTemplateJudge::JudgeGap(std::size_t from, std::size_t to) {
  if (!IsDouble()) FollowAngles(from, to);
  const TUnitBlock begins[] = {UnitBlock(u'<'), UnitBlock(u'{'), UnitBlock(u'$')};
  const std::u16string_view text = text_.substr(0, to);
  if (FindAnyUnit(text, begins, from) == kNone) return;
  if (!setting_) setting_ = {IsDouble(), LooksLikeMarkup(text_)};
  while (const auto found = FindLookAlike(text, from, *setting_)) {
    Add(FaultOf(*found));
    from = found->end;
  }
}

// Angles that belong to the text: "<" before a token and ">" after it are no mixed markers when the one closes the
// other, as in "<a href=<url/>>" or "<<user/>@example.org>".
void TTemplateJudge::FollowAngles(std::size_t from, std::size_t to) {
  const TUnitBlock units[] = {UnitBlock(u'<'), UnitBlock(u'>'), UnitBlock(u'\n')};
  const std::u16string_view text = text_.substr(0, to);
  for (std::size_t at = FindAnyUnit(text, units, from); at != kNone; at = FindAnyUnit(text, units, at + 1)) {
    if (text[at] == u'>' && angle_ != kNone) {
      mixed_.reset();
    } else if (text[at] == u'>' && at == last_.end && at > 0) {
      Add({TFaultKind::Mixed, last_.begin, at + 1, text_.substr(last_.textBegin, last_.textEnd - last_.textBegin)});
      if (properTokens_ > 0) --properTokens_;
    } else {
      CloseAngle();
    }
    angle_ = text[at] == u'<' ? at : kNone;
  }
}

void TTemplateJudge::CloseAngle() {
  if (mixed_) Add(*mixed_);
  mixed_.reset();
}

void TTemplateJudge::JudgeToken(const TScannedToken& token) {
  const std::u16string_view tokenText = text_.substr(token.textBegin, token.textEnd - token.textBegin);
  const std::u16string_view key = SplitTokenText(tokenText).key;
  last_ = token;
  if (std::ranges::equal(key, std::u16string_view(u"cdata"), {}, FoldedUnit)) {
    const bool isFirst = text_.substr(0, token.begin).find_first_not_of(u" \t\r\n\uFEFF") == kNone;
    Add({TFaultKind::Literal, isFirst ? 0 : token.begin, token.end, isFirst ? tokenText : key.substr(0, 0)});
  } else if (IsDouble() && key.find(kSingleMarkers.end) != kNone) {
    Add({TFaultKind::Joined, token.begin, token.end, tokenText});
  } else if (!IsDouble() && angle_ != kNone && angle_ + 1 == token.begin &&
             TokenTextEnd(text_, token.textBegin) == token.textEnd) {
    mixed_ = TFault{TFaultKind::Mixed, angle_, token.end, tokenText};
  } else {
    ++properTokens_;
  }
}

void TTemplateJudge::JudgeStray(std::size_t from, std::size_t at) {
  const std::size_t angle = FindUnitBackward(text_, u'<', at, from);
  if (IsDouble() && angle != kNone && TokenTextEnd(text_, angle + 1) == at) {
    Add({TFaultKind::MixedStray, angle, at + markers_.end.size(), text_.substr(angle + 1, at - angle - 1)});
    return;
  }
  const bool isDouble = text_.substr(at).starts_with(kDoubleMarkers.end);
  Add({TFaultKind::Stray, at, at + (isDouble ? kDoubleMarkers : kSingleMarkers).end.size(), {}});
}

TMarkers TTemplateJudge::RightMarkers(const TFault& fault) const {
  if (IsDouble() || properTokens_ > 0) return markers_;
  return fault.isDouble ? kDoubleMarkers : kSingleMarkers;
}

NQ_TString TTemplateJudge::SuggestionFor(const TFault& fault) const {
  switch (fault.kind) {
    case TFaultKind::Stray:
      return {};
    case TFaultKind::Literal:
      return fault.tokenText.empty() ? NQ_TString() : NQ_TString(kLiteralMarker);
    case TFaultKind::Joined:
      return Sentence(
          {u"<<", NQ_TString(fault.tokenText).Replace("/>", "/>>").Replace("<", "<<").StringView(), u"/>>"});
    default:
      break;
  }
  const TMarkers markers = RightMarkers(fault);
  return Sentence({markers.begin, fault.tokenText, markers.end});
}

NQ_TString TTemplateJudge::ReasonFor(const TFault& fault, const NQ_TString& suggestion) const {
  constexpr std::u16string_view kReasons[] = {
      u" is no token",
      u" is no token, because the template has tokens with double markers",
      u" has a single marker on one side and a double one on the other",
      u" is no token, because it has no end",
      u" ends no token, because none begins before it: it and all that follows stay as they are written",
      u" has a single marker on one side and a double one on the other: all that follows stays as it is written",
      u" is one token, because the markers inside are single ones and those around it double ones",
      u" is a token: a text is literal when it begins with \"<<CDATA/>>\", in capitals and without a blank",
  };
  const NQ_TString written = Quoted(text_.substr(fault.begin, fault.end - fault.begin));
  const std::u16string_view reason = kReasons[static_cast<std::size_t>(fault.kind)];
  if (suggestion.Empty() || fault.kind == TFaultKind::Literal) return Sentence({written.StringView(), reason});
  return Sentence({written.StringView(), reason, u"; write ", Quoted(suggestion.StringView()).StringView()});
}

void TTemplateJudge::Report(std::vector<TSyntaxNote>& notes) {
  std::ranges::stable_sort(faults_, {}, &TFault::begin);
  for (const TFault& fault : faults_) {
    const NQ_TString suggestion = SuggestionFor(fault);
    notes.push_back(
        {TNameProblem::TNameProblem_KindMarker, fault.begin, fault.end, ReasonFor(fault, suggestion), suggestion});
  }
}

}  // namespace

void NoteTemplateSyntax(std::u16string_view text, std::vector<TSyntaxNote>& notes) {
  if (text.starts_with(kLiteralMarker) || text.empty()) return;
  TTemplateJudge judge(text);
  judge.Judge();
  judge.Report(notes);
}

}  // namespace templatenames
