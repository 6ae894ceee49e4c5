// The evaluator, first chapter: walking over a template, and the frame around each token. For Evaluator.cpp only.
#pragma once

#include "engine/BudgetClock.h"
#include "engine/Evaluator.h"
#include "engine/Sentences.h"
#include "text/Log.h"

namespace templatenames {

// In longer texts a search may take long, and one that fails is made a second time, to be reported.
inline constexpr std::size_t kLongSubject = 4096;

// ---- templates

// The text of the outermost template is free: only what values add to it is bounded.
template <class TObserver>
void TEvaluator<TObserver>::Append(const NQ_TString& text, NQ_TString& out) {
  if (Logs(1)) Log(1, "TName::Resolve: \"", text, '"');
  const std::u16string_view units = text.StringView();
  if (budget_.depth > 1) budget_.characters -= static_cast<std::int64_t>(units.size());
  if (units.starts_with(kLiteralMarker)) {
    AppendUnits(units.substr(kLiteralMarker.size()), out);
    return;
  }
  const unsigned int begin = out.Length();
  if (const auto kept = engine_.store.Templates().Find(text); kept != nullptr) {
    AppendParts(*kept, out);
    LogEnd(kept->source, kept->syntaxError, begin, out);
  } else {
    const NQ_TString source = text;  // a handler may change the caller's
    Reported([&](auto& observer) {
      if (observer.Within().empty()) NoteSyntax(source.StringView());
    });
    LogEnd(source, Scan(source, ChooseMarkers(units), out), begin, out);
  }
}

template <class TObserver>
void TEvaluator<TObserver>::AppendScanned(const NQ_TString& text, const TMarkers& markers, NQ_TString& out) {
  LogEnd(text, Scan(text, markers, out), 0, out);
}

// Appends the text, token by token; whether a syntax error ended the scan.
template <class TObserver>
bool TEvaluator<TObserver>::Scan(const NQ_TString& text, const TMarkers& markers, NQ_TString& out) {
  const std::u16string_view units = text.StringView();
  out.Reserve(out.Length() + text.Length());  // values are about as long as their tokens
  TScanner scanner(units, markers);
  for (TScannedToken place; scanner.Next(place);) {
    const TPlace piece{units.substr(place.literal, place.begin - place.literal),
                       units.substr(place.begin, place.end - place.begin), place.begin, place.end};
    const std::u16string_view tokenText = place.TextIn(units);
    if (place.Overlaps()) {
      AppendOverlapping(piece, out);
    } else if (const auto kept = engine_.store.Tokens().Find(tokenText)) {
      AppendPiece(piece, kept->token, out);
    } else {
      TToken token(tokenText);
      AppendPiece(piece, token, out);
    }
  }
  AppendUnits(units.substr(scanner.Done()), out);
  return scanner.SyntaxError();
}

template <class TObserver>
void TEvaluator<TObserver>::AppendParts(TTemplate& kept, NQ_TString& out) {
  const std::u16string_view units = kept.source.StringView();
  Reported([&](auto& observer) {
    if (!observer.Within().empty()) return;
    if (kept.notes == nullptr) {
      std::vector<TSyntaxNote> notes;
      NoteTemplateSyntax(units, notes);
      kept.notes = std::make_unique<const std::vector<TSyntaxNote>>(std::move(notes));
    }
    for (const TSyntaxNote& note : *kept.notes) NoteAt(note, units);
  });
  for (const TTemplate::TPiece& piece : kept.pieces) {
    const TPlace place{units.substr(piece.literal, piece.begin - piece.literal),
                       units.substr(piece.begin, piece.end - piece.begin), piece.begin, piece.end};
    AppendPiece(place, kept.tokens[piece.token], out);
  }
  AppendUnits(units.substr(kept.done), out);
}

// What the log says of a template whose result stands in the string from there on.
template <class TObserver>
void TEvaluator<TObserver>::LogEnd(const NQ_TString& text, bool syntaxError, unsigned int begin,
                                   const NQ_TString& out) const {
  if (!Logs(1)) return;
  if (syntaxError) Log(1, "TE: Template name syntax error: no begin token found in ", text);
  Log(1, "TName::Resolve: \"", text, "\" = \"", NQ_TString(out.StringView().substr(std::min(begin, out.Length()))),
      '"');
}

template <class TObserver>
void TEvaluator<TObserver>::NoteSyntax(std::u16string_view text) {
  std::vector<TSyntaxNote> notes;
  NoteTemplateSyntax(text, notes);
  for (const TSyntaxNote& note : notes) NoteAt(note, text);
}

template <class TObserver>
void TEvaluator<TObserver>::NoteAt(const TSyntaxNote& note, std::u16string_view text) {
  Reported([&](auto& observer) {
    observer.NoteAt({note.kind, note.reason, note.suggestion}, note.begin, note.end,
                    text.substr(note.begin, note.end - note.begin));
  });
}

// ---- a token and the text before it

template <class TObserver>
inline void TEvaluator<TObserver>::AppendPiece(const TPlace& place, TToken& token, NQ_TString& out) {
  if constexpr (!TObserver::kLogs && TObserver::kCalls) {
    if (engine_.Logs(1)) return AppendLogged(place, token, out);
  }
  if (AppendKnown(place.literal, token, out)) return;
  AppendUnits(place.literal, out);
  if constexpr (TObserver::kReports) {
    const auto before = observer_.Take(place.written, token.parts.key, place.begin, place.end);
    NoteToken(token, place.written);
    if (!AppendToken(token, out)) AppendUnits(place.written, out);
    observer_.PutBack(before);
  } else {
    if (!AppendToken(token, out)) AppendUnits(place.written, out);
  }
}

// A token whose markers overlap has no text that could be cut out.
template <class TObserver>
void TEvaluator<TObserver>::AppendOverlapping(const TPlace& place, NQ_TString& out) {
  AppendUnits(place.literal, out);
  const unsigned int begin = out.Length();
  if constexpr (TObserver::kReports) {
    const auto before = observer_.Take(place.written, {}, place.begin, place.end);
    Fail({}, {}, OverlapProblem);
    FailToken(begin, out);
    observer_.PutBack(before);
  } else {
    FailToken(begin, out);
  }
  AppendUnits(place.written, out);
}

// Somebody has raised the debug level since this evaluation began.
template <class TObserver>
void TEvaluator<TObserver>::AppendLogged(const TPlace& place, TToken& token, NQ_TString& out) {
  TLogging logging;
  TEvaluator<TLogging> evaluator(engine_, logging);
  AppendUnits(place.literal, out);
  if (!evaluator.AppendToken(token, out)) AppendUnits(place.written, out);
  count_ += evaluator.Count();
}

template <class TObserver>
inline TEntry* TEvaluator<TObserver>::FindEntry(TToken& token) const {
  if (token.entryVersion != engine_.store.Version()) {
    token.entry = engine_.store.Find(token.parts.key, token.keyHash);
    token.entryVersion = engine_.store.Version();
  }
  return token.entry;
}

// Both at once, for values that are known beforehand: when nothing can exceed a limit and nobody wants to know of it.
// False, with nothing changed, else.
template <class TObserver>
inline bool TEvaluator<TObserver>::AppendKnown(std::u16string_view literal, TToken& token, NQ_TString& out) {
  if constexpr (!TObserver::kCalls) return false;
  if (Logs(1) || !engine_.hooks.areOwn || token.text.empty() || budget_.Exceeded() != TLimit::None) return false;
  if constexpr (TObserver::kReports) {
    if (observer_.WantsStory() || !token.HasCleanSyntax()) return false;
  }
  TEntry* const entry = FindEntry(token);
  if (entry == nullptr) return false;
  const TRecipe& recipe = entry->Recipe();
  if (recipe.asIs) return AppendAsIs(literal, token, recipe, out);
  return recipe.isPlainNumber && AppendNumber(literal, token, recipe, out);
}

template <class TObserver>
inline bool TEvaluator<TObserver>::AppendAsIs(std::u16string_view literal, TToken& token, const TRecipe& recipe,
                                              NQ_TString& out) {
  const auto length = static_cast<std::int64_t>(recipe.units.size());
  if (token.shape == TToken::TShape::Other || budget_.characters < length || LiesIn(recipe.units, out)) return false;
  std::u16string_view value = recipe.units;
  if (token.shape == TToken::TShape::Regex && !FindGroup(token, value)) return false;
  --budget_.tokens;
  budget_.characters -= length;
  char16_t* const end = out.AppendUninitialized(static_cast<unsigned int>(literal.size() + value.size()));
  CopyUnits(literal, end);
  CopyUnits(value, end + literal.size());
  return true;
}

template <class TObserver>
inline bool TEvaluator<TObserver>::AppendNumber(std::u16string_view literal, TToken& token, const TRecipe& recipe,
                                                NQ_TString& out) {
  if (token.parts.HasStages()) return false;
  const TPrintfFormat* const format =
      token.parts.format.empty() ? recipe.format : token.Format(TPrintfFormat::TKind::Integer);
  if (format == nullptr || (TObserver::kReports && !format->WritesValue())) return false;
  const unsigned int begin = out.Length();
  AppendUnits(literal, out);
  const unsigned int valueBegin = out.Length();
  format->AppendInteger(recipe.number, out);
  const std::int64_t left = budget_.characters - (out.Length() - valueBegin);
  if (left < 0) {
    out.Truncate(begin);
    return false;
  }
  --budget_.tokens;
  budget_.characters = left;
  return true;
}

// Makes the text of a token's recipe the first group of the token's regular expression; false, with nothing changed,
// when the text is not ASCII or there is something to report.
template <class TObserver>
inline bool TEvaluator<TObserver>::FindGroup(TToken& token, std::u16string_view& text) {
  const char* const ascii = text.size() <= kLongSubject ? token.entry->Ascii() : nullptr;
  if (ascii == nullptr || budget_.RegexSpent()) return false;
  budget_.BeginRegex();
  std::string_view group;
  TBudgetClock clock(budget_);
  const TRegexLimits limits{engine_.limits.regexMatch, engine_.limits.regexRecursion, &clock};
  if (!token.Regex().FindFirstGroup({ascii, text.size()}, limits, group)) return false;
  text =
      group.empty() ? std::u16string_view() : text.substr(static_cast<std::size_t>(group.data() - ascii), group.size());
  return true;
}

// ---- the frame around a token

template <class TObserver>
inline bool TEvaluator<TObserver>::AppendToken(TToken& token, NQ_TString& out) {
  const unsigned int begin = out.Length();
  if (token.text.empty() ? ProduceEmpty() : Produce(token, out)) {
    Reported([&](auto& observer) {
      observer.NoteFindings();
      if (observer.Explains()) observer.Done(out.StringView().substr(std::min(begin, out.Length())), true);
    });
    return true;
  }
  FailToken(begin, out);
  return false;
}

// An empty token is an empty text, formatted by no name's options.
template <class TObserver>
bool TEvaluator<TObserver>::ProduceEmpty() {
  if (const TLimit limit = budget_.Exceeded(); limit != TLimit::None) return FailLimit(limit, {});
  --budget_.tokens;
  if (Logs(2)) Log(2, "TName::ApplyFormattingOptions: key = \"\"");
  return true;
}

template <class TObserver>
inline bool TEvaluator<TObserver>::Produce(TToken& token, NQ_TString& out) {
  LogSplit(token);
  if (const TLimit limit = budget_.Exceeded(); limit != TLimit::None) return FailLimit(limit, token.parts.key);
  --budget_.tokens;
  Warn(token);
  TEntry* const entry = FindEntry(token);
  if (entry == nullptr) return FailUndefined(token);
  const TPin pin(engine_.store, *entry);
  Reported([&](auto&) { NoteRecipe(token, *entry); });
  TValue value;
  if (!Logs(1) && engine_.hooks.userLookup == nullptr && TakeKnown(entry->Recipe(), value))
    return Make(token, *entry, value, out);
  NQ_TAny any;
  const TLookup looked = LookUp(token, *entry, any);
  if (looked == TLookup::Failed) return false;
  looked == TLookup::Unknown ? void(value.kind = TValue::TKind::Unknown) : SetValueFrom(any, value);
  return Make(token, *entry, value, out);
}

template <class TObserver>
void TEvaluator<TObserver>::LogSplit(const TToken& token) const {
  if (!Logs(2)) return;
  Log(2, "TName::ResolveTokenEx: \tKey: \"", NQ_TString(token.parts.key), "\"; Format: \"",
      NQ_TString(token.parts.format), "\"; Elem: \"", NQ_TString(token.parts.elem), "\"; Extract: \"",
      NQ_TString(token.parts.extract), "\" RegEx: \"", NQ_TString(token.parts.regex), '"');
}

template <class TObserver>
void TEvaluator<TObserver>::Warn(const TToken& token) {
  if constexpr (!TObserver::kCalls) return;
  const THooks& hooks = engine_.hooks;
  if (hooks.warnObject == nullptr && hooks.warnFunction == nullptr) return;
  Foreign([&] {
    const NQ_TString key(token.parts.key);
    hooks.warnObject != nullptr ? hooks.warnObject->WarnLookup(key, &engine_.names)
                                : hooks.warnFunction(key, &engine_.names);
    return true;
  });
}

// ---- failing

// The one place where a token that failed ends: what it wrote goes, it is counted, logged and reported.
template <class TObserver>
void TEvaluator<TObserver>::FailToken(unsigned int begin, NQ_TString& out) {
  out.Truncate(std::min(begin, out.Length()));
  ++count_;
  EndStep();
  if constexpr (TObserver::kReports) {
    observer_.NoteFindings();
    observer_.Fail(std::move(failure_.problem));
    observer_.Done({}, false);
  }
  if constexpr (TObserver::kLogs) failure_.log.clear();
}

template <class TObserver>
bool TEvaluator<TObserver>::EndStep() {
  if constexpr (TObserver::kLogs) {
    if (Logs(2) && !failure_.log.empty()) Log(2, "TName::ResolveTokenEx: \tKey: \"", failure_.key, '"', failure_.log);
  }
  return false;
}

template <class TObserver>
bool TEvaluator<TObserver>::FailLimit(TLimit limit, std::u16string_view key) {
  return Fail(key, LogTextOf(limit), [&] {
    if constexpr (TObserver::kReports) {
      const std::vector<NQ_TString>& within = observer_.Within();
      const bool isCycle = limit == TLimit::NestedDepth && std::ranges::find(within, NQ_TString(key)) != within.end();
      if (isCycle) return CycleProblem(key);
    }
    return LimitProblem(limit, engine_.limits);
  });
}

template <class TObserver>
bool TEvaluator<TObserver>::FailUndefined(const TToken& token) {
  return Fail(token.parts.key, " not present", [&] { return UndefinedProblem(engine_, token.parts.key); });
}

}  // namespace templatenames
