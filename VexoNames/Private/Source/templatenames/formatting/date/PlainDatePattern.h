// Date patterns without ICU.
//
// Most patterns are made of a few plain fields: numbers, names of months and weekdays, an ISO offset. Once their names
// are known, such a pattern is written, and a text that is written exactly like it is read, by a few loops. Everything
// else is ICU's: other letters, other calendars, other digits, years outside 1583 to 9999 (the calendar changed in
// 1582), names in a text that is read, and every text that only resembles its pattern.
// What is done here gives what ICU gives.
//
//   const TPlainDatePattern pattern(u"d MMMM yyyy", format);          // the same pattern with German names
//   pattern.Write(1601899387250, 7200000, out);                       // true, 5 Oktober 2020
//   TPlainDatePattern(u"yyyyMMdd", other).Read(u"20201005", time);    // true
//
// An object is immutable; threads may use one together.
#pragma once

#include <unicode/smpdtfmt.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NQ_TString.h"

namespace templatenames {

class TPlainDatePattern {
 public:
  /// The format is that of the same pattern. A pattern that is not plain gives an object whose functions return false.
  TPlainDatePattern(std::u16string_view pattern, const icu::SimpleDateFormat& format);

  /// Writes the time, in milliseconds since 1970-01-01T00:00:00Z, as it is in a zone with that offset. False, with
  /// the result unchanged, when only ICU can do it.
  bool Write(double time, std::int32_t offset, NQ_TString& out) const;

  struct TLocalTime {
    double milliseconds = 0;             // since 1970-01-01T00:00:00 local time
    std::optional<std::int32_t> offset;  // where the text says it
  };
  /// False, with the time unchanged, when only ICU can tell.
  bool Read(std::u16string_view text, TLocalTime& time) const;

 private:
  enum class TKind : std::uint8_t { Literal, Number, Fraction, Name, Offset };
  /// What a number, a fraction or a name is about. Those from kYearOfCentury on are only written.
  enum TPart : std::uint8_t {
    kYear,
    kMonth,  // from 1
    kDay,
    kHour,
    kMinute,
    kSecond,
    kMillisecond,
    kYearOfCentury,
    kHourOfHalf,  // 1 to 12
    kHalf,        // 0 or 1
    kWeekday,     // from 0, Sunday
    kParts,
  };
  struct TStep {
    TKind kind = TKind::Literal;
    TPart part = kYear;
    char16_t letter = 0;       // of the field
    std::uint8_t count = 0;    // of the letter
    std::uint8_t least = 0;    // digits of a number that is read;
    std::uint8_t most = 0;     // at most
    std::uint16_t begin = 0;   // of literal text in literals_, or of names in names_
    std::uint16_t length = 0;  // of literal text, or number of names; else 0
  };
  struct TForm;
  struct TFields;
  struct TReading;

  static const TForm kForms[];

  bool Scan(std::u16string_view pattern);
  bool AddField(char16_t letter, std::size_t count);
  void AddLiteral(char16_t unit);
  void SetWidths();
  bool FindNames(const icu::DateFormatSymbols& symbols);
  void MeasureLongest();
  bool CanRead() const;

  std::u16string_view Literal(const TStep& step) const {
    return std::u16string_view(literals_).substr(step.begin, step.length);
  }
  char16_t* WriteStep(const TStep& step, const TFields& fields, char16_t* at) const;

  std::vector<TStep> steps_;
  std::u16string literals_;
  std::vector<std::u16string> names_;
  unsigned int longest_ = 0;  // text, when written
  bool writes_ = false;
  bool reads_ = false;
};

}  // namespace templatenames
