#include "text/PrintfFormat.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string>
#include <type_traits>

#include "NQ_Utf.h"
#include "text/Find.h"
#include "text/FromUtf8.h"

namespace templatenames {
namespace {

// In the order of the bits of the flags.
constexpr std::u16string_view kFlagLetters = u"-+ #0'";
constexpr std::u16string_view kTextFlagLetters = kFlagLetters.substr(0, 5);
constexpr std::u16string_view kIntegerConversions = u"diuxXoc";

bool IsSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }

// Takes the digits at the front; nullopt when they make more than the limit.
std::optional<std::int16_t> ReadField(std::u16string_view& rest) {
  int number = 0;
  while (!rest.empty() && rest.front() >= u'0' && rest.front() <= u'9') {
    number = number * 10 + (rest.front() - u'0');
    if (number > TPrintfFormat::kMaxField) return std::nullopt;
    rest.remove_prefix(1);
  }
  return static_cast<std::int16_t>(number);
}

bool IsAscii(std::u16string_view text) {
  unsigned seen = 0;
  for (const char16_t unit : text) seen |= unit;
  return seen < 0x80;
}

}  // namespace

// ---- reading

// format     = { literal | "%%" } [ conversion { literal | "%%" } ]
// conversion = "%" { "-" | "+" | " " | "#" | "0" | "'" } [ number ] [ "." [ number ] ] [ length ] letter
// length     = "h" | "hh" | "l" | "ll" | "j" | "z" | "t"
std::optional<TPrintfFormat> TPrintfFormat::Parse(std::u16string_view format, TKind kind, TRefusal* refusal) {
  TPrintfFormat parsed;
  parsed.plain_ = format == (kind == TKind::Text ? u"%s" : u"%d");
  std::u16string_view rest = format.substr(0, format.find(u'\0'));
  const std::size_t size = rest.size();
  while (!rest.empty()) {
    const std::size_t percent = std::min(rest.find(u'%'), rest.size());
    parsed.AppendLiteral(rest.substr(0, percent));
    rest.remove_prefix(percent);
    if (rest.starts_with(u"%%")) {
      parsed.AppendLiteral(u"%");
      rest.remove_prefix(2);
    } else if (!rest.empty()) {
      const std::size_t begin = size - rest.size();
      const bool second = parsed.conversion_ != 0;
      auto fault = parsed.ReadConversion(rest, kind);
      if (second) fault = TFault::Second;
      if (!fault) continue;
      if (refusal != nullptr) *refusal = {*fault, begin, size - rest.size()};
      return std::nullopt;
    }
  }
  if (parsed.conversion_ == 0) parsed.before_ = static_cast<std::uint32_t>(parsed.literal_.size());
  return parsed;
}

// Takes the conversion at the front, or what of it can be read; returns what is wrong with it.
std::optional<TPrintfFormat::TFault> TPrintfFormat::ReadConversion(std::u16string_view& rest, TKind kind) {
  const std::u16string_view flags = kind == TKind::Text ? kTextFlagLetters : kFlagLetters;
  rest.remove_prefix(1);
  for (; !rest.empty(); rest.remove_prefix(1)) {
    const std::size_t flag = flags.find(rest.front());
    if (flag == kNone) break;
    flags_ = static_cast<std::uint8_t>(flags_ | 1U << flag);
  }
  const auto width = ReadField(rest);
  if (!width) return TFault::WideField;
  width_ = *width;
  if (rest.starts_with(u'.')) {
    rest.remove_prefix(1);
    const auto precision = ReadField(rest);
    if (!precision) return TFault::WideField;
    precision_ = *precision;
  }
  const bool plainLength = !ReadLength(rest);
  if (rest.empty()) return TFault::Unfinished;
  const char16_t letter = rest.front();
  rest.remove_prefix(1);
  // With a length, "%s" and "%c" write wide characters.
  const bool isText = letter == u's' && plainLength;
  const bool isInteger = kIntegerConversions.find(letter) != kNone && (letter != u'c' || plainLength);
  if (!(kind == TKind::Text ? isText : isInteger)) return TFault::OtherKind;
  conversion_ = static_cast<char>(letter);
  before_ = static_cast<std::uint32_t>(literal_.size());
  return std::nullopt;
}

std::string_view TPrintfFormat::TextOf(TLength length) {
  constexpr std::string_view kTexts[] = {"", "h", "hh", "l", "ll", "j", "z", "t"};
  return kTexts[static_cast<std::size_t>(length)];
}

// Takes the length at the front, the longest one that is there; whether there is one.
bool TPrintfFormat::ReadLength(std::u16string_view& rest) {
  for (const TLength length : {TLength::Char, TLength::LongLong, TLength::Short, TLength::Long, TLength::Max,
                               TLength::Size, TLength::Difference}) {
    const std::string_view text = TextOf(length);
    const std::u16string_view front = rest.substr(0, text.size());
    if (!std::equal(text.begin(), text.end(), front.begin(), front.end())) continue;
    length_ = length;
    rest.remove_prefix(text.size());
    return true;
  }
  return false;
}

void TPrintfFormat::AppendLiteral(std::u16string_view text) {
  if (std::any_of(text.begin(), text.end(), IsSurrogate)) {
    literal_ += NQ_TString(NQ_TString(text).Narrow()).StringView();  // an unpaired one becomes U+FFFD, as in UTF-8
  } else {
    literal_ += text;
  }
}

// ---- text

