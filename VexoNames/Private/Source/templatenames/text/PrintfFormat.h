// A printf format that came from outside, checked.
//
// A format attribute is written by people and by other systems, so it never reaches printf as it is. Parse accepts
// literal text, "%%" and at most one conversion of the kind the value has:
//
//   text      %s
//   integer   %d %i %u %x %X %o, also with h hh l ll j z t before the letter, and %c
//
// with the flags "-+ #0", for integers "'" too, a width and a precision of up to 4096 each. A format without a
// conversion prints its literal text, as printf does. Refused are a second conversion, a conversion of another kind,
// %n,
// "*", positions such as "1$", larger widths and precisions, and a format that ends within a conversion.
// PrintfRefusal.h has the sentences for that.
//
//   const auto format = TPrintfFormat::Parse(u"v%03d", TPrintfFormat::TKind::Integer);
//   format->AppendInteger(7, out);                // v007
//
// What is accepted prints exactly what printf prints for the UTF-8 form of format and value, read back as UTF-8:
//   - widths and precisions count bytes; a precision that cuts a character in two leaves U+FFFD;
//   - U+0000 ends a format and a text value, as it ends a C string; only the plain "%s" gives its value unchanged;
//   - %c prints one byte: 0 gives U+0000, which does not end the result, and 128 to 255 give U+FFFD;
//   - with a length modifier the value is passed as the type that it names: "%hhd" of 300 is 44, "%lx" of -1 has
//   sixteen
//     digits; the flag "'" groups digits as the program's locale does, in which "C" has no groups.
//
// An object is immutable and cheap to copy; threads may use one together.
#pragma once

#include <cstddef>
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

  enum class TFault : std::uint8_t {
    Unfinished,  // the format ends within a conversion
    Second,      // a conversion after the first
    OtherKind,   // a conversion that does not write a value of the kind
    WideField,   // a width or precision over kMaxField
  };
  struct TRefusal {
    TFault fault = TFault::OtherKind;
    std::size_t begin = 0;  // of the conversion in the format; it ends with its letter, if it has one
    std::size_t end = 0;
  };

  /// The format, or nullopt when it is refused; then the refusal, if asked for, says why.
  static std::optional<TPrintfFormat> Parse(std::u16string_view format, TKind kind, TRefusal* refusal = nullptr);

  /// For a format of the kind Text. The value may lie in out only if the format is plain.
  void AppendText(std::u16string_view value, NQ_TString& out) const;
  /// For a format of the kind Integer.
  void AppendInteger(std::int32_t value, NQ_TString& out) const;

  /// Whether the format is exactly "%s" or "%d".
  bool IsPlain() const { return plain_; }
  /// Whether there is a conversion; else every value gives the same text.
  bool WritesValue() const { return conversion_ != 0; }

 private:
  enum TFlag : std::uint8_t { kLeft = 1, kPlus = 2, kSpace = 4, kAlternate = 8, kZero = 16, kGroups = 32 };
  enum class TLength : std::uint8_t { None, Short, Char, Long, LongLong, Max, Size, Difference };

  std::optional<TFault> ReadConversion(std::u16string_view& rest, TKind kind);
  bool ReadLength(std::u16string_view& rest);
  void AppendLiteral(std::u16string_view text);

  bool Has(TFlag flag) const { return (flags_ & flag) != 0; }
  std::u16string_view Before() const { return std::u16string_view(literal_).substr(0, before_); }
  std::u16string_view After() const { return std::u16string_view(literal_).substr(before_); }
  template <class Write>
  void AppendPadded(std::size_t bytes, NQ_TString& out, Write write) const;
  void AppendDecimal(std::int32_t value, NQ_TString& out) const;
  void AppendByPrintf(std::int32_t value, NQ_TString& out) const;
  int Print(std::int32_t value, char* printed, std::size_t size) const;
  static std::string_view TextOf(TLength length);

  std::u16string literal_;    // what stands before the conversion, then what stands after it
  std::uint32_t before_ = 0;  // the length of the first
  std::int16_t width_ = 0;
  std::int16_t precision_ = -1;  // −1: none given
  std::uint8_t flags_ = 0;
  char conversion_ = 0;  // 0: none
  TLength length_ = TLength::None;
  bool plain_ = false;
};

}  // namespace templatenames
