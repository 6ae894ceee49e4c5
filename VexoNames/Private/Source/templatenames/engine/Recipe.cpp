#include "engine/Recipe.h"

#include "NQ_TBoxed.h"
#include "engine/Attributes.h"
#include "engine/BuiltIns.h"
#include "engine/Entry.h"
#include "engine/HandlerPointers.h"

namespace templatenames {
namespace {

using TSource = TRecipe::TSource;
using TWriting = TRecipe::TWriting;

TSource SourceOf(const TEntrySlots& slots) {
  if (slots.lookupHandler2 != nullptr)
    return LookupObjectIn(slots.lookupHandler2) == nullptr ? TSource::None : TSource::Object;
  const TName::TLookupFunction function = LookupFunctionIn(slots.lookupHandler);
  if (function == &LookupHandler) return TSource::Stored;
  if (function == &ServerQueryHandler) return TSource::Query;
  if (function == &ServerQueryHandlerNoCache) return TSource::UncachedQuery;
  if (function == &TimeLookupHandler) return TSource::Time;
  if (function == &SQLQueryHandler) return TSource::Sql;
  return function == nullptr ? TSource::None : TSource::Function;
}

TWriting WritingOf(const TEntrySlots& slots) {
  const TName::TTypeFunction function = TypeFunctionIn(slots.typeHandler);
  if (function == &StringTypeHandler) return TWriting::Text;
  if (function == &IntegerTypeHandler) return TWriting::Integer;
  if (function == &TimeTypeHandler) return TWriting::Time;
  return function == nullptr ? TWriting::None : TWriting::Handler;
}

/// Whether the source gives the stored value when there is one. Queries do: it is the reply that was kept.
bool GivesStored(TSource source) {
  return source == TSource::Stored || source == TSource::Query || source == TSource::UncachedQuery;
}

/// Whether the attribute, if there is one, can change only by being set anew.
bool IsSteady(const NQ_TAny* attribute) { return attribute == nullptr || attribute->IsSteady(); }

/// The entry's format, else the type's; null when it is refused.
const TPrintfFormat* FormatOf(TEntry& entry, const NQ_TAny* own, TPrintfFormat::TKind kind) {
  const NQ_TString* const text = TextIn(own);
  const bool plain = text == nullptr || *text == (kind == TPrintfFormat::TKind::Text ? u"%s" : u"%d");
  return plain ? &PlainFormat(kind) : entry.KeepFormat(TPrintfFormat::Parse(text->StringView(), kind));
}

// A URL is known as its text.
void KnowText(TEntry& entry, const TEntrySlots& slots, TRecipe& recipe) {
  const auto* const url = recipe.writing == TWriting::Text ? slots.value->As<NQ_TURL>() : nullptr;
  recipe.text = url == nullptr ? TextIn(slots.value) : &entry.KeepText(FileText(*url));
  if (recipe.text == nullptr) return;
  recipe.known = TRecipe::TKnown::Text;
  recipe.units = recipe.text->StringView();
  recipe.isUrl = url != nullptr;
  recipe.plain = recipe.isUrl || entry.ValueIsPlain(*recipe.text);
}

void KnowNumber(const TEntrySlots& slots, TRecipe& recipe) {
  const auto* const number = slots.value->As<NQ_TInt32>();
  if (number == nullptr) return;
  recipe.known = TRecipe::TKnown::Number;
  recipe.number = number->Value();
}

}  // namespace

TRecipe Compile(TEntry& entry, bool& steady) {
  TRecipe recipe;
  const TEntrySlots& slots = entry.Slots();
  recipe.source = SourceOf(slots);
  recipe.writing = WritingOf(slots);
  recipe.stages = slots.HasStages();
  recipe.options = slots.formattingOptions != nullptr;
  if (recipe.writing == TWriting::Integer) {
    const auto* const type = slots.type == nullptr ? nullptr : slots.type->As<NQ_TInt32>();
    recipe.counts = type != nullptr && type->Value() == TName::TName_TypeAutoNumber;
    recipe.format = FormatOf(entry, slots.format, TPrintfFormat::TKind::Integer);
  }
  if (slots.value != nullptr && GivesStored(recipe.source)) {
    KnowText(entry, slots, recipe);
    if (recipe.known == TRecipe::TKnown::Nothing) KnowNumber(slots, recipe);
  }
  if (recipe.writing == TWriting::Text) recipe.format = FormatOf(entry, slots.format, TPrintfFormat::TKind::Text);
  const bool writtenAsIs = recipe.isUrl || (recipe.format != nullptr && recipe.format->IsPlain());
  recipe.asIs = recipe.known == TRecipe::TKnown::Text && recipe.writing == TWriting::Text && recipe.plain &&
                !recipe.stages && !recipe.options && writtenAsIs;
  recipe.isPlainNumber = recipe.known == TRecipe::TKnown::Number && recipe.writing == TWriting::Integer &&
                         !recipe.counts && !recipe.stages && !recipe.options;
  steady = IsSteady(slots.value) && IsSteady(slots.format) && IsSteady(slots.type) && IsSteady(slots.lookupHandler) &&
           IsSteady(slots.lookupHandler2) && IsSteady(slots.typeHandler);
  return recipe;
}

const TPrintfFormat& PlainFormat(TPrintfFormat::TKind kind) {
  static const auto text = *TPrintfFormat::Parse(u"%s", TPrintfFormat::TKind::Text);
  static const auto integer = *TPrintfFormat::Parse(u"%d", TPrintfFormat::TKind::Integer);
  return kind == TPrintfFormat::TKind::Text ? text : integer;
}

}  // namespace templatenames
