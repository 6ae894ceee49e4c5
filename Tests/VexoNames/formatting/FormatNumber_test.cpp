#include "formatting/FormatNumber.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "OptionsText.h"
#include "Support.h"
#include "formatting/NumberByStreams.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::S;
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
      {"", "3.50", "3.50"},
      {"", "12abc", "12"},
      {"", " \t\n3.5", "3.5"},
      {"", "+5", "5"},
      {"", "-0", "-0"},
      {"", "007", "7"},
      {"", ".5", "0.5"},
      {"", "5.", "5"},
      {"", "-.5x", "-0.50"},  // what follows counts as a decimal
      {"", "1.5 to 2.25", "1.50"},
      {"", "1e3", "1000"},
      {"", "1.5E-1", "0.1500"},  // the exponent too
      {"", "1e3.5", "1000.0"},
      {"", "0x10", "0"},
      {"", "18446744073709551617", "18446744073709551616"},
      {"", "0.1000000000000000055511151231257827021181583404541015625",
       "0.1000000000000000055511151231257827021181583404541015625"},
      {"", "1,234.5", "1.0"},
      {groups, "1,234.5", "1234.5"},
      {groups, "1,234,567", "1234567"},
      {groups, "0,001", "1"},
      {groups, "1234.5", "1234.5"},
      {groups, "1,234.5,6", "1234.500"},
      {groups, "12,34", "!12,34"},
      {groups, "1,234,", "!1,234,"},
      {groups, "1,,234", "!1,,234"},
      {groups, ",234", "!,234"},
      {groups, "1234,567", "!1234,567"},
      {groups, "1,23.4", "!1,23.4"},
      {"InputDecimalSeparator=,|InputThousandsSeparator=.", "1.234,50", "1234.50"},
      {"InputDecimalSeparator=,|InputThousandsSeparator=.|AddLeadingZeros=true|PreferredIntegerLength=6", "1.234,50",
       "001234.50"},
      {"InputDecimalSeparator=;!", "1;5!", "1.50"},
      {"InputThousandsSeparator=\u202F", "12\u202F345 \u20AC", "12345"},
      {"InputDecimalSeparator=-", "1-5", "1.5"},
      {"InputDecimalSeparator=5", "152", "1.2"},
      {"InputDecimalSeparator=e", "1e5", "1.5"},
      {"InputDecimalSeparator=\U0001F4C4", "1\U0001F4C45", "1.00"},  // half a pair separates nothing
      {"InputDecimalSeparator=", "1.5", "1.5"},
      {"DecimalSeparator=,", "1.5", "1,5"},
      {"DecimalSeparator=", "1.5", "1.5"},
      {"DecimalSeparator=\U0001F4C4", "1.5", "1\uFFFD5"},
      {"ThousandsSeparator='|Decimals=2", "1234567.891", "1'234'567.89"},
      {"ThousandsSeparator=,", "-123", "-123"},
      {"ThousandsSeparator=,", "-123456", "-123,456"},
      {"Decimals=2", "3", "3.00"},
      {"Decimals=0", "2.71", "3"},
      {"Decimals=-1", "2.71", "2.71"},
      {"Decimals=0", "2.5", "2"},  // halves go to the even digit
      {"Decimals=0", "3.5", "4"},
      {"Decimals=2", "1.005", "1.00"},  // the double lies below
      {"Decimals=1", "-0.04", "-0.0"},
      {"Decimals=2", "9.999", "10.00"},
      {"AddLeadingZeros=true|PreferredIntegerLength=4", "-5", "00-5"},
      {"AddLeadingZeros=true|PreferredIntegerLength=4", "12345", "12345"},
      {"AddLeadingZeros=true|PreferredIntegerLength=0", "5", "5"},
      {"AddLeadingZeros=true", "5", "5"},
      {"AddLeadingZeros=false|PreferredIntegerLength=4", "5", "5"},
      {"AddLeadingZeros=true|PreferredIntegerLength=7|ThousandsSeparator=.|DecimalSeparator=,", "1234.5", "001.234,5"},
      {toMm + "ConvertFromUnit=in|Decimals=1", "2", "50.8"},
      {toMm + "ConvertFromUnit=m|Decimals=0", "1e306", "inf"},
      {toMm + "ConvertFromUnit=m|AddLeadingZeros=true|PreferredIntegerLength=5", "-1e306", "0-inf"},
      {"Convert=false|ConvertUnitCategory=?", "2", "2"},
      {"", "abc", "!abc"},
      {"", "", "!"},
      {"", "  ", "!  "},
      {"", "-", "!-"},
      {"", "+ 5", "!+ 5"},
      {"", ".", "!."},
      {"", "1e", "!1e"},
      {"", "1e999", "!1e999"},
      {"", "inf", "!inf"},
      {"", "nan", "!nan"},
      {"", "\u20035", "!\u20035"},
      {"", "\uFF15", "!\uFF15"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.options + " of " + row.value);
    EXPECT_EQ(Formatted(&FormatFast, Options(row.options), row.value), row.formatted);
    EXPECT_EQ(Formatted(&FormatPlain, Options(row.options), row.value), row.formatted);
  }
}

