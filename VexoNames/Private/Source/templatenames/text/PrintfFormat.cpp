#include "text/PrintfFormat.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string>

#include "NQ_Utf.h"
#include "text/Find.h"
#include "text/FromUtf8.h"

namespace templatenames {
namespace {

// In the order of the bits of the flags.
constexpr std::u16string_view kFlagLetters = u"-+ #0";
constexpr std::u16string_view kIntegerConversions = u"diuxXoc";

constexpr const char* kUnfinished = "the format ends within a conversion";
constexpr const char* kSecond = "the format has more than one conversion";
constexpr const char* kOtherKind = "the format has a conversion that does not fit the value";
constexpr const char* kWideField = "a width or precision of the format is over 4096";
static_assert(TPrintfFormat::kMaxField == 4096, "the text above names the limit");

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
// conversion = "%" { "-" | "+" | " " | "#" | "0" } [ number ] [ "." [ number ] ] letter
std::optional<TPrintfFormat> TPrintfFormat::Parse(std::u16string_view format, TKind kind, const char** reason) {
  TPrintfFormat parsed;
  parsed.plain_ = format == (kind == TKind::Text ? u"%s" : u"%d");
  std::u16string_view rest = format.substr(0, format.find(u'\0'));
  const char* fault = nullptr;
  while (!rest.empty() && fault == nullptr) {
    const std::size_t percent = std::min(rest.find(u'%'), rest.size());
    parsed.AppendLiteral(rest.substr(0, percent));
    rest.remove_prefix(percent);
    if (rest.starts_with(u"%%")) {
      parsed.AppendLiteral(u"%");
      rest.remove_prefix(2);
    } else if (!rest.empty()) {
      fault = parsed.conversion_ != 0 ? kSecond : parsed.ReadConversion(rest, kind);
    }
  }
  if (parsed.conversion_ == 0) parsed.before_ = static_cast<std::uint32_t>(parsed.literal_.size());
  if (fault == nullptr) return parsed;
  if (reason != nullptr) *reason = fault;
  return std::nullopt;
}

// Takes the conversion at the front; returns what is wrong with it, or null.
const char* TPrintfFormat::ReadConversion(std::u16string_view& rest, TKind kind) {
  rest.remove_prefix(1);
  for (; !rest.empty(); rest.remove_prefix(1)) {
    const std::size_t flag = kFlagLetters.find(rest.front());
    if (flag == kNone) break;
    flags_ = static_cast<std::uint8_t>(flags_ | 1U << flag);
  }
  const auto width = ReadField(rest);
  if (!width) return kWideField;
  width_ = *width;
  if (rest.starts_with(u'.')) {
    rest.remove_prefix(1);
    const auto precision = ReadField(rest);
    if (!precision) return kWideField;
    precision_ = *precision;
  }
  if (rest.empty()) return kUnfinished;
  const char16_t letter = rest.front();
  const bool fits = kind == TKind::Text ? letter == u's' : kIntegerConversions.find(letter) != kNone;
  if (!fits) return kOtherKind;
  conversion_ = static_cast<char>(letter);
  before_ = static_cast<std::uint32_t>(literal_.size());
  rest.remove_prefix(1);
  return nullptr;
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
  if (conversion_ == 'd' || conversion_ == 'i') {
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

void TPrintfFormat::AppendByPrintf(std::int32_t value, NQ_TString& out) const {
  char format[32];
  char* at = format;
  *at++ = '%';
  for (std::size_t flag = 0; flag < kFlagLetters.size(); ++flag) {
    if ((flags_ & 1U << flag) != 0) *at++ = static_cast<char>(kFlagLetters[flag]);
  }
  if (width_ > 0) at = std::to_chars(at, std::end(format), width_).ptr;
  if (precision_ >= 0) {
    *at++ = '.';
    at = std::to_chars(at, std::end(format), precision_).ptr;
  }
  *at++ = conversion_;
  *at = '\0';
  char printed[kMaxField + 8];  // the prefix "0x" is not part of the precision
  const int length = conversion_ == 'c'
                         ? std::snprintf(printed, sizeof printed, format, int{value})
                         : std::snprintf(printed, sizeof printed, format, static_cast<unsigned int>(value));
  AppendFromUtf8(std::string_view(printed, static_cast<std::size_t>(std::max(length, 0))), out);
}

}  // namespace templatenames
