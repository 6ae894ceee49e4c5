// Reading formatting options. An option that holds a value of another kind counts as absent.
#pragma once

#include <cstdint>
#include <optional>

#include "NQ_TBoxed.h"
#include "NQ_TDict.h"

namespace templatenames {

/// The text of an option; empty when it is absent. Valid while the options are unchanged.
inline const NQ_TString& TextOption(const NQ_TDict& options, const NQ_TString& key) {
  const auto* const text = options.Get<NQ_TString>(key);
  return text == nullptr ? NQ_TString::sEmpty : *text;
}

/// Whether an option is present and true.
inline bool BoolOption(const NQ_TDict& options, const NQ_TString& key) {
  const auto* const flag = options.Get<NQ_TBool>(key);
  return flag != nullptr && flag->Value();
}

/// The number in an option.
inline std::optional<std::int32_t> IntOption(const NQ_TDict& options, const NQ_TString& key) {
  const auto* const number = options.Get<NQ_TInt32>(key);
  return number == nullptr ? std::nullopt : std::optional(number->Value());
}

}  // namespace templatenames
