// TName: what is done to the text of a value last, by the options of its name.
#include "engine/AttributeKeys.h"
#include "engine/Engine.h"

void TName::SetFormattingOptions(const NQ_TString& key, const NQ_TDict& options) {
  const std::lock_guard guard(engine_->lock);
  engine_->EntryOf(key).Add(templatenames::Keys().formattingOptions, options);
}
