// The attributes of a name that are texts.
#pragma once

#include <string_view>

#include "engine/Engine.h"
#include "text/Log.h"

namespace templatenames {

/// The text; the empty string for an attribute that is not set. Throws NQ_ENoSuchKey.
inline const NQ_TString& GetStringAttribute(TEngine& engine, const NQ_TString& key, const NQ_TString& attribute) {
  const std::lock_guard guard(engine.lock);
  const auto* const text = std::as_const(engine.EntryOf(key)).Get<NQ_TString>(attribute);
  return text == nullptr ? NQ_TString::sEmpty : *text;
}

/// Throws NQ_ENoSuchKey. An operation without a name is not logged.
inline void SetStringAttribute(TEngine& engine, std::string_view operation, std::string_view label,
                               const NQ_TString& key, const NQ_TString& attribute, const NQ_TString& value) {
  if (!operation.empty() && engine.Logs(2))
    Log(2, "TName::", operation, ": Key = \"", key, "\"; ", label, " = \"", value, '"');
  const std::lock_guard guard(engine.lock);
  engine.EntryOf(key).Add(attribute, value);
}

}  // namespace templatenames
