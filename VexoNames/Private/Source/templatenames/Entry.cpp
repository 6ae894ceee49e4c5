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

bool TEntry::ValueIsPlain(const NQ_TString& value) {
  constexpr unsigned int kShort = 1024;  // units: a value that is replaced is not held on to for much longer
  if (value.WideText() == plainValue_.WideText()) return true;
  if (NeedsResolving(value.StringView())) return false;
  if (value.Length() <= kShort) plainValue_ = value;
  return true;
}

NQ_IPackable* TEntry::NQ_Clone(void*) const { return new (std::nothrow) TEntry(*this); }

NQ_IPackable* TEntry::NQ_Move() { return new (std::nothrow) TEntry(std::move(*this)); }

}  // namespace templatenames
