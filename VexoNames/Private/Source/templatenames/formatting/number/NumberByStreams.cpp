#include "formatting/number/NumberByStreams.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <ios>
#include <locale>
#include <sstream>
#include <string>

#include "formatting/number/Units.h"

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

// How many units the last characters of the text take; an unpaired surrogate is one character.
std::size_t UnitsOfLast(std::size_t characters, std::u16string_view text) {
  std::size_t begin = text.size();
  for (; characters > 0; --characters) U16_BACK_1(text, 0, begin);
  return text.size() - begin;
}

struct TRead {
  double number = 0;
  std::size_t end = 0;  // units of the text up to the end of the number
};

// Throws std::ios_base::failure when there is no number.
TRead Read(std::u16string_view text, const TPunctuation& punctuation) {
  const std::u16string_view beginning = text.substr(0, kMostRead);
  std::wistringstream stream(CodePoints(beginning));
  stream.imbue(NumericFormatter::Locale(punctuation));
  stream.exceptions(std::ios_base::failbit | std::ios_base::badbit);
  TRead read;
  stream >> read.number;
  if (stream.eof() && text.size() > kMostRead) stream.setstate(std::ios_base::failbit);
  const auto left = std::max<std::streamsize>(stream.rdbuf()->in_avail(), 0);
  read.end = beginning.size() - UnitsOfLast(static_cast<std::size_t>(left), beginning);
  return read;
}

// The text of the number; false when the stream fails.
bool Write(double number, int decimals, const TNumberOptions& options, NQ_TString& text) {
  std::wostringstream stream;
  stream.imbue(NumericFormatter::Locale(options.output));
  stream << std::fixed;
  stream.precision(decimals);
  if (options.integerLength >= 0) {
    stream.fill(L'0');
    stream.width(options.Width(decimals));
  }
  stream << number;
  const std::wstring written = stream ? stream.str() : std::wstring();
  text = NQ_TString(written.data(), static_cast<int>(written.size()));
  return !stream.fail();
}

}  // namespace

TNumberOutcome FormatNumberByStreams(const TNumberOptions& options, NQ_TString& value) {
  TNumberOutcome outcome;
  TRead read;
  try {
    read = Read(value.StringView(), options.input);
  } catch (const std::ios_base::failure& error) {
    outcome.kind = TNumberOutcome::TKind::NotANumber;
    outcome.error = error.what();
    return outcome;
  }
  if (options.convert) read.number = ConvertUnit(*options.category, *options.from, *options.to, read.number);
  outcome.read = read.end;
  if (!Write(read.number, options.DecimalsFor(value.StringView()), options, value)) {
    outcome.kind = TNumberOutcome::TKind::NotWritten;
    outcome.number = read.number;
  }
  return outcome;
}

}  // namespace templatenames
