// A printf format that came from outside, checked.
//
// A format attribute is written by people and by other systems, so it never reaches printf as it is. Parse
// accepts literal text, "%%" and at most one conversion of the kind the value has:
//
//   text      %s
//   integer   %d %i %u %x %X %o %c
//
// with the flags "-+ #0", a width and a precision of up to 4096 each. A format without a conversion prints
// its literal text, as printf does. Refused are a second conversion, a conversion of another kind, %n, "*",
// length modifiers, positions such as "1$", larger widths and precisions, and a format that ends within a
// conversion.
//
//   const auto format = TPrintfFormat::Parse(u"v%03d", TPrintfFormat::TKind::Integer);
//   format->AppendInteger(7, out);                // v007
//
// What is accepted prints exactly what printf prints for the UTF-8 form of format and value, read back as
// UTF-8:
//   - widths and precisions count bytes; a precision that cuts a character in two leaves U+FFFD;
//   - U+0000 ends a format and a text value, as it ends a C string; only the plain "%s" gives its value
//   unchanged;
//   - %c prints one byte: 0 gives U+0000, which does not end the result, and 128 to 255 give U+FFFD.
//
// An object is immutable and cheap to copy; threads may use one together.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

class TPrintfFormat {
 public:
  enum class TKind : std::uint8_t { Text, Integer };

  /// The largest width and the largest precision.
  static constexpr int kMaxField = 4096;

  /// The format, or nullopt when it is refused; then the reason, if asked for, is a static text.
  static std::optional<TPrintfFormat> Parse(std::u16string_view format, TKind kind, const char** reason = nullptr);

  /// For a format of the kind Text. The value may lie in out only if the format is plain.
  void AppendText(std::u16string_view value, NQ_TString& out) const;
  /// For a format of the kind Integer.
  void AppendInteger(std::int32_t value, NQ_TString& out) const;

  /// Whether the value is written: the format has a conversion.
  bool WritesValue() const { return conversion_ != 0; }
  /// Whether the format is exactly "%s" or "%d".
  bool IsPlain() const { return plain_; }

 private:
  enum TFlag : std::uint8_t { kLeft = 1, kPlus = 2, kSpace = 4, kAlternate = 8, kZero = 16 };

  const char* ReadConversion(std::u16string_view& rest, TKind kind);
  void AppendLiteral(std::u16string_view text);

  bool Has(TFlag flag) const { return (flags_ & flag) != 0; }
  std::u16string_view Before() const { return std::u16string_view(literal_).substr(0, before_); }
  std::u16string_view After() const { return std::u16string_view(literal_).substr(before_); }
  template <class Write>
  void AppendPadded(std::size_t bytes, NQ_TString& out, Write write) const;
  void AppendDecimal(std::int32_t value, NQ_TString& out) const;
  void AppendByPrintf(std::int32_t value, NQ_TString& out) const;

  std::u16string literal_;    // what stands before the conversion, then what stands after it
  std::uint32_t before_ = 0;  // the length of the first
  std::int16_t width_ = 0;
  std::int16_t precision_ = -1;  // −1: none given
  std::uint8_t flags_ = 0;
  char conversion_ = 0;  // 0: none
  bool plain_ = false;
};

}  // namespace templatenames
