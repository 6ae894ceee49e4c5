#include "formatting/number/NumberByStreams.h"

#include <unicode/utf16.h>

#include <ios>
#include <locale>
#include <sstream>
#include <string>

#include "formatting/number/Units.h"
#include "text/Log.h"

namespace templatenames {
namespace {

// The text of a value that is looked at: streams hold it several times over, four bytes for each character.
constexpr std::size_t kMostRead = 65'536;

// The punctuation of one stream.
class NumericFormatter final : public std::numpunct<wchar_t> {
 public:
  explicit NumericFormatter(const TPunctuation& punctuation) : punctuation_(punctuation) {}

  /// The global locale with this punctuation.
  static std::locale Locale(const TPunctuation& punctuation) {
    return std::locale(std::locale(), new NumericFormatter(punctuation));
  }

 protected:
  wchar_t do_decimal_point() const override { return punctuation_.decimal; }
  wchar_t do_thousands_sep() const override { return punctuation_.group; }
  std::string do_grouping() const override { return punctuation_.grouping ? "\3" : ""; }

 private:
  const TPunctuation punctuation_;
};

// An unpaired surrogate becomes U+FFFD, as it does wherever text leaves a string.
std::wstring CodePoints(std::u16string_view text) {
  std::wstring codePoints;
  codePoints.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    if (!U16_IS_SURROGATE(unit)) {
      codePoints.push_back(unit);
    } else if (U16_IS_LEAD(unit) && at + 1 < text.size() && U16_IS_TRAIL(text[at + 1])) {
      codePoints.push_back(static_cast<wchar_t>(U16_GET_SUPPLEMENTARY(unit, text[++at])));
    } else {
      codePoints.push_back(L'\uFFFD');
    }
  }
  return codePoints;
}

// Throws std::ios_base::failure when there is no number.
double Read(std::u16string_view text, const TPunctuation& punctuation) {
  std::wistringstream stream(CodePoints(text.substr(0, kMostRead)));
  stream.imbue(NumericFormatter::Locale(punctuation));
  stream.exceptions(std::ios_base::failbit | std::ios_base::badbit);
  double number = 0;
  stream >> number;
  if (stream.eof() && text.size() > kMostRead) stream.setstate(std::ios_base::failbit);
  return number;
}

}  // namespace

bool FormatNumberByStreams(int debugLevel, const TNumberOptions& options, NQ_TString& value) {
  double number = 0;
  try {
    number = Read(value.StringView(), options.input);
  } catch (const std::ios_base::failure& error) {
    if (debugLevel > 0) Log(1, "Failed to convert ", value, " to number.  Caused by:\n", error.what());
    return false;
  }
  if (options.convert) number = ConvertUnit(*options.category, *options.from, *options.to, number);
  const int decimals = options.DecimalsFor(value.StringView());
  std::wostringstream stream;
  stream.imbue(NumericFormatter::Locale(options.output));
  stream << std::fixed;
  stream.precision(decimals);
  if (options.integerLength >= 0) {
    stream.fill(L'0');
    stream.width(options.Width(decimals));
  }
  stream << number;
  if (!stream && debugLevel > 5) Log(6, "Error converting ", number, " to string");
  const std::wstring text = stream ? stream.str() : std::wstring();
  value = NQ_TString(text.data(), static_cast<int>(text.size()));
  return true;
}

}  // namespace templatenames
