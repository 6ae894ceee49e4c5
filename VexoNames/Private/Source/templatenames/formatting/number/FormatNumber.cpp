#include "formatting/number/FormatNumber.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>
#include <locale>
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

TNumberOutcome FormatNumber(const NQ_TDict& options, NQ_TString& value) {
  const TNumberOptions how = ReadNumberOptions(options);
  const auto read = ReadPlainNumber(value.StringView(), how.input);
  if (!read || !StreamsArePlain(value.StringView())) return FormatNumberByStreams(how, value);
  const double number = how.convert ? ConvertUnit(*how.category, *how.from, *how.to, read->number) : read->number;
  if (!std::isfinite(number)) return FormatNumberByStreams(how, value);
  const int decimals = how.DecimalsFor(value.StringView());
  value.Clear();
  AppendPlainNumber(number, decimals, how.Width(decimals), how.output, value);
  TNumberOutcome outcome;
  outcome.read = read->end;
  return outcome;
}

}  // namespace templatenames
