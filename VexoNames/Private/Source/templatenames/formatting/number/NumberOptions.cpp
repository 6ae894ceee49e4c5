#include "formatting/number/NumberOptions.h"

#include <algorithm>
#include <cstddef>

#include "formatting/OptionPlaces.h"
#include "formatting/OptionTable.h"

namespace templatenames {
namespace {

struct TNumberKeys {
  enum TKey : std::size_t {
    kInputDecimalSeparator,
    kInputThousandsSeparator,
    kDecimalSeparator,
    kThousandsSeparator,
    kConvert,
    kConvertUnitCategory,
    kConvertFromUnit,
    kConvertToUnit,
    kDecimals,
    kAddLeadingZeros,
    kPreferredIntegerLength,
    kCount,
  };

  static const auto& All() { return OptionKeys<TOptionReader::Number, kCount>(); }
};

using TPlaces = TOptionPlaces<TNumberKeys>;

/// Sets the unit to the first one of the option's text; false, with the unit unchanged, when there is none.
bool ReadFirstUnit(const TPlaces& places, TNumberKeys::TKey key, char16_t& unit) {
  const NQ_TString& text = places.Text(key);
  if (text.Empty()) return false;
  unit = text[0];
  return true;
}

}  // namespace

TNumberOptions ReadNumberOptions(const NQ_TDict& options) {
  const TPlaces& places = TPlaces::In(options);
  TNumberOptions read;
  ReadFirstUnit(places, TNumberKeys::kInputDecimalSeparator, read.input.decimal);
  read.input.grouping = ReadFirstUnit(places, TNumberKeys::kInputThousandsSeparator, read.input.group);
  ReadFirstUnit(places, TNumberKeys::kDecimalSeparator, read.output.decimal);
  read.output.grouping = ReadFirstUnit(places, TNumberKeys::kThousandsSeparator, read.output.group);
  read.convert = places.Flag(TNumberKeys::kConvert);
  if (read.convert) {
    read.category = &places.Text(TNumberKeys::kConvertUnitCategory);
    read.from = &places.Text(TNumberKeys::kConvertFromUnit);
    read.to = &places.Text(TNumberKeys::kConvertToUnit);
  }
  read.decimals = std::min(places.Number(TNumberKeys::kDecimals).value_or(-1), kMaxDecimals);
  if (places.Flag(TNumberKeys::kAddLeadingZeros))
    read.integerLength = std::min(places.Number(TNumberKeys::kPreferredIntegerLength).value_or(-1), kMaxIntegerLength);
  return read;
}

int TNumberOptions::DecimalsFor(std::u16string_view text) const {
  if (decimals >= 0) return decimals;
  const std::size_t separator = text.rfind(input.decimal);
  if (separator == text.npos) return 0;
  return static_cast<int>(std::min<std::size_t>(text.size() - separator - 1, kMaxDecimals));
}

int TNumberOptions::Width(int decimalsWritten) const {
  if (integerLength < 0) return 0;
  return decimalsWritten == 0 ? integerLength : integerLength + decimalsWritten + 1;
}

}  // namespace templatenames