// A field whose content, which write appends, takes that many bytes as UTF-8. The flags other than "-" change
// nothing for text.
template <class Write>
void TPrintfFormat::AppendPadded(std::size_t bytes, NQ_TString& out, Write write) const {
  const auto width = static_cast<std::size_t>(width_);
  const auto padding = static_cast<unsigned int>(width > bytes ? width - bytes : 0);
  const auto pad = [&] { std::fill_n(out.AppendUninitialized(padding), padding, u' '); };
  if (padding != 0 && !Has(kLeft)) pad();
  write();
  if (padding != 0 && Has(kLeft)) pad();
}

void TPrintfFormat::AppendText(std::u16string_view value, NQ_TString& out) const {
  if (plain_) {
    out.Append(value);
    return;
  }
  out.Append(Before());
  if (conversion_ != 0) {
    value = value.substr(0, value.find(u'\0'));
    // Each unit takes a byte at least. One unit more than the precision: a pair must not be cut here.
    if (precision_ >= 0) value = value.substr(0, static_cast<std::size_t>(precision_) + 1);
    const auto most = precision_ < 0 ? kNone : static_cast<std::size_t>(precision_);
    if (IsAscii(value)) {
      value = value.substr(0, most);
      AppendPadded(value.size(), out, [&] { out.Append(value); });
    } else {
      std::string utf8;
      nq::AppendUtf8(value, utf8);
      const std::string_view shown = std::string_view(utf8).substr(0, most);
      AppendPadded(shown.size(), out, [&] { AppendFromUtf8(shown, out); });
    }
  }
  out.Append(After());
}

// ---- integers

void TPrintfFormat::AppendInteger(std::int32_t value, NQ_TString& out) const {
  out.Append(Before());
  if ((conversion_ == 'd' || conversion_ == 'i') && length_ == TLength::None && !Has(kGroups)) {
    AppendDecimal(value, out);
  } else if (conversion_ != 0) {
    AppendByPrintf(value, out);
  }
  out.Append(After());
}

void TPrintfFormat::AppendDecimal(std::int32_t value, NQ_TString& out) const {
  const auto bits = static_cast<std::uint32_t>(value);
  char digits[10];
  const char* const end = std::to_chars(digits, std::end(digits), value < 0 ? 0U - bits : bits).ptr;
  const int count = value == 0 && precision_ == 0 ? 0 : static_cast<int>(end - digits);
  const char16_t sign = value < 0 ? u'-' : Has(kPlus) ? u'+' : Has(kSpace) ? u' ' : u'\0';
  int zeros = std::max(precision_ - count, 0);
  int length = (sign != 0 ? 1 : 0) + zeros + count;
  if (Has(kZero) && !Has(kLeft) && precision_ < 0 && width_ > length) {
    zeros = width_ - length;
    length = width_;
  }
  const int padding = std::max(width_ - length, 0);
  char16_t* at = out.AppendUninitialized(static_cast<unsigned int>(padding + length));
  if (!Has(kLeft)) at = std::fill_n(at, padding, u' ');
  if (sign != 0) *at++ = sign;
  at = std::fill_n(at, zeros, u'0');
  at = std::copy_n(digits, count, at);
  if (Has(kLeft)) std::fill_n(at, padding, u' ');
}

namespace {

// The value as an argument of the type that a length names; printf takes those of unsigned conversions as unsigned.
template <class T>
int PrintAs(const char* format, char conversion, std::int32_t value, char* printed, std::size_t size) {
  const auto argument = static_cast<T>(value);
  if (conversion == 'd' || conversion == 'i' || conversion == 'c')
    return std::snprintf(printed, size, format, argument);
  return std::snprintf(printed, size, format, static_cast<std::make_unsigned_t<T>>(argument));
}

}  // namespace

// Calls printf with the format that was read; the arguments of h and hh are int, which printf narrows.
int TPrintfFormat::Print(std::int32_t value, char* printed, std::size_t size) const {
  std::string format = "%";
  for (std::size_t flag = 0; flag < kFlagLetters.size(); ++flag)
    if ((flags_ & 1U << flag) != 0) format += static_cast<char>(kFlagLetters[flag]);
  if (width_ > 0) format += std::to_string(width_);
  if (precision_ >= 0) format += '.' + std::to_string(precision_);
  format += TextOf(length_);
  format += conversion_;
  switch (length_) {
    case TLength::Long:
      return PrintAs<long>(format.c_str(), conversion_, value, printed, size);
    case TLength::LongLong:
      return PrintAs<long long>(format.c_str(), conversion_, value, printed, size);
    case TLength::Max:
      return PrintAs<std::intmax_t>(format.c_str(), conversion_, value, printed, size);
    case TLength::Size:
      return PrintAs<std::make_signed_t<std::size_t>>(format.c_str(), conversion_, value, printed, size);
    case TLength::Difference:
      return PrintAs<std::ptrdiff_t>(format.c_str(), conversion_, value, printed, size);
    default:
      return PrintAs<int>(format.c_str(), conversion_, value, printed, size);
  }
}

void TPrintfFormat::AppendByPrintf(std::int32_t value, NQ_TString& out) const {
  char printed[kMaxField + 256];  // neither the prefix "0x" nor separators of groups are part of the precision
  const int length = Print(value, printed, sizeof printed);
  const auto most = static_cast<int>(sizeof printed - 1);
  AppendFromUtf8(std::string_view(printed, static_cast<std::size_t>(std::clamp(length, 0, most))), out);
}

}  // namespace templatenames
