#include "Entry.h"

#include "AttributeKeys.h"
#include "text/Scan.h"

namespace templatenames {

const TAttributeKeys& Keys() {
  static const auto* const keys = new TAttributeKeys;
  return *keys;
}

TEntry::~TEntry() = default;

void TEntry::FindSlots() {
  const TAttributeKeys& keys = Keys();
  slots_ = {ValueOfKey(keys.type),          ValueOfKey(keys.value),
            ValueOfKey(keys.format),        ValueOfKey(keys.typeHandler),
            ValueOfKey(keys.lookupHandler), ValueOfKey(keys.lookupHandler2),
            ValueOfKey(keys.elem),          ValueOfKey(keys.extract),
            ValueOfKey(keys.regex),         ValueOfKey(keys.formattingOptions)};
  slotsVersion_ = KeysVersion();
}

bool TEntry::IsPlain(const NQ_TString& text) {
  if (text.WideText() == plainText_.WideText()) return true;
  if (NeedsResolving(text.StringView())) return false;
  plainText_ = text;
  return true;
}

NQ_IPackable* TEntry::NQ_Clone(void*) const { return new (std::nothrow) TEntry(*this); }

NQ_IPackable* TEntry::NQ_Move() { return new (std::nothrow) TEntry(std::move(*this)); }

}  // namespace templatenames
