#include "formatting/number/FormatNumber.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>
#include <locale>
#include <optional>
#include <string_view>
#include <typeinfo>

#include "formatting/number/NumberByStreams.h"
#include "formatting/number/NumberOptions.h"
#include "formatting/number/PlainNumber.h"
#include "formatting/number/Units.h"

namespace templatenames {
namespace {

template <class TFacet>
bool HasStandard(const std::locale& locale) {
  return typeid(std::use_facet<TFacet>(locale)) == typeid(TFacet);
}

// Whether streams with a locale that the program has made its global one read the white space before the number, the
// number, and write numbers, as those of the "C" locale do.
bool TreatsAsciiPlainly(const std::locale& locale, std::u16string_view text) {
  if (!HasStandard<std::num_get<wchar_t>>(locale) || !HasStandard<std::num_put<wchar_t>>(locale)) return false;
  const auto& characters = std::use_facet<std::ctype<wchar_t>>(locale);
  constexpr std::string_view kSymbols = "-+.0123456789eE";
  wchar_t wide[kSymbols.size()];
  characters.widen(kSymbols.data(), kSymbols.data() + kSymbols.size(), wide);
  if (!std::equal(kSymbols.begin(), kSymbols.end(), std::begin(wide))) return false;
  for (const char16_t unit : text) {
    const bool space = unit == u' ' || (unit >= u'\t' && unit <= u'\r');
    if (characters.is(std::ctype_base::space, static_cast<wchar_t>(unit)) != space) return false;
    if (!space) return true;
  }
  return true;
}

// Whether the processor rounds to nearest, as it does unless the program says otherwise: only then it makes no
// difference whether the smallest number is added to 1 or taken from it.
bool RoundsToNearest() {
  static volatile float smallest = FLT_MIN;
  const float little = smallest;
  return 1.0F + little == 1.0F - little;
}

bool StreamsArePlain(std::u16string_view text) {
  if (!RoundsToNearest()) return false;
  static const std::locale& classic = std::locale::classic();
  const std::locale global;
  return global == classic || TreatsAsciiPlainly(global, text);
}

}  // namespace

bool FormatNumber(int debugLevel, const NQ_TDict& options, NQ_TString& value) {
  const TNumberOptions number = ReadNumberOptions(options);
  std::optional<double> read = ReadPlainNumber(value.StringView(), number.input);
  if (!read || !StreamsArePlain(value.StringView())) return FormatNumberByStreams(debugLevel, number, value);
  if (number.convert) read = ConvertUnit(*number.category, *number.from, *number.to, *read);
  if (!std::isfinite(*read)) return FormatNumberByStreams(debugLevel, number, value);
  const int decimals = number.DecimalsFor(value.StringView());
  value.Clear();
  AppendPlainNumber(*read, decimals, number.Width(decimals), number.output, value);
  return true;
}

}  // namespace templatenames
