// TName: what is done to the text of a value last, by the options of its name.
#include "AttributeKeys.h"
#include "Entry.h"
#include "TName.h"
#include "formatting/DateTime.h"
#include "formatting/FormatNumber.h"
#include "formatting/FormatText.h"
#include "formatting/Options.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TEntry;

namespace {

using TFormatter = bool (*)(int debugLevel, const NQ_TDict& options, NQ_TString& value);

struct TDataFormat {
  const char16_t* word;
  TFormatter formatter;
};

bool FormatText(int, const NQ_TDict& options, NQ_TString& value) { return templatenames::FormatText(options, value); }

constexpr TDataFormat kDataFormats[] = {
    {u"TEXT", &FormatText},
    {u"NUMBER", &templatenames::FormatNumber},
    {u"DATETIME", &templatenames::FormatDateTimeValue},
};

}  // namespace

void TName::SetFormattingOptions(const NQ_TString& key, const NQ_TDict& options) {
  const std::lock_guard guard(lock_);
  FindEntry(key).Add(Keys().formattingOptions, options);
}

// A formatter that fails leaves the value as it was, and the token succeeds all the same.
bool TName::ApplyFormattingOptions(const NQ_TString& key, TEntry& entry, NQ_TString& value) {
  if (Logs(2)) Log("TName::ApplyFormattingOptions: key = \"", key, '"');
  const NQ_TAny* const attribute = entry.Slots().formattingOptions;
  if (value.Empty() || attribute == nullptr) return true;
  const auto* const options = attribute->As<NQ_TDict>();
  if (options == nullptr || options->IsEmpty()) return true;
  const NQ_TString& word = templatenames::TextOption(*options, Keys().dataFormat);
  for (const TDataFormat& format : kDataFormats) {
    if (word == format.word) return format.formatter(GetDebugLevel(), *options, value), true;
  }
  Log("Unsupported DataFormat ", word);
  return true;
}
