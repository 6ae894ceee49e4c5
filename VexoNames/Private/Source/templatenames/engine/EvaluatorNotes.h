// The evaluator, last chapter: what is noted of a token and of the name that it asks for. For Evaluator.cpp only.
#pragma once

#include "engine/EvaluatorCuts.h"
#include "formatting/CheckOptions.h"

namespace templatenames {

// What is odd about a token as it is written. Most are clean, and known to be.
template <class TObserver>
void TEvaluator<TObserver>::NoteToken(TToken& token, std::u16string_view written) {
  if constexpr (TObserver::kReports) {
    if (token.HasCleanSyntax()) return;
    const auto offset = static_cast<std::size_t>(written.find(token.text));
    std::vector<TSyntaxNote> notes;
    const TMarkers markers{written.substr(0, offset), written.substr(offset + token.text.size())};
    NoteTokenSyntax(token.text, markers, offset, notes);
    if (notes.empty()) return token.SetCleanSyntax();
    for (TSyntaxNote& note : notes) observer_.Note(note.kind, std::move(note.reason), std::move(note.suggestion));
  }
}

// What is odd about how the name is formatted, whatever its value.
template <class TObserver>
void TEvaluator<TObserver>::NoteRecipe(TToken& token, TEntry& entry) {
  if constexpr (TObserver::kReports) {
    const TWriter writer = WriterOf(token, entry);
    const bool isPrintf = writer.writing == TRecipe::TWriting::Text || writer.writing == TRecipe::TWriting::Integer;
    const bool writes = !isPrintf || writer.format == nullptr || writer.format->WritesValue();
    if (!writes) observer_.Note(TNameProblem::TNameProblem_KindNoConversion, NoConversionSentence(writer.formatText));
    const bool ignored = entry.Recipe().isUrl && !writer.tokenFormat.empty();
    if (ignored) observer_.Note(TNameProblem::TNameProblem_KindNoConversion, UnusedFormatSentence(writer.tokenFormat));
    if (entry.HasCleanOptions()) return;
    const NQ_TAny* const attribute = entry.Slots().formattingOptions;
    const auto* const options = attribute == nullptr ? nullptr : attribute->As<NQ_TDict>();
    TFindings found;
    if (options != nullptr) CheckOptions(*options, found);
    if (found.All().empty()) return entry.SetCleanOptions();
    for (const TFinding& finding : found.All()) observer_.Note(finding.kind, finding.reason, finding.suggestion);
  }
}

}  // namespace templatenames
