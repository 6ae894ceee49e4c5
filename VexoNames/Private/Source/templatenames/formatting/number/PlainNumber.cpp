#include "formatting/number/PlainNumber.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace templatenames {
namespace {

// What a double holds exactly: powers of ten, those below 10^23, and all integers up to this one.
constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                              1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
constexpr std::uint64_t kExactIntegers = std::uint64_t{1} << DBL_MANT_DIG;

// ---- reading

constexpr std::size_t kMostRead = 256;   // longer numbers are rare
constexpr std::size_t kMostDigits = 19;  // any so many fit 64 bits
static_assert(kMostDigits < std::size(kPowers));
constexpr std::size_t kGroup = 3;

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

bool IsSpace(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

// Separators that mean nothing else in a number and stand for the same character in every form of the text.
bool IsPlainSeparator(char16_t unit) {
  constexpr char16_t kReplacement = 0xFFFD;  // an unpaired surrogate becomes one
  if (unit == u'.' || unit == u',') return true;
  return !IsDigit(unit) && unit != u'+' && unit != u'-' && !U16_IS_SURROGATE(unit) && unit != kReplacement;
}

bool IsPlain(const TPunctuation& punctuation) {
  return IsPlainSeparator(punctuation.decimal) && (!punctuation.grouping || IsPlainSeparator(punctuation.group));
}

// digits × 10^-scale, rounded to nearest; the scale is at most kMostDigits.
std::optional<double> Scaled(std::uint64_t digits, std::size_t scale) {
  // Both exact: the quotient is the one rounding there is.
  if (digits <= kExactIntegers) return static_cast<double>(digits) / kPowers[scale];
  char text[48];
  char* end = std::to_chars(text, text + kMostDigits + 1, digits).ptr;
  *end++ = 'e';
  *end++ = '-';
  end = std::to_chars(end, std::end(text), scale).ptr;
  double number = 0;
  if (std::from_chars(text, end, number).ec != std::errc()) return std::nullopt;
  return number;
}

// The digits of a number while they are read.
class TDigits {
 public:
  explicit TDigits(std::u16string_view text) : begin_(text.data()), at_(text.data()), end_(text.data() + text.size()) {}

  bool AtEnd() const { return at_ == end_; }
  bool Take(char16_t unit) { return at_ != end_ && *at_ == unit && (++at_, true); }
  template <class Predicate>
  void Skip(Predicate wanted) {
    while (at_ != end_ && wanted(*at_)) ++at_;
  }
  /// Takes the digits here; returns how many they are.
  std::size_t TakeDigits() {
    const char16_t* const begin = at_;
    for (; at_ != end_ && IsDigit(*at_); ++at_) value_ = value_ * 10 + static_cast<std::uint64_t>(*at_ - u'0');
    return static_cast<std::size_t>(at_ - begin);
  }
  /// Whether the streams might read on from here.
  bool MayGoOn() const { return at_ != end_ && (*at_ == u'e' || *at_ == u'E'); }
  /// How many units have been taken.
  std::size_t Taken() const { return static_cast<std::size_t>(at_ - begin_); }
  /// All digits taken, as one integer; wrong when they are more than kMostDigits.
  std::uint64_t Value() const { return value_; }

 private:
  const char16_t* begin_;
  const char16_t* at_;
  const char16_t* end_;
  std::uint64_t value_ = 0;
};

// The digits before the decimal separator; nullopt for groups that the streams refuse or see otherwise.
std::optional<std::size_t> TakeIntegers(TDigits& digits, const TPunctuation& punctuation) {
  std::size_t count = digits.TakeDigits();
  if (!punctuation.grouping || !digits.Take(punctuation.group)) return count;
  if (count == 0 || count > kGroup) return std::nullopt;
  do {
    if (digits.TakeDigits() != kGroup) return std::nullopt;
    count += kGroup;
  } while (digits.Take(punctuation.group));
  return count;
}

// ---- writing

// A number's digits, the decimal separator left out.
struct TWritten {
  std::string_view integers;
  std::string_view decimals;
};

// Room for the largest double with the most decimals.
using TBuffer = char[DBL_MAX_10_EXP + kMaxDecimals + 8];

// Rounds by scaling the number to an integer, halves to the even one. False when the scaled number is too large for
// that.
bool RoundByScaling(double magnitude, int decimals, TBuffer& buffer, TWritten& written) {
  constexpr int kMost = 15;
  constexpr double kLargest = 1e15;
  if (decimals > kMost) return false;
  const double scaled = magnitude * kPowers[decimals];
  if (!(scaled < kLargest)) return false;
  auto integer = static_cast<std::uint64_t>(scaled);
  double aboveHalf = scaled - static_cast<double>(integer) - 0.5;
  // So near the middle, what scaling has rounded away decides.
  if (std::abs(aboveHalf) <= scaled * DBL_EPSILON) aboveHalf += std::fma(magnitude, kPowers[decimals], -scaled);
  if (aboveHalf > 0 || (aboveHalf == 0 && integer % 2 != 0)) ++integer;
  // The digits stand behind enough zeros for a number below 1.
  std::fill_n(buffer, kMost + 1, '0');
  char* const begin = buffer + kMost + 1;
  const char* const end = std::to_chars(begin, begin + kMost + 2, integer).ptr;
  const char* const separator = end - decimals;
  const char* const first = std::min<const char*>(begin, separator - 1);
  written.integers = {first, static_cast<std::size_t>(separator - first)};
  written.decimals = {separator, static_cast<std::size_t>(decimals)};
  return true;
}

void RoundExactly(double magnitude, int decimals, TBuffer& buffer, TWritten& written) {
  const char* const end = std::to_chars(buffer, std::end(buffer), magnitude, std::chars_format::fixed, decimals).ptr;
  const auto length = static_cast<std::size_t>(end - buffer);
  const auto behind = static_cast<std::size_t>(decimals);
  written.integers = {buffer, length - behind - (behind == 0 ? 0 : 1)};
  written.decimals = {end - behind, behind};
}

// Half a surrogate pair becomes U+FFFD, as everywhere where text leaves a string.
char16_t Written(char16_t separator) { return U16_IS_SURROGATE(separator) ? u'\uFFFD' : separator; }

void AppendWritten(bool negative, const TWritten& written, std::size_t width, const TPunctuation& punctuation,
                   NQ_TString& out) {
  const auto [integers, decimals] = written;
  const std::size_t groups = punctuation.grouping ? (integers.size() - 1) / kGroup : 0;
  const std::size_t length =
      (negative ? 1 : 0) + integers.size() + groups + (decimals.empty() ? 0 : 1 + decimals.size());
  const std::size_t zeros = width > length ? width - length : 0;
  char16_t* at = out.AppendUninitialized(static_cast<unsigned int>(zeros + length));
  at = std::fill_n(at, zeros, u'0');
  if (negative) *at++ = u'-';
  const std::size_t first = integers.size() - groups * kGroup;
  at = std::copy_n(integers.data(), first, at);
  for (std::size_t done = first; done < integers.size(); done += kGroup) {
    *at++ = Written(punctuation.group);
    at = std::copy_n(integers.data() + done, kGroup, at);
  }
  if (decimals.empty()) return;
  *at++ = Written(punctuation.decimal);
  std::copy(decimals.begin(), decimals.end(), at);
}

}  // namespace

std::optional<TPlainNumber> ReadPlainNumber(std::u16string_view text, const TPunctuation& punctuation) {
  if (!IsPlain(punctuation)) return std::nullopt;
  TDigits digits(text.substr(0, kMostRead));
  digits.Skip(IsSpace);
  const bool negative = digits.Take(u'-');
  if (!negative) digits.Take(u'+');
  const auto integers = TakeIntegers(digits, punctuation);
  if (!integers) return std::nullopt;
  const std::size_t decimals = digits.Take(punctuation.decimal) ? digits.TakeDigits() : 0;
  const std::size_t count = *integers + decimals;
  if (count == 0 || count > kMostDigits || digits.MayGoOn()) return std::nullopt;
  if (digits.AtEnd() && text.size() > kMostRead) return std::nullopt;
  const auto magnitude = Scaled(digits.Value(), decimals);
  if (!magnitude) return std::nullopt;
  return TPlainNumber{negative ? -*magnitude : *magnitude, digits.Taken()};
}

void AppendPlainNumber(double number, int decimals, int width, const TPunctuation& punctuation, NQ_TString& out) {
  const double magnitude = std::abs(number);
  TBuffer buffer;
  TWritten written;
  if (!RoundByScaling(magnitude, decimals, buffer, written)) RoundExactly(magnitude, decimals, buffer, written);
  AppendWritten(std::signbit(number), written, static_cast<std::size_t>(width), punctuation, out);
}

}  // namespace templatenames
