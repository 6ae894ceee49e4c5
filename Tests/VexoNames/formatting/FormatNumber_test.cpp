#include "formatting/FormatNumber.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <iterator>
#include <locale>
#include <random>
#include <string>

#include "NQ_EException.h"
#include "OptionsText.h"
#include "Support.h"
#include "formatting/NumberByStreams.h"
#include "formatting/PlainNumber.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::S;
using formatting_test::SlowTests;
using names_test::Output;
using names_test::Thrown;

bool FormatFast(int debugLevel, const NQ_TDict& options, NQ_TString& value) {
  return FormatNumber(debugLevel, options, value);
}

bool FormatPlain(int debugLevel, const NQ_TDict& options, NQ_TString& value) {
  return FormatNumberByStreams(debugLevel, ReadNumberOptions(options), value);
}

using TFormat = bool (*)(int debugLevel, const NQ_TDict& options, NQ_TString& value);

// What becomes of the value; "!" and the value when that is no number.
std::string Formatted(TFormat format, const NQ_TDict& options, const std::string& value) {
  NQ_TString text = S(value);
  const bool formatted = format(0, options, text);
  return (formatted ? "" : "!") + std::string(text.Narrow());
}

// Both ways must give what the table says.
TEST(FormatNumber, Values) {
  const std::string groups = "InputThousandsSeparator=,|",
                    toMm = "Convert=true|ConvertUnitCategory=LENGTH|ConvertToUnit=mm|";
  struct {
    std::string options, value, formatted;
  } const cases[] = {
      {"", "12abc", "12"},
      {"", " \t\n3.5", "3.5"},
      {"", "-0", "-0"},
      {"", ".5", "0.5"},
      {"", "-.5x", "-0.50"},  // what follows counts as a decimal
      {"", "1.5 to 2.25", "1.50"},
      {"", "1e3", "1000"},
      {"", "1.5E-1", "0.1500"},  // the exponent too
      {"", "0x10", "0"},
      {"", "18446744073709551617", "18446744073709551616"},
      {"", "0.1000000000000000055511151231257827021181583404541015625",
       "0.1000000000000000055511151231257827021181583404541015625"},
      {"", "1,234.5", "1.0"},
      {groups, "1,234.5", "1234.5"},
      {groups, "1,234,567", "1234567"},
      {groups, "0,001", "1"},
      {groups, "12,34", "!12,34"},
      {groups, "1,234,", "!1,234,"},
      {groups, "1234,567", "!1234,567"},
      {"InputDecimalSeparator=,|InputThousandsSeparator=.", "1.234,50", "1234.50"},
      {"InputDecimalSeparator=,|InputThousandsSeparator=.|AddLeadingZeros=true|PreferredIntegerLength=6", "1.234,50",
       "001234.50"},
      {"InputDecimalSeparator=;!", "1;5!", "1.50"},
      {"InputThousandsSeparator=\u202F", "12\u202F345 \u20AC", "12345"},
      {"InputDecimalSeparator=5", "152", "1.2"},
      {"InputDecimalSeparator=\U0001F4C4", "1\U0001F4C45", "1.00"},  // half a pair separates nothing
      {"DecimalSeparator=", "1.5", "1.5"},
      {"DecimalSeparator=\U0001F4C4", "1.5", "1\uFFFD5"},
      {"ThousandsSeparator='|Decimals=2", "1234567.891", "1'234'567.89"},
      {"ThousandsSeparator=,", "-123456", "-123,456"},
      {"Decimals=2", "3", "3.00"},
      {"Decimals=0", "2.71", "3"},
      {"Decimals=-1", "2.71", "2.71"},
      {"Decimals=0", "2.5", "2"},       // halves go to the even digit
      {"Decimals=2", "1.005", "1.00"},  // the double lies below
      {"Decimals=1", "-0.04", "-0.0"},
      {"AddLeadingZeros=true|PreferredIntegerLength=4", "-5", "00-5"},
      {"AddLeadingZeros=true", "5", "5"},
      {"AddLeadingZeros=true|PreferredIntegerLength=7|ThousandsSeparator=.|DecimalSeparator=,", "1234.5", "001.234,5"},
      {toMm + "ConvertFromUnit=in|Decimals=1", "2", "50.8"},
      {"Convert=true|ConvertUnitCategory=FILESIZE|ConvertFromUnit=TB|ConvertToUnit=TB", "1e300", "inf"},  // times first
      {toMm + "ConvertFromUnit=m|AddLeadingZeros=true|PreferredIntegerLength=5", "-1e306", "0-inf"},
      {"", "abc", "!abc"},
      {"", "", "!"},
      {"", ".", "!."},
      {"", "1e999", "!1e999"},
      {"", "inf", "!inf"},
      {"", "\uFF15", "!\uFF15"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.options + " of " + row.value);
    EXPECT_EQ(Formatted(&FormatFast, Options(row.options), row.value), row.formatted);
    EXPECT_EQ(Formatted(&FormatPlain, Options(row.options), row.value), row.formatted);
  }
}

