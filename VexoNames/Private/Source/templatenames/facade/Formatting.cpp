// TName: what is done to the text of a value last, by the options of its name.
#include <algorithm>
#include <array>
#include <string_view>

#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/DateLog.h"
#include "engine/Entry.h"
#include "engine/NameStore.h"
#include "formatting/OptionPlaces.h"
#include "formatting/date/DateTime.h"
#include "formatting/number/FormatNumber.h"
#include "formatting/text/FormatText.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;
using templatenames::TOptionPlaces;
using templatenames::TPlan;
using templatenames::TToken;

namespace {

using TFormatter = bool (*)(int debugLevel, const NQ_TDict& options, NQ_TString& value);

struct TFormatKey {
  enum TKey : std::size_t { kDataFormat, kCount };
  static const std::array<NQ_TString, kCount>& All() {
    static const auto* const keys = new std::array<NQ_TString, kCount>{NQ_TString(u"DataFormat")};
    return *keys;
  }
};

struct TDataFormat {
  std::u16string_view word;
  TFormatter formatter;
};

bool FormatText(int, const NQ_TDict& options, NQ_TString& value) { return templatenames::FormatText(options, value); }

bool FormatDate(int debugLevel, const NQ_TDict& options, NQ_TString& value) {
  const NQ_TString before = debugLevel >= templatenames::kLevelOfDateSteps ? value : NQ_TString();
  const templatenames::TDateOutcome outcome = templatenames::FormatDateTimeValue(options, value, nullptr);
  templatenames::LogDate(debugLevel, options, before, value, outcome);
  return outcome.written;
}

constexpr TDataFormat kDataFormats[] = {
    {u"TEXT", &FormatText},
    {u"NUMBER", &templatenames::FormatNumber},
    {u"DATETIME", &FormatDate},
};

void Format(const NQ_TAny* attribute, int debugLevel, NQ_TString& value) {
  const auto* const options = attribute == nullptr ? nullptr : attribute->As<NQ_TDict>();
  if (value.Empty() || options == nullptr || options->IsEmpty()) return;
  const NQ_TString& word = TOptionPlaces<TFormatKey>::In(*options).Text(TFormatKey::kDataFormat);
  for (const TDataFormat& format : kDataFormats) {
    if (word.Equals(format.word)) {
      format.formatter(debugLevel, *options, value);
      return;
    }
  }
  Log(0, "Unsupported DataFormat ", word);
}

}  // namespace

void TName::SetFormattingOptions(const NQ_TString& key, const NQ_TDict& options) {
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(Keys().formattingOptions, options);
}

// A formatter that fails leaves the value as it was, and the token succeeds all the same.
bool TName::ApplyFormattingOptions(const NQ_TString& key, TEntry& entry, NQ_TString& value) {
  if (Logs(2)) Log(2, "TName::ApplyFormattingOptions: key = \"", key, '"');
  Format(entry.Slots().formattingOptions, GetDebugLevel(), value);
  return true;
}

// Appends the formatted value of a name with options; false, with nothing changed, when it is more than a stored text
// or number.
bool TName::AppendFormatted(TToken& token, const TPlan& plan, NQ_TString& out, int& count) {
  if (plan.kind == TPlan::TKind::Text && !plan.plain) return false;  // the names in it may need the same string
  NQ_TString& value = names_->EmptyText();
  const std::int64_t before = budget_.characters;
  if (!AppendUnformatted(token, plan, value, count)) return false;
  Format(token.entry->Slots().formattingOptions, GetDebugLevel(), value);
  budget_.characters = std::min(budget_.characters, before - value.Length());
  AppendUnits(value.StringView(), out);
  return true;
}
