#include "engine/Entry.h"

#include "engine/AttributeKeys.h"
#include "text/Scan.h"

namespace templatenames {

const TAttributeKeys& Keys() {
  static const auto* const keys = new TAttributeKeys;
  return *keys;
}

TEntry::~TEntry() = default;

void TEntry::FindSlots() {
  const TAttributeKeys& keys = Keys();
  const auto find = [this](const NQ_TString& key) { return std::as_const(*this).ValueOfKey(key); };
  slots_ = {find(keys.type),          find(keys.value),
            find(keys.format),        find(keys.typeHandler),
            find(keys.lookupHandler), find(keys.lookupHandler2),
            find(keys.elem),          find(keys.extract),
            find(keys.regex),         find(keys.formattingOptions)};
  slotsVersion_ = KeysVersion();
}

bool TEntry::ValueIsPlain(const NQ_TString& value) {
  constexpr unsigned int kShort = 1024;  // units: a value that is replaced is not held on to for much longer
  if (value.WideText() == plainValue_.WideText()) return true;
  if (NeedsResolving(value.StringView())) return false;
  if (value.Length() <= kShort) plainValue_ = value;
  return true;
}

const TRecipe& TEntry::CompileRecipe() {
  ascii_ = nullptr;
  recipeVersion_ = 0;  // not while it is being compiled
  bool steady = false;
  recipe_ = Compile(*this, steady);
  recipeVersion_ = steady ? ContentVersion() : 0;
  return recipe_;
}

const char* TEntry::FindAscii() {
  const std::string_view narrow = recipe_.text->Narrow();             // kept with the text
  if (narrow.size() == recipe_.units.size()) ascii_ = narrow.data();  // every other unit takes more than one byte
  return ascii_;
}

const TPrintfFormat* TEntry::KeepFormat(std::optional<TPrintfFormat> format) {
  format_ = format ? std::make_unique<const TPrintfFormat>(*std::move(format)) : nullptr;
  return format_.get();
}

NQ_IPackable* TEntry::NQ_Clone(void*) const { return new (std::nothrow) TEntry(*this); }

NQ_IPackable* TEntry::NQ_Move() { return new (std::nothrow) TEntry(std::move(*this)); }

}  // namespace templatenames