// An option may change in place, and come and go, between two values; another dictionary may take the place of one.
TEST(FormatNumber, OptionsAreReadAnew) {
  NQ_TDict options = Options("Decimals=1");
  NQ_TAny& decimals = options["Decimals"];
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1.0");
  decimals = "2";  // of another kind: absent
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1");
  decimals = 2;
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1.00");
  options["DecimalSeparator"] = ",";
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1,00");
  const NQ_TDict copy = options;
  options.Remove("Decimals");
  EXPECT_EQ(Formatted(&FormatFast, options, "1") + Formatted(&FormatFast, copy, "1"), "11,00");
  for (int i = 0; i < 1'000; ++i) {
    NQ_TDict other;
    other["Decimals"] = i % 7;
    EXPECT_EQ(Formatted(&FormatFast, other, "1").size(), i % 7 == 0 ? 1U : 2U + unsigned(i % 7)) << i;
  }
}

TEST(FormatNumber, UnknownUnitsThrow) {
  struct {
    const char *category, *from, *to, *error;
  } const cases[] = {
      {"length", "?", "?", "NQ_ENoSuchUnitCategory: length"},
      {"", "", "", "NQ_ENoSuchUnitCategory: "},
      {"LENGTH", "s", "?", "NQ_ENoSuchUnit: s"},
      {"LENGTH", "MM", "mm", "NQ_ENoSuchUnit: MM"},
      {"LENGTH", "mm", "", "NQ_ENoSuchUnit: "},
  };
  for (const auto& row : cases) {
    const NQ_TDict options = Options(std::string("Convert=true|ConvertUnitCategory=") + row.category +
                                     "|ConvertFromUnit=" + row.from + "|ConvertToUnit=" + row.to);
    for (const TFormat format : {&FormatFast, &FormatPlain}) {
      NQ_TString value = "2.5";
      EXPECT_EQ(Thrown([&] { format(0, options, value); }), row.error);
      EXPECT_EQ(value, "2.5");
      value = "no number";
      EXPECT_FALSE(format(0, options, value));
    }
  }
}

TEST(FormatNumber, LogsWhatIsNoNumber) {
  NQ_TString value = "abc";
  for (const int level : {0, 1}) {
    Output output;
    EXPECT_FALSE(FormatNumber(level, NQ_TDict(), value));
    EXPECT_EQ(output.Take(), level == 0 ? ""
                                        : "Failed to convert abc to number.  Caused by:\n"
                                          "basic_ios::clear: iostream error\n");
  }
}

// ---- limits

// With "0{60}" for 60 zeros: no failure fills the screen.
std::string Short(const std::string& text) {
  std::string result;
  for (std::size_t at = 0, end = 0; at < text.size(); at = end) {
    end = std::min(text.find_first_not_of(text[at], at), text.size());
    result += end - at < 20 ? text.substr(at, end - at) : text[at] + ('{' + std::to_string(end - at) + '}');
  }
  return result;
}

