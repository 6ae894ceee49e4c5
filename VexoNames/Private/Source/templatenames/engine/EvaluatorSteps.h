// The evaluator, second chapter: from the name to its text. For Evaluator.cpp only.
#pragma once

#include <algorithm>
#include <limits>

#include "NQ_EException.h"
#include "engine/AttributeKeys.h"
#include "engine/Attributes.h"
#include "engine/Evaluator.h"
#include "engine/FormattingStep.h"
#include "engine/HandlerPointers.h"
#include "engine/Queries.h"
#include "engine/Sentences.h"
#include "text/Log.h"

namespace templatenames {

template <class TObserver>
template <class TAction>
bool TEvaluator<TObserver>::Foreign(TAction action) {
  budget_.PauseRegex();
  if constexpr (!TObserver::kReports) {
    return action();
  } else {
    try {
      return action();
    } catch (...) {
      observer_.Fail(ExceptionProblem(observer_.InHand().key));
      throw;
    }
  }
}

// The same with code that is given the entry, and may write to it.
template <class TObserver>
template <class TAction>
bool TEvaluator<TObserver>::ForeignWith(const NQ_TDict& entry, TAction action) {
  const TCategoryIndex::THandedOut handedOut(engine_.store.Categories(), entry);
  return Foreign(action);
}

// ---- lookup

// A value that is known beforehand needs no lookup: the entry holds it, and nobody is asked first.
template <class TObserver>
inline bool TEvaluator<TObserver>::TakeKnown(const TRecipe& recipe, TValue& value) {
  if (recipe.known == TRecipe::TKnown::Nothing) return false;
  value.kind = recipe.known == TRecipe::TKnown::Text ? TValue::TKind::Text : TValue::TKind::Number;
  value.plain = recipe.plain;
  value.isUrl = recipe.isUrl;
  value.stored = true;
  value.number = recipe.number;
  value.text = recipe.text;
  Reported([&](auto& observer) { observer.Source(recipe.source == TRecipe::TSource::Stored ? "set" : "kept reply"); });
  return true;
}

// The name's own lookup must exist even where the user's hook answers, and is chosen before that is asked.
template <class TObserver>
auto TEvaluator<TObserver>::LookUp(TToken& token, TEntry& entry, NQ_TAny& value) -> TLookup {
  const TRecipe chosen = entry.Recipe();
  const TName::TLookupFunction function = LookupFunctionIn(entry.Slots().lookupHandler);
  const TNameLookupHandler* const object = LookupObjectIn(entry.Slots().lookupHandler2);
  const std::u16string_view key = token.parts.key;
  if (chosen.source == TRecipe::TSource::None) {
    Fail(key, " No lookup handler defined", [&] { return NoLookupProblem(key); });
    return TLookup::Failed;
  }
  const NQ_TString name(key);
  if (const auto hook = engine_.hooks.userLookup; hook != nullptr) {
    if constexpr (!TObserver::kCalls) return TLookup::Unknown;
    if (ForeignWith(entry, [&] { return hook(name, &entry, &engine_.names, value); })) {
      Reported([](auto& observer) { observer.Source("hook"); });
      return TLookup::Found;
    }
    value = NQ_TAny();
  }
  switch (chosen.source) {
    case TRecipe::TSource::Stored:
      return AskStored(name, entry.Slots().value, value);
    case TRecipe::TSource::Time:
      return AskTime(name, entry.Slots().value, value);
    case TRecipe::TSource::Query:
    case TRecipe::TSource::UncachedQuery:
      return AskService(name, entry, chosen.source == TRecipe::TSource::Query, value);
    case TRecipe::TSource::Sql:
      return AskSql(name, value);
    default:
      return AskHandler(name, entry, function, object, value);
  }
}

template <class TObserver>
auto TEvaluator<TObserver>::AskStored(const NQ_TString& key, const NQ_TAny* stored, NQ_TAny& value) -> TLookup {
  if (Logs(2)) Log(2, "TName::LookupHandler: Called function");
  if (stored == nullptr) return FailLookup(key, [&] { return NoValueProblem(key.StringView()); });
  value = *stored;
  if (Logs(2)) Log(2, "TName::LookupHandler: Key = \"", key, "\", Value = ", value);
  Reported([](auto& observer) { observer.Source("set"); });
  return TLookup::Found;
}

template <class TObserver>
auto TEvaluator<TObserver>::AskTime(const NQ_TString& key, const NQ_TAny* stored, NQ_TAny& value) -> TLookup {
  if (Logs(2)) Log(2, "TName::TimeLookupHandler: Called function");
  if (stored != nullptr && stored->As<NQ_TTime>() == nullptr)
    return FailLookup(key, [&] { return TypeProblem(key.StringView(), stored, TRecipe::TWriting::Time); });
  value = stored == nullptr ? NQ_TAny(NQ_TTime()) : *stored;
  Reported([&](auto& observer) { observer.Source(stored == nullptr ? "clock" : "set"); });
  return TLookup::Found;
}

template <class TObserver>
auto TEvaluator<TObserver>::AskSql(const NQ_TString& key, NQ_TAny& value) -> TLookup {
  if (Logs(2)) Log(2, "TName::SQLQueryHandler: Called function");
  value = "(unknown)";
  if constexpr (TObserver::kCalls) engine_.SetError(TName::TName_ErrorSQLQuery);
  return FailLookup(key, [&] { return SqlProblem(key.StringView()); });
}

template <class TObserver>
auto TEvaluator<TObserver>::AskService(const NQ_TString& key, TEntry& entry, bool keeps, NQ_TAny& value) -> TLookup {
  if constexpr (!TObserver::kCalls) {
    if (entry.Slots().value == nullptr) return TLookup::Unknown;
  }
  budget_.PauseRegex();
  const bool stored = entry.Slots().value != nullptr;
  TQueryProblem problem;
  if (keeps ? QueryKeeping(engine_, key, entry, value, problem) : Query(engine_, key, entry, value, problem)) {
    Reported([&](auto& observer) { observer.Source(stored ? "kept reply" : "service"); });
    return TLookup::Found;
  }
  if (problem.limit != TLimit::None && Logs(2)) {
    Log(2, "TName::ResolveTokenEx: \tKey: \"", key, '"', LogTextOf(problem.limit));
  }
  return FailLookup(key, [&] {
    return problem.limit == TLimit::None ? ServiceProblem(key.StringView(), problem.said)
                                         : LimitProblem(problem.limit, engine_.limits);
  });
}

template <class TObserver>
auto TEvaluator<TObserver>::AskHandler(const NQ_TString& key, TEntry& entry, TName::TLookupFunction function,
                                       const TNameLookupHandler* object, NQ_TAny& value) -> TLookup {
  if constexpr (!TObserver::kCalls) return TLookup::Unknown;
  if constexpr (TObserver::kReports) engine_.serviceFailure = NQ_TString();
  const bool found = ForeignWith(entry, [&] {
    TName* const names = &engine_.names;
    return object != nullptr ? object->Lookup(key, &entry, names, value) : function(key, &entry, names, value);
  });
  if (found) {
    Reported([](auto& observer) { observer.Source("handler"); });
    return TLookup::Found;
  }
  return FailLookup(key, [&] {
    return engine_.serviceFailure.Empty() ? NoValueProblem(key.StringView())
                                          : ServiceProblem(key.StringView(), engine_.serviceFailure);
  });
}

template <class TObserver>
template <class TMakeProblem>
auto TEvaluator<TObserver>::FailLookup(const NQ_TString& key, TMakeProblem problem) -> TLookup {
  Fail(key.StringView(), " Lookup function failed", problem);
  return TLookup::Failed;
}

template <class TObserver>
void TEvaluator<TObserver>::SetValueFrom(const NQ_TAny& any, TValue& value) const {
  value.any = &any;
  if (const auto* text = any.As<NQ_TString>()) {
    value.kind = TValue::TKind::Text;
    value.text = text;
    value.plain = !NeedsResolving(text->StringView()) && !Logs(1);
  } else if (const auto* number = any.As<NQ_TInt32>()) {
    value.kind = TValue::TKind::Number;
    value.number = number->Value();
  }
}

// ---- from the value to its text

// What code of the caller's may look at while it is written stands in a string of its own, not in the caller's result;
// so does what the formatting options rewrite.
template <class TObserver>
inline bool TEvaluator<TObserver>::Make(TToken& token, TEntry& entry, TValue& value, NQ_TString& out) {
  const TRecipe& recipe = entry.Recipe();
  if (!recipe.options && !recipe.IsForeign() && engine_.hooks.areOwn) return MakeIn(token, entry, value, out);
  TScratch scratch(engine_.store);
  if (!MakeIn(token, entry, value, scratch.Text())) return false;
  AppendUnits(scratch.Text().StringView(), out);
  return true;
}

template <class TObserver>
inline bool TEvaluator<TObserver>::MakeIn(TToken& token, TEntry& entry, TValue& value, NQ_TString& out) {
  TCharge charge(budget_);
  TTextInHand text(out);
  if (value.kind == TValue::TKind::Text) {
    ResolveNested(value, text);
    charge.Text(text.View().size());
  }
  if (!Write(WriterOf(token, entry), value, text)) return false;
  charge.Text(text.View().size());
  if (!Cut(token, entry, text)) return false;
  text.Settle();
  if (!ApplyOptions(token, charge.Before(), text)) return false;
  charge.Text(out.Length() - text.Begin());
  return budget_.characters >= 0 || FailLimit(TLimit::Characters, token.parts.key);
}

// Puts a text value in hand, with the tokens in it resolved.
template <class TObserver>
inline void TEvaluator<TObserver>::ResolveNested(TValue& value, TTextInHand& text) {
  const std::u16string_view units = value.text->StringView();
  Reported([&](auto& observer) { observer.Step("value", units); });
  if (value.plain && !LiesIn(units, text.Out())) return text.SetElsewhere(units);
  if (value.plain) return text.Replace(NQ_TString(units).StringView());
  const NQ_TString source = *value.text;  // a handler may change the entry's
  value.any = nullptr;
  {
    const TDeeper deeper(budget_.depth);
    Reported([](auto& observer) { observer.EnterValue(); });
    Append(source, text.Out());
    Reported([](auto& observer) { observer.LeaveValue(); });
  }
  text.SetWritten();
  Reported([&](auto& observer) { observer.Step("nested", text.View()); });
}

// ---- writing

// The token's format, else the name's, else the type's. What the name says is asked for after the value is known: a
// handler may have changed it.
template <class TObserver>
inline TWriter TEvaluator<TObserver>::WriterOf(TToken& token, TEntry& entry) const {
  const TRecipe& recipe = entry.Recipe();
  TWriter writer;
  writer.writing = recipe.writing;
  writer.key = token.parts.key;
  writer.entry = &entry;
  writer.counts = recipe.counts;
  writer.format = recipe.format;
  if (token.parts.format.empty()) {
    const NQ_TString* const own = TextIn(entry.Slots().format);
    if (own != nullptr) writer.formatText = own->StringView();
  } else {
    writer.formatText = token.parts.format;
    if (recipe.writing == TRecipe::TWriting::Text) writer.format = token.Format(TPrintfFormat::TKind::Text);
    if (recipe.writing == TRecipe::TWriting::Integer) writer.format = token.Format(TPrintfFormat::TKind::Integer);
  }
  writer.tokenFormat = token.parts.format;
  return writer;
}

template <class TObserver>
inline bool TEvaluator<TObserver>::Write(const TWriter& writer, const TValue& value, TTextInHand& text) {
  switch (writer.writing) {
    case TRecipe::TWriting::Text:
      return WriteText(writer, value, text);
    case TRecipe::TWriting::Integer:
      return WriteInteger(writer, value, text);
    case TRecipe::TWriting::Time:
      return WriteTime(writer, value, text);
    case TRecipe::TWriting::Handler:
      return WriteByHandler(writer, value, text);
    case TRecipe::TWriting::None:
      break;
  }
  return Fail(writer.key, " No type handler defined", [&] { return NoTypeProblem(writer.key); });
}

template <class TObserver>
inline bool TEvaluator<TObserver>::WriteText(const TWriter& writer, const TValue& value, TTextInHand& text) {
  if (value.kind == TValue::TKind::Unknown) {
    if (writer.format == nullptr) return FailFormat(writer, TPrintfFormat::TKind::Text);
    text.SetUnknown();
  } else if (value.kind != TValue::TKind::Text) {
    const auto* const url = value.any == nullptr ? nullptr : value.any->As<NQ_TURL>();
    if (url == nullptr) return FailType(writer, value);
    text.Replace(FileText(*url).StringView());
  } else if (!value.isUrl) {
    if (writer.format == nullptr) return FailFormat(writer, TPrintfFormat::TKind::Text);
    if (!writer.format->IsPlain()) {
      NQ_TString written;
      writer.format->AppendText(text.View(), written);
      text.Replace(written.StringView());
    }
  }
  Reported([&](auto& observer) { observer.Step("format", text.View(), writer.formatText); });
  return true;
}

template <class TObserver>
inline bool TEvaluator<TObserver>::WriteInteger(const TWriter& writer, const TValue& value, TTextInHand& text) {
  const bool isUnknown = value.kind == TValue::TKind::Unknown;
  if (value.kind != TValue::TKind::Number && !isUnknown) return FailType(writer, value);
  if (writer.format == nullptr) return FailFormat(writer, TPrintfFormat::TKind::Integer);
  if (isUnknown) return text.SetUnknown(), true;
  int number = value.number;
  if (writer.counts) {
    if (number == std::numeric_limits<int>::max())
      return Fail(writer.key, " The counter is at its end", [&] { return CounterProblem(writer.key); });
    ++number;
  }
  if constexpr (TObserver::kCalls) {
    if ((writer.counts || !value.stored) && !budget_.preview) writer.entry->Add(Keys().value, number);
  }
  writer.format->AppendInteger(number, text.Out());  // nothing was written before
  text.SetWritten();
  Reported([&](auto& observer) {
    if (writer.counts) observer.Source("counter");
    observer.Step("format", text.View(), writer.formatText);
  });
  return true;
}

template <class TObserver>
bool TEvaluator<TObserver>::WriteTime(const TWriter& writer, const TValue& value, TTextInHand& text) {
  if (value.kind == TValue::TKind::Unknown) return text.SetUnknown(), true;
  const auto* const time = value.any == nullptr ? nullptr : value.any->As<NQ_TTime>();
  if (time == nullptr) return FailType(writer, value);
  const NQ_TString pattern = writer.formatText.empty() ? NQ_TString("%X") : NQ_TString(writer.formatText);
  const auto written = time->TryFormat(pattern);
  if (!written) {
    const std::string log = " Format \"" + std::string(pattern.Narrow()) +
                            "\" refused: the text is over 65536 bytes, or the year out of range";
    return Fail(writer.key, log, [&] { return TimeFormatProblem(writer.formatText); });
  }
  text.Replace(written->StringView());
  Reported([&](auto& observer) { observer.Step("format", text.View(), pattern.StringView()); });
  return true;
}

template <class TObserver>
bool TEvaluator<TObserver>::WriteByHandler(const TWriter& writer, const TValue& value, TTextInHand& text) {
  if constexpr (!TObserver::kCalls) return text.SetUnknown(), true;
  const TName::TTypeFunction function = TypeFunctionIn(std::as_const(*writer.entry).ValueOfKey(Keys().typeHandler));
  const NQ_TAny given = value.any != nullptr                  ? *value.any
                        : value.kind == TValue::TKind::Number ? NQ_TAny(int{value.number})
                                                              : NQ_TAny(NQ_TString(text.View()));
  NQ_TString result;
  const bool ok = ForeignWith(*writer.entry, [&] {
    return function(NQ_TString(writer.key), given, NQ_TString(writer.tokenFormat), writer.entry, &engine_.names,
                    result);
  });
  if (!ok) return Fail(writer.key, {}, [&] { return HandlerProblem(TNameProblem::TNameProblem_KindType, writer.key); });
  text.Replace(result.StringView());
  Reported([&](auto& observer) { observer.Step("format", text.View(), writer.formatText); });
  return true;
}

template <class TObserver>
bool TEvaluator<TObserver>::FailFormat(const TWriter& writer, TPrintfFormat::TKind kind) {
  std::string log;
  if (Logs(2)) {
    log = " Format \"" + std::string(NQ_TString(writer.formatText).Narrow()) +
          "\" refused: " + std::string(FormatProblem(writer.formatText, kind).reason.Narrow());
  }
  return Fail(writer.key, log, [&] { return FormatProblem(writer.formatText, kind); });
}

template <class TObserver>
bool TEvaluator<TObserver>::FailType(const TWriter& writer, const TValue& value) {
  return Fail(writer.key, {}, [&] { return TypeProblem(writer.key, value.any, writer.writing); });
}

// ---- formatting options

// They are those of the name as it is now: a handler may have defined it anew, or dropped it.
template <class TObserver>
inline bool TEvaluator<TObserver>::ApplyOptions(TToken& token, std::int64_t left, TTextInHand& text) {
  if (Logs(2)) Log(2, "TName::ApplyFormattingOptions: key = \"", NQ_TString(token.parts.key), '"');
  TEntry* const entry = text.View().empty() ? nullptr : FindEntry(token);
  const NQ_TAny* const attribute = entry == nullptr ? nullptr : entry->Slots().formattingOptions;
  const auto* const options = attribute == nullptr ? nullptr : attribute->As<NQ_TDict>();
  if (options == nullptr || options->IsEmpty()) return true;
  if (text.Begin() == 0) return Format(token.parts.key, *options, left, text.Out(), text);
  NQ_TString value(text.View());
  if (!Format(token.parts.key, *options, left, value, text)) return false;
  text.Replace(value.StringView());
  return true;
}

template <class TObserver>
bool TEvaluator<TObserver>::Format(std::u16string_view key, const NQ_TDict& options, std::int64_t left,
                                   NQ_TString& value, TTextInHand& text) {
  const std::int64_t most = std::clamp<std::int64_t>(left, 0, kMostEncoded);
  TFindings* findings = nullptr;
  Reported([&](auto& observer) { findings = &observer.Findings(); });
  const int level = TObserver::kCalls ? engine_.debugLevel.load(std::memory_order_relaxed) : kNoLines;
  if constexpr (!TObserver::kReports) {
    if (!ApplyFormattingOptions(options, level, most, value, findings)) return FailLimit(TLimit::Characters, key);
  } else {
    try {
      if (!ApplyFormattingOptions(options, level, most, value, findings)) return FailLimit(TLimit::Characters, key);
    } catch (const NQ_EException& error) {
      return Fail(key, {}, [&] { return OptionsProblem(error, options); });
    }
    const auto* const format = options.Get<NQ_TString>("DataFormat");
    observer_.Step("options", value.StringView(), format == nullptr ? std::u16string_view() : format->StringView());
  }
  if (&value == &text.Out()) text.SetWritten();
  return true;
}

}  // namespace templatenames
