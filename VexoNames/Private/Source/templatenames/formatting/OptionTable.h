// All formatting options there are: who reads them and what they may hold.
//
// The formatters look for the keys of this table (OptionKeys, with OptionPlaces.h), and CheckOptions judges options by
// it; what each option does stands with its formatter. Constant; any thread may read it.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

/// Who reads an option: the choice of the formatter, one of the formatters, or an element of CustomEncoding.
enum class TOptionReader : std::uint8_t { Choice, Text, Number, Date, Pair };

/// What an option may hold. The first ones are texts.
enum class TOptionForm : std::uint8_t {
  Text,       // any
  Word,       // one of the row's words
  DateWord,   // one of the row's words, or one that leaves the choice to a custom pattern
  Separator,  // one character
  Category,   // of units
  Unit,       // of the category
  Flag,       // true or false
  Count,      // a whole number from 0 to kMaxDecimals
  Pairs,      // a list of dictionaries
};

struct TOption {
  std::u16string_view key;
  TOptionReader reader;
  TOptionForm form;
  std::span<const std::u16string_view> words = {};
};

inline constexpr std::u16string_view kDataFormatWords[] = {u"TEXT", u"NUMBER", u"DATETIME"};
inline constexpr std::u16string_view kTransformationWords[] = {u"UPPERCASE", u"LOWERCASE"};
inline constexpr std::u16string_view kEncodingWords[] = {u"XML", u"URL", u"CUSTOM"};
inline constexpr std::u16string_view kDateWords[] = {u"ISO8601", u"UNIX", u"CUSTOM"};

/// Those of one reader stand together, in the order in which the reader counts them.
inline constexpr TOption kOptions[] = {
    {u"DataFormat", TOptionReader::Choice, TOptionForm::Word, kDataFormatWords},

    {u"RemoveSpaces", TOptionReader::Text, TOptionForm::Flag},
    {u"Transformation", TOptionReader::Text, TOptionForm::Word, kTransformationWords},
    {u"Encoding", TOptionReader::Text, TOptionForm::Word, kEncodingWords},
    {u"CustomEncoding", TOptionReader::Text, TOptionForm::Pairs},

    {u"InputDecimalSeparator", TOptionReader::Number, TOptionForm::Separator},
    {u"InputThousandsSeparator", TOptionReader::Number, TOptionForm::Separator},
    {u"DecimalSeparator", TOptionReader::Number, TOptionForm::Separator},
    {u"ThousandsSeparator", TOptionReader::Number, TOptionForm::Separator},
    {u"Convert", TOptionReader::Number, TOptionForm::Flag},
    {u"ConvertUnitCategory", TOptionReader::Number, TOptionForm::Category},
    {u"ConvertFromUnit", TOptionReader::Number, TOptionForm::Unit},
    {u"ConvertToUnit", TOptionReader::Number, TOptionForm::Unit},
    {u"Decimals", TOptionReader::Number, TOptionForm::Count},
    {u"AddLeadingZeros", TOptionReader::Number, TOptionForm::Flag},
    {u"PreferredIntegerLength", TOptionReader::Number, TOptionForm::Count},

    {u"InputDateTimeFormat", TOptionReader::Date, TOptionForm::DateWord, kDateWords},
    {u"CustomInputDateTimeFormat", TOptionReader::Date, TOptionForm::Text},
    {u"InputTimeZone", TOptionReader::Date, TOptionForm::Text},
    {u"InputLanguage", TOptionReader::Date, TOptionForm::Text},
    {u"DateTimeFormat", TOptionReader::Date, TOptionForm::DateWord, kDateWords},
    {u"CustomDateTimeFormat", TOptionReader::Date, TOptionForm::Text},
    {u"TimeZone", TOptionReader::Date, TOptionForm::Text},
    {u"Language", TOptionReader::Date, TOptionForm::Text},

    {u"Find", TOptionReader::Pair, TOptionForm::Text},
    {u"Replace", TOptionReader::Pair, TOptionForm::Text},
};

/// The rows of one reader.
constexpr std::span<const TOption> OptionsOf(TOptionReader reader) {
  const auto isIts = [reader](const TOption& option) { return option.reader == reader; };
  const TOption* const begin = std::find_if(std::begin(kOptions), std::end(kOptions), isIts);
  return {begin, std::find_if_not(begin, std::end(kOptions), isIts)};
}

/// The keys of one reader as strings, which are made once; how many the reader counts must be how many there are.
template <TOptionReader kReader, std::size_t kCount>
const std::array<NQ_TString, kCount>& OptionKeys() {
  static_assert(OptionsOf(kReader).size() == kCount);
  static const auto* const keys = [] {
    auto* const made = new std::array<NQ_TString, kCount>;
    for (std::size_t i = 0; i < kCount; ++i) (*made)[i] = NQ_TString(OptionsOf(kReader)[i].key);
    return made;
  }();
  return *keys;
}

}  // namespace templatenames
