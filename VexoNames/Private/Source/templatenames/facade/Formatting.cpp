// TName: what is done to the text of a value last, by the options of its name.
#include <algorithm>

#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/Entry.h"
#include "engine/FormattingStep.h"
#include "engine/NameStore.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;
using templatenames::TPlan;
using templatenames::TToken;

namespace {

bool Format(const NQ_TAny* attribute, int debugLevel, NQ_TString& value) {
  const auto* const options = attribute == nullptr ? nullptr : attribute->As<NQ_TDict>();
  return options == nullptr ||
         templatenames::ApplyFormattingOptions(*options, debugLevel, templatenames::kMostEncoded, value, nullptr);
}

}  // namespace

void TName::SetFormattingOptions(const NQ_TString& key, const NQ_TDict& options) {
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(Keys().formattingOptions, options);
}

// A formatter that cannot read the value leaves it as it was, and the token succeeds all the same.
bool TName::ApplyFormattingOptions(const NQ_TString& key, TEntry& entry, NQ_TString& value) {
  if (Logs(2)) Log(2, "TName::ApplyFormattingOptions: key = \"", key, '"');
  if (Format(entry.Slots().formattingOptions, GetDebugLevel(), value)) return true;
  LogToken(key, " More characters than the limit allows");
  return false;
}

// Appends the formatted value of a name with options; false, with nothing changed, when it is more than a stored text
// or number.
bool TName::AppendFormatted(TToken& token, const TPlan& plan, NQ_TString& out, int& count) {
  if (plan.kind == TPlan::TKind::Text && !plan.plain) return false;  // the names in it may need the same string
  NQ_TString& value = names_->EmptyText();
  const std::int64_t before = budget_.characters;
  if (!AppendUnformatted(token, plan, value, count)) return false;
  if (!Format(token.entry->Slots().formattingOptions, GetDebugLevel(), value)) {
    budget_.characters = before;  // the long way fails again, and says why
    ++budget_.tokens;
    return false;
  }
  budget_.characters = std::min(budget_.characters, before - value.Length());
  AppendUnits(value.StringView(), out);
  return true;
}
