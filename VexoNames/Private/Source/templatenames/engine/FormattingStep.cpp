#include "engine/FormattingStep.h"
#include <array>
#include "engine/DateLog.h"
#include "formatting/date/DateTime.h"
#include "formatting/number/FormatNumber.h"
#include "formatting/text/FormatText.h"
#include "formatting/OptionPlaces.h"
#include "text/Log.h"
namespace templatenames {
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

bool FormatText(int, const NQ_TDict& options, NQ_TString& value) { return ::templatenames::FormatText(options, value); }

bool FormatDate(int debugLevel, const NQ_TDict& options, NQ_TString& value) {
  const NQ_TString before = debugLevel >= kLevelOfDateSteps ? value : NQ_TString();
  const TDateOutcome outcome = FormatDateTimeValue(options, value, nullptr);
  LogDate(debugLevel, options, before, value, outcome);
  return outcome.written;
}

constexpr TDataFormat kDataFormats[] = {
    {u"TEXT", &FormatText},
    {u"NUMBER", &templatenames::FormatNumber},
    {u"DATETIME", &FormatDate},
};

}
bool ApplyFormattingOptions(const NQ_TDict& options, int debugLevel, std::int64_t, NQ_TString& value, TFindings*) {
  const NQ_TString& word = TOptionPlaces<TFormatKey>::In(options).Text(TFormatKey::kDataFormat);
  for (const TDataFormat& format : kDataFormats) {
    if (word.Equals(format.word)) {
      format.formatter(debugLevel, options, value);
      return true;
    }
  }
  Log(0, "Unsupported DataFormat ", word);
  return true;
}
}