TEST(FormatNumber, LengthsAreBounded) {
  const std::string zeros(60'000, '0'), junk(1'000'000, 'x');
  struct {
    std::string options, value, formatted;
  } const cases[] = {
      {"Decimals=2147483647", "1", "1.0{4096}"},
      {"", "1." + zeros, "1.0{4096}"},
      {"AddLeadingZeros=true|PreferredIntegerLength=2147483647|Decimals=4096", "-1", "0{4094}-1.0{4096}"},
      {"Decimals=0", zeros + "1", "1"},
      {"Decimals=0", zeros + zeros + "1", "!0{120000}1"},  // does not end soon enough
      {"Decimals=0", "7" + junk, "7"},
      {"Decimals=0", std::string(65'600, ' ') + "1", "! {65600}1"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.options + " of " + Short(row.value));
    EXPECT_EQ(Short(Formatted(&FormatFast, Options(row.options), row.value)), row.formatted);
    EXPECT_EQ(Short(Formatted(&FormatPlain, Options(row.options), row.value)), row.formatted);
  }
}

// ---- against the streams: same text, same outcome, same error

// What happened, and the text; units of it that UTF-8 cannot say stay apart.
template <class TFormat>
NQ_TString Outcome(const TFormat& format, const NQ_TString& value) {
  NQ_TString text = value;
  try {
    const bool formatted = format(text);
    return NQ_TString(formatted ? "formatted " : "refused ") + text;
  } catch (const NQ_EException& error) {
    return NQ_TString("error ") + error.NQ_Message() + " " + text;
  }
}

// Formats both ways; returns the text that the streams make.
NQ_TString ExpectSame(const NQ_TDict& options, const NQ_TString& value) {
  const NQ_TString plain =
      Outcome([&](NQ_TString& text) { return FormatNumberByStreams(0, ReadNumberOptions(options), text); }, value);
  EXPECT_EQ(Outcome([&](NQ_TString& text) { return FormatNumber(0, options, text); }, value), plain)
      << options << " of " << value;
  return plain;
}

class NumbersAgainstStreams : public ::testing::Test {
 protected:
  static constexpr unsigned kSeed = 20250607;

  std::size_t Below(std::size_t end) { return random_() % end; }
  bool OneIn(std::size_t many) { return Below(many) == 0; }
  template <std::size_t N>
  const char16_t* OneOf(const char16_t* const (&texts)[N]) {
    return texts[Below(N)];
  }

  NQ_TDict SomeOptions();
  std::u16string Value();
  std::u16string Digits(std::size_t most);
  void PutGroups(std::u16string& integers);

  char16_t decimal_ = u'.';
  char16_t group_ = u',';
  std::mt19937 random_{kSeed};
};

NQ_TDict NumbersAgainstStreams::SomeOptions() {
  static const char16_t* const usual[] = {u".", u",", u"'", u" ", u"\u00A0", u"\u202F", u".,", u""};
  static const char16_t* const odd[] = {u"5", u"0",  u"-",      u"+",      u"e",         u"E",
                                        u"x", u"\n", u"\uFFFD", u"\xD83D", u"\U0001F4C4"};
  NQ_TDict options;
  const auto separator = [&](const char* key, char16_t absent, std::size_t oddOneIn) {
    if (OneIn(3)) return absent;
    const NQ_TString text(OneIn(oddOneIn) ? OneOf(odd) : OneOf(usual));
    options[key] = text;
    return text.Empty() ? absent : text[0];
  };
  decimal_ = separator("InputDecimalSeparator", u'.', 12);
  group_ = separator("InputThousandsSeparator", u',', 12);
  separator("DecimalSeparator", u'.', 12);
  separator("ThousandsSeparator", u',', 12);
  if (!OneIn(3)) options["Decimals"] = OneIn(50) ? 5'000 : static_cast<int>(Below(OneIn(4) ? 25 : 5)) - 1;
  if (OneIn(3)) options["AddLeadingZeros"] = true;
  if (OneIn(2)) options["PreferredIntegerLength"] = static_cast<int>(Below(12)) - 1;
  if (!OneIn(3)) return options;
  static const char* const units[] = {"mm", "in", "pt", "m", "mil"};
  options["Convert"] = true;
  options["ConvertUnitCategory"] = OneIn(30) ? "length" : "LENGTH";
  options["ConvertFromUnit"] = OneIn(30) ? "s" : units[Below(5)];
  options["ConvertToUnit"] = OneIn(30) ? "" : units[Below(5)];
  return options;
}

std::u16string NumbersAgainstStreams::Digits(std::size_t most) {
  std::u16string digits;
  for (std::size_t n = Below(most + 1); n > 0; --n)
    digits += OneIn(4) ? u'0' : OneIn(4) ? u'5' : static_cast<char16_t>(u'0' + Below(10));
  return digits;
}

void NumbersAgainstStreams::PutGroups(std::u16string& integers) {
  for (std::size_t at = integers.size(); at > 3;) {
    at -= OneIn(30) ? 1 + Below(4) : 3;
    if (at > 0 && at < integers.size()) integers.insert(at, 1, group_);
  }
}

std::u16string NumbersAgainstStreams::Value() {
  static const char16_t* const before[] = {u"", u"", u"", u"-", u"+", u" ", u" -", u"\t", u"--", u"x", u"\u00A0"};
  static const char16_t* const behind[] = {u"",    u"",  u"",      u"",    u" ", u" mm",   u"e3",
                                           u"E-2", u"e", u"e+400", u"x.5", u",", u"\xD83D"};
  std::u16string integers = Digits(OneIn(10) ? 25 : 8);
  if (OneIn(100)) integers = std::u16string(Below(300), u'0') + integers;
  if (OneIn(2)) PutGroups(integers);
  std::u16string value = OneOf(before) + integers;
  if (!OneIn(3)) value += decimal_ + Digits(OneIn(10) ? 20 : 6);
  value += OneOf(behind);
  if (OneIn(10)) value.insert(Below(value.size() + 1), 1, OneIn(2) ? group_ : decimal_);
  return value;
}

TEST_F(NumbersAgainstStreams, AreFormattedAsByStreams) {
  const int count = SlowTests() ? 1'000'000 : 20'000;
  int fast = 0, refused = 0, errors = 0;
  NQ_TDict options;
  for (int i = 0; i < count; ++i) {
    if (i % 4 == 0) options = SomeOptions();
    const NQ_TString value{std::u16string_view(Value())};
    const NQ_TString plain = ExpectSame(options, value);
    ASSERT_FALSE(HasFailure()) << "number " << i << ", seed " << kSeed;
    fast += ReadPlainNumber(value.StringView(), ReadNumberOptions(options).input) ? 1 : 0;
    refused += plain.StartsWith("refused") ? 1 : 0;
    errors += plain.StartsWith("error") ? 1 : 0;
  }
  // The comparison says something only where all outcomes occur.
  EXPECT_GT(fast, count / 3);
  EXPECT_GT(refused, count / 20);
  EXPECT_GT(errors, count / 100);
}

// Doubles of any size with up to 20 decimals, many of them in the middle between two results.
TEST_F(NumbersAgainstStreams, AreRoundedAsByStreams) {
  const int count = SlowTests() ? 1'000'000 : 20'000;
  for (int i = 0; i < count; ++i) {
    double number = std::ldexp(static_cast<double>(random_()), static_cast<int>(Below(90)) - 60);
    if (OneIn(2)) number = static_cast<double>(Below(1'000'000)) / static_cast<double>(1U << Below(12));
    const int decimals = static_cast<int>(Below(OneIn(2) ? 20 : 5));
    NQ_TString text;
    AppendPlainNumber(number, decimals, 0, TPunctuation(), text);
    ASSERT_EQ(text, NQ_TString::Format("%.*f", decimals, number)) << "number " << i << ", seed " << kSeed;
  }
}

// ---- programs that change what streams do

struct TUnderscoreIsSpace : std::ctype<wchar_t> {
  bool do_is(mask wanted, char_type c) const override {
    return ctype::do_is(wanted, c == L'_' ? L' ' : c == L' ' ? L'_' : c);
  }
};

struct TArabicDigits : std::ctype<wchar_t> {
  const char* do_widen(const char* low, const char* high, char_type* to) const override {
    for (; low != high; ++low)
      *to++ = *low >= '0' && *low <= '9' ? static_cast<char_type>(L'\u0660' + (*low - '0')) : ctype::do_widen(*low);
    return high;
  }
};

struct TStars : std::num_put<wchar_t> {
  iter_type do_put(iter_type out, std::ios_base&, char_type, double) const override { return *out = L'*', ++out; }
};

struct TAlwaysSeven : std::num_get<wchar_t> {
  iter_type do_get(iter_type, iter_type end, std::ios_base&, std::ios_base::iostate&, double& number) const override {
    return number = 7, end;
  }
};

// The values are such that each locale changes at least one of them.
TEST(FormatNumber, TheGlobalLocaleCounts) {
  const std::locale& c = std::locale::classic();
  struct {
    std::locale locale;
    const char* of25;
  } const cases[] = {
      {std::locale("C.UTF-8"), "formatted 2.5"},           {std::locale(c, new TUnderscoreIsSpace), "formatted 2.5"},
      {std::locale(c, new TArabicDigits), "refused 2.5"},  {std::locale(c, new TStars), "formatted *"},
      {std::locale(c, new TAlwaysSeven), "formatted 7.0"},
  };
  for (const auto& row : cases) {
    const std::locale before = std::locale::global(row.locale);
    EXPECT_EQ(ExpectSame(NQ_TDict(), "2.5"), row.of25);
    for (const char* value : {"_1.5", " 1.5", "_", "1.5_", "\u0661.\u0665"}) ExpectSame(NQ_TDict(), S(value));
    std::locale::global(before);
  }
}

TEST(FormatNumber, TheRoundingDirectionCounts) {
  for (const int direction : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    std::fesetround(direction);
    for (const char* value : {"0.125", "2.5", "-2.5", "0.1", "123456789012345678.9"})
      for (const char* options : {"Decimals=0", "Decimals=2", "Decimals=20"}) ExpectSame(Options(options), S(value));
  }
}

}  // namespace
}  // namespace templatenames
