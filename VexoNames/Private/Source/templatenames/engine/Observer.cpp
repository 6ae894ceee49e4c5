#include "engine/Observer.h"

#include <algorithm>
#include <tuple>

namespace templatenames {

using TToken = TNameExplanation::TToken;

TReporting::TInHand TReporting::Take(std::u16string_view written, std::u16string_view key, std::size_t begin,
                                     std::size_t end) {
  if (within_.empty()) {
    begin_ = begin;
    end_ = end;
  }
  TToken* const explained = story_ == nullptr ? nullptr : NewToken(written, key, begin, end);
  return std::exchange(inHand_, TInHand{written, key, explained});
}

// Tokens stay where they are while one of them is in hand: each list is filled while no other reference into it is used
// but that of its last element.
TToken* TReporting::NewToken(std::u16string_view written, std::u16string_view key, std::size_t begin, std::size_t end) {
  if (++kept_ > TNameExplanation::kMostKept) return nullptr;
  TToken& token = story_->emplace_back();
  token.token = NQ_TString(written);
  token.key = NQ_TString(key);
  token.begin = begin;
  token.end = end;
  return &token;
}

void TReporting::EnterValue() {
  within_.emplace_back(inHand_.key);
  outer_.emplace_back(story_, inHand_);
  story_ = inHand_.explained == nullptr ? nullptr : &inHand_.explained->nested;
}

void TReporting::LeaveValue() {
  within_.pop_back();
  std::tie(story_, inHand_) = outer_.back();
  outer_.pop_back();
}

TNameProblem::TFields TReporting::Here(TNameProblem::TNameProblem_Kind kind) const {
  TNameProblem::TFields fields;
  fields.kind = kind;
  fields.begin = begin_;
  fields.end = end_;
  fields.token = NQ_TString(inHand_.written);
  fields.key = NQ_TString(inHand_.key);
  fields.within = within_;
  return fields;
}

// A value that leads back to itself is reached through the same names again and again: once is enough.
void TReporting::Fail(TProblem problem) {
  TNameProblem::TFields fields = Here(problem.kind);
  if (problem.kind == TNameProblem::TNameProblem_KindCycle) {
    const auto first = std::ranges::find(fields.within, fields.key);
    const auto again = first == fields.within.end() ? first : std::find(first + 1, fields.within.end(), fields.key);
    fields.within.erase(again, fields.within.end());
  }
  fields.reason = std::move(problem.reason);
  fields.suggestion = std::move(problem.suggestion);
  fields.limit = NQ_TString(NameOf(problem.limit));
  report_.Add(TNameProblem(std::move(fields)));
}

void TReporting::Note(TNameProblem::TNameProblem_Kind kind, NQ_TString reason, NQ_TString suggestion) {
  TNameProblem::TFields fields = Here(kind);
  fields.reason = std::move(reason);
  fields.suggestion = std::move(suggestion);
  report_.Add(TNameProblem(std::move(fields)));
}

void TReporting::NoteAt(TFinding finding, std::size_t begin, std::size_t end, std::u16string_view written) {
  TNameProblem::TFields fields;
  fields.kind = finding.kind;
  fields.begin = begin;
  fields.end = end;
  fields.token = NQ_TString(written);
  fields.reason = std::move(finding.reason);
  fields.suggestion = std::move(finding.suggestion);
  report_.Add(TNameProblem(std::move(fields)));
}

void TReporting::NoteFindings() {
  for (const TFinding& finding : findings_.All()) Note(finding.kind, finding.reason, finding.suggestion);
  findings_.Clear();
}

void TReporting::Source(std::string_view source) {
  if (Explains()) inHand_.explained->source = source;
}

void TReporting::Step(std::string_view name, std::u16string_view text, std::u16string_view detail) {
  if (!Explains() || ++kept_ > TNameExplanation::kMostKept) return;
  inHand_.explained->steps.push_back({name, NQ_TString(detail), NQ_TString(text)});
}

void TReporting::Done(std::u16string_view result, bool ok) {
  if (!Explains()) return;
  inHand_.explained->ok = ok;
  inHand_.explained->result = NQ_TString(ok ? result : inHand_.written);
}

}  // namespace templatenames
