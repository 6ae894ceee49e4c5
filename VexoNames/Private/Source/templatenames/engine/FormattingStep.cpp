#include "engine/FormattingStep.h"

#include <algorithm>
#include <string_view>

#include "engine/DateLog.h"
#include "formatting/OptionPlaces.h"
#include "formatting/OptionTable.h"
#include "formatting/date/DateTime.h"
#include "formatting/number/FormatNumber.h"
#include "formatting/text/FormatText.h"
#include "text/Log.h"

namespace templatenames {
namespace {

struct TChoiceKeys {
  enum TKey : std::size_t { kDataFormat, kCount };
  static const auto& All() { return OptionKeys<TOptionReader::Choice, kCount>(); }
};

struct TCall {
  const NQ_TDict& options;
  int debugLevel;
  std::int64_t mostCharacters;
  NQ_TString& value;
  TFindings* findings;
};

bool ApplyText(const TCall& call) {
  return FormatText(call.options, static_cast<std::size_t>(std::max<std::int64_t>(call.mostCharacters, 0)), call.value);
}

void LogNumber(int debugLevel, const NQ_TString& value, const TNumberOutcome& outcome) {
  if (outcome.kind == TNumberOutcome::TKind::NotANumber && debugLevel > 0)
    Log(1, "Failed to convert ", value, " to number.  Caused by:\n", outcome.error);
  if (outcome.kind == TNumberOutcome::TKind::NotWritten && debugLevel > 5)
    Log(6, "Error converting ", outcome.number, " to string");
}

bool ApplyNumber(const TCall& call) {
  const NQ_TString before = call.findings == nullptr ? NQ_TString() : call.value;
  const TNumberOutcome outcome = FormatNumber(call.options, call.value);
  if (outcome.kind != TNumberOutcome::TKind::Written) LogNumber(call.debugLevel, call.value, outcome);
  if (call.findings != nullptr) AddNumberFindings(before, outcome, *call.findings);
  return true;
}

bool ApplyDate(const TCall& call) {
  const NQ_TString before = call.debugLevel >= kLevelOfDateSteps ? call.value : NQ_TString();
  const TDateOutcome outcome = FormatDateTimeValue(call.options, call.value, call.findings);
  if (call.debugLevel >= 0) LogDate(call.debugLevel, call.options, before, call.value, outcome);
  return true;
}

struct TDataFormat {
  std::u16string_view word;
  bool (*apply)(const TCall& call);
};

constexpr TDataFormat kDataFormats[] = {
    {kDataFormatWords[0], &ApplyText},
    {kDataFormatWords[1], &ApplyNumber},
    {kDataFormatWords[2], &ApplyDate},
};

}  // namespace

bool ApplyFormattingOptions(const NQ_TDict& options, int debugLevel, std::int64_t mostCharacters, NQ_TString& value,
                            TFindings* findings) {
  if (value.Empty() || options.IsEmpty()) return true;
  const NQ_TString& word = TOptionPlaces<TChoiceKeys>::In(options).Text(TChoiceKeys::kDataFormat);
  for (const TDataFormat& format : kDataFormats)
    if (word.Equals(format.word)) return format.apply({options, debugLevel, mostCharacters, value, findings});
  if (debugLevel >= 0) Log(0, "Unsupported DataFormat ", word);
  return true;
}

}  // namespace templatenames
