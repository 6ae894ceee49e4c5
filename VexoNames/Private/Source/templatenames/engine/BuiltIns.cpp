#include "engine/BuiltIns.h"

#include "NQ_TBoxed.h"
#include "engine/AttributeKeys.h"
#include "engine/Attributes.h"
#include "engine/Evaluator.h"
#include "engine/Queries.h"

namespace templatenames {
namespace {

using TLoggingEvaluator = TEvaluator<TLogging>;
using TLookup = TLoggingEvaluator::TLookup;

/// Lets an evaluator of its own do one step; false instead of an exception.
template <class TStep>
bool Do(TName* names, TStep step) {
  try {
    TEngine& engine = names->Engine();
    const TRun run(engine);
    TLogging observer;
    TLoggingEvaluator evaluator(engine, observer);
    return step(evaluator, engine);
  } catch (...) {
    return false;
  }
}

const NQ_TAny* Attribute(const NQ_TDict* entry, const NQ_TString& key) { return entry->ValueOfKey(key); }

// Writes a value by the format given, else by that of the entry.
bool WriteBy(TRecipe::TWriting writing, const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format,
             NQ_TDict* entry, TName* names, NQ_TString& result) {
  return Do(names, [&](TLoggingEvaluator& evaluator, TEngine&) {
    const bool isText = writing == TRecipe::TWriting::Text;
    const auto kind = isText ? TPrintfFormat::TKind::Text : TPrintfFormat::TKind::Integer;
    const NQ_TString* const own = TextIn(Attribute(entry, Keys().format));
    const NQ_TString plain(isText ? "%s" : writing == TRecipe::TWriting::Integer ? "%d" : "%X");
    const NQ_TString pattern = !format.Empty() ? format : own != nullptr ? *own : plain;
    const auto parsed = TPrintfFormat::Parse(pattern.StringView(), kind);
    const NQ_TAny* const type = Attribute(entry, Keys().type);
    const auto* const number = type == nullptr ? nullptr : type->As<NQ_TInt32>();
    TWriter writer;
    writer.writing = writing;
    writer.key = key.StringView();
    writer.entry = entry;
    writer.format = parsed ? &*parsed : nullptr;
    writer.formatText = pattern.StringView();
    writer.counts = number != nullptr && number->Value() == TName::TName_TypeAutoNumber;
    NQ_TString written;
    TTextInHand text(written);
    TValue given;
    evaluator.SetValueFrom(value, given);
    if (given.kind == TValue::TKind::Text) text.SetElsewhere(given.text->StringView());
    if (!evaluator.Write(writer, given, text)) return evaluator.EndStep();
    text.Settle();
    result = written;
    return true;
  });
}

template <bool (TLoggingEvaluator::*kCut)(const TStage&, TTextInHand&)>
bool CutBy(TNameProblem::TNameProblem_Kind problem, const NQ_TString& ownKey, const NQ_TString& key,
           const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry, TName* names, NQ_TString& result) {
  return Do(names, [&](TLoggingEvaluator& evaluator, TEngine&) {
    const TStage stage{key.StringView(), attribute.StringView(), Attribute(entry, ownKey), problem};
    const NQ_TString source = input;  // result may be the same string
    result = source;
    NQ_TString cut;
    TTextInHand text(cut);
    text.SetElsewhere(source.StringView());
    if (!(evaluator.*kCut)(stage, text)) return evaluator.EndStep();
    text.Settle();
    result = cut;
    return true;
  });
}

bool AskBy(bool keeps, const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  TQueryProblem problem;
  TEngine& engine = names->Engine();
  return keeps ? QueryKeeping(engine, key, *entry, value, problem) : Query(engine, key, *entry, value, problem);
}

}  // namespace

bool LookupHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  return Do(names, [&](TLoggingEvaluator& evaluator, TEngine&) {
    return evaluator.AskStored(key, Attribute(entry, Keys().value), value) == TLookup::Found;
  });
}

bool TimeLookupHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  return Do(names, [&](TLoggingEvaluator& evaluator, TEngine&) {
    return evaluator.AskTime(key, Attribute(entry, Keys().value), value) == TLookup::Found;
  });
}

bool SQLQueryHandler(const NQ_TString& key, NQ_TDict*, TName* names, NQ_TAny& value) {
  return Do(names,
            [&](TLoggingEvaluator& evaluator, TEngine&) { return evaluator.AskSql(key, value) == TLookup::Found; });
}

bool ServerQueryHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  return AskBy(true, key, entry, names, value);
}

bool ServerQueryHandlerNoCache(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  return AskBy(false, key, entry, names, value);
}

bool StringTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                       TName* names, NQ_TString& result) {
  return WriteBy(TRecipe::TWriting::Text, key, value, format, entry, names, result);
}

bool IntegerTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                        TName* names, NQ_TString& result) {
  return WriteBy(TRecipe::TWriting::Integer, key, value, format, entry, names, result);
}

bool TimeTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                     TName* names, NQ_TString& result) {
  return WriteBy(TRecipe::TWriting::Time, key, value, format, entry, names, result);
}

bool TNameElemHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry,
                      TName* names, NQ_TString& result) {
  return CutBy<&TLoggingEvaluator::CutElem>(TNameProblem::TNameProblem_KindElem, Keys().elem, key, input, attribute,
                                            entry, names, result);
}

bool TNameExtractHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry,
                         TName* names, NQ_TString& result) {
  return CutBy<&TLoggingEvaluator::CutExtract>(TNameProblem::TNameProblem_KindExtract, Keys().extract, key, input,
                                               attribute, entry, names, result);
}

bool TNameRegexHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry,
                       TName* names, NQ_TString& result) {
  return CutBy<&TLoggingEvaluator::CutPattern>(TNameProblem::TNameProblem_KindRegex, Keys().regex, key, input,
                                               attribute, entry, names, result);
}

TName::TLookupFunction BuiltInLookup(TName::TName_Lookup lookup) {
  switch (lookup) {
    case TName::TName_LookupValue:
      return &LookupHandler;
    case TName::TName_LookupSQLQuery:
      return &SQLQueryHandler;
    case TName::TName_LookupTime:
      return &TimeLookupHandler;
    case TName::TName_LookupServerQuery:
      return &ServerQueryHandler;
    case TName::TName_LookupServerQueryNoCache:
      return &ServerQueryHandlerNoCache;
    default:
      return nullptr;
  }
}

}  // namespace templatenames