TEST(FormatNumber, OptionsOfAnotherKindAreAbsent) {
  NQ_TDict options;
  options["Decimals"] = "2";
  options["DecimalSeparator"] = 7;
  options["Convert"] = "true";
  options["AddLeadingZeros"] = 1;
  options["PreferredIntegerLength"] = 5;
  EXPECT_EQ(Formatted(&FormatFast, options, "1.5"), "1.5");
}

// An option may change in place, and come and go, between two values; another dictionary may take the place of one.
TEST(FormatNumber, OptionsAreReadAnew) {
  NQ_TDict options = Options("Decimals=1");
  NQ_TAny& decimals = options["Decimals"];
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1.0");
  decimals = 2;
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1.00");
  options["DecimalSeparator"] = ",";
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1,00");
  const NQ_TDict copy = options;
  options.Remove("Decimals");
  EXPECT_EQ(Formatted(&FormatFast, options, "1"), "1");
  EXPECT_EQ(Formatted(&FormatFast, copy, "1"), "1,00");
  for (int i = 0; i < 1'000; ++i) {
    NQ_TDict other;
    if (i % 3 != 0) other["Decimals"] = i % 7;
    EXPECT_EQ(Formatted(&FormatFast, other, "1"), Formatted(&FormatFast, other, "1.")) << i;
    EXPECT_EQ(Formatted(&FormatFast, other, "1").size(), i % 3 == 0 || i % 7 == 0 ? 1U : 2U + unsigned(i % 7)) << i;
  }
}

TEST(FormatNumber, UnknownUnitsThrow) {
  const char* const category = "Convert=true|ConvertUnitCategory=LENGTH|ConvertFromUnit=mm|ConvertToUnit=";
  for (const TFormat format : {&FormatFast, &FormatPlain}) {
    NQ_TString value = "2.5";
    EXPECT_EQ(Thrown([&] { format(0, Options(category + std::string("s")), value); }), "NQ_ENoSuchUnit: s");
    EXPECT_EQ(Thrown([&] { format(0, Options("Convert=true"), value); }), "NQ_ENoSuchUnitCategory: ");
    EXPECT_EQ(value, "2.5");
    value = "no number";
    EXPECT_FALSE(format(0, Options("Convert=true"), value));
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
      {"Decimals=4096", "1", "1.0{4096}"},
      {"Decimals=2147483647", "1", "1.0{4096}"},
      {"", "1." + zeros, "1.0{4096}"},
      {"", "1 ." + junk, "1.0{4096}"},
      {"AddLeadingZeros=true|PreferredIntegerLength=2147483647", "1", "0{4095}1"},
      {"AddLeadingZeros=true|PreferredIntegerLength=2147483647|Decimals=4096", "-1", "0{4094}-1.0{4096}"},
      {"Decimals=0", zeros + "1", "1"},
      {"Decimals=0", zeros + zeros + "1", "!0{120000}1"},  // does not end soon enough
      {"Decimals=0", "7" + junk, "7"},
      {"Decimals=0", std::string(252, ' ') + "1234567890", "1234567890"},
      {"Decimals=0", std::string(65'600, ' ') + "1", "! {65600}1"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.options + " of " + Short(row.value));
    EXPECT_EQ(Short(Formatted(&FormatFast, Options(row.options), row.value)), row.formatted);
    EXPECT_EQ(Short(Formatted(&FormatPlain, Options(row.options), row.value)), row.formatted);
  }
}

TEST(FormatNumber, TheLargestNumberWithAllDecimals) {
  const NQ_TDict options = Options("Decimals=4096|ThousandsSeparator=,");
  const std::string fast = Formatted(&FormatFast, options, "1" + std::string(308, '0'));
  EXPECT_EQ(fast.size(), 309 + 102 + 1 + 4096U);
  EXPECT_EQ(fast.substr(0, 27), "100,000,000,000,000,001,097");
  EXPECT_EQ(Formatted(&FormatPlain, options, "1e308"), fast);
}

}  // namespace
}  // namespace templatenames
