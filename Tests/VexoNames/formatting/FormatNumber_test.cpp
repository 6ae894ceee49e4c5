// Numbers by the fast way against numbers by streams; what they should be stands in Values.txt.
#include "formatting/number/FormatNumber.h"

#include <cfenv>
#include <cmath>
#include <locale>
#include <random>

#include "OptionsText.h"
#include "Support.h"
#include "formatting/number/NumberByStreams.h"
#include "formatting/number/PlainNumber.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::Rounds;
using names_test::Output;
using std::u16string;
using std::u16string_view;

// What happened, how much was read, and the text; units of it that UTF-8 cannot say stay apart.
template <class TFormat>
NQ_TString Outcome(const TFormat& format, const NQ_TString& value, std::size_t* read = nullptr) {
  NQ_TString text = value;
  try {
    const TNumberOutcome outcome = format(text);
    if (read != nullptr) *read = outcome.read;
    return NQ_TString(outcome.kind == TNumberOutcome::TKind::Written ? "" : "refused ") + text;
  } catch (const NQ_EException& error) {
    return NQ_TString("error ") + error.NQ_Message() + " " + text;
  }
}

NQ_TString Formatted(const NQ_TDict& options, const NQ_TString& value) {
  return Outcome([&](NQ_TString& text) { return FormatNumber(options, text); }, value);
}

// Formats both ways; returns the text that the streams make.
NQ_TString ExpectSame(const NQ_TDict& options, const NQ_TString& value) {
  const TNumberOptions read = ReadNumberOptions(options);
  std::size_t readPlainly = 0, readFast = 0;
  const NQ_TString plain =
      Outcome([&](NQ_TString& text) { return FormatNumberByStreams(read, text); }, value, &readPlainly);
  EXPECT_EQ(Outcome([&](NQ_TString& text) { return FormatNumber(options, text); }, value, &readFast), plain)
      << options << " of " << value;
  EXPECT_EQ(readFast, readPlainly) << options << " of " << value;
  return plain;
}

// An option may change in place, and come and go, between two values; another dictionary may take the place of one.
TEST(FormatNumber, OptionsAreReadAnew) {
  NQ_TDict options = Options("Decimals=1");
  NQ_TAny& decimals = options["Decimals"];
  EXPECT_EQ(Formatted(options, "1"), "1.0");
  decimals = "2";  // of another kind: absent
  EXPECT_EQ(Formatted(options, "1"), "1");
  decimals = 2;
  options["DecimalSeparator"] = ",";
  EXPECT_EQ(Formatted(options, "1"), "1,00");
  const NQ_TDict copy = options;
  options.Remove("Decimals");
  EXPECT_EQ(Formatted(options, "1") + Formatted(copy, "1"), "11,00");
  for (int i = 0; i < 1'000; ++i) {
    NQ_TDict other;
    other["Decimals"] = i % 7;
    EXPECT_EQ(Formatted(other, "1"), NQ_TString::Format("%.*f", i % 7, 1.0));
  }
}

TEST(FormatNumber, LengthsAreBounded) {
  using names_test::Repeated;
  const std::string zeros = Repeated("0", 60'000);
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"Decimals=2147483647", "1", "1." + Repeated("0", 4096)},
      {"", "1." + zeros, "1." + Repeated("0", 4096)},
      {"AddLeadingZeros=true|PreferredIntegerLength=2147483647|Decimals=4096", "-1",
       Repeated("0", 4094) + "-1." + Repeated("0", 4096)},
      {"Decimals=0", zeros + "1", "1"},
      {"Decimals=0", zeros + zeros + "1", "refused " + zeros + zeros + "1"},  // does not end soon enough
      {"Decimals=0", "7" + Repeated("x", 1'000'000), "7"},
  };
  for (const auto& [options, value, formatted] : cases)
    EXPECT_TRUE(ExpectSame(Options(options), names_test::S(value)) == formatted.c_str()) << options;
}

// ---- random numbers

class NumbersAgainstStreams : public testing::Test {
 protected:
  std::size_t Below(std::size_t end) { return random_() % end; }
  bool OneIn(std::size_t many) { return Below(many) == 0; }
  u16string OneOf(std::initializer_list<const char16_t*> texts) { return texts.begin()[Below(texts.size())]; }

  NQ_TDict SomeOptions();
  NQ_TString Value();
  u16string Digits(std::size_t most);

  char16_t decimal_ = u'.';
  char16_t group_ = u',';
  std::mt19937 random_{20250607};
};

NQ_TDict NumbersAgainstStreams::SomeOptions() {
  NQ_TDict options;
  const auto separator = [&](const char* key, char16_t absent) {
    if (OneIn(3)) return absent;
    const u16string text = OneIn(12) ? OneOf({u"5", u"0", u"-", u"+", u"e", u"E", u"x", u"\n", u"\uFFFD", u"\xD83D"})
                                     : OneOf({u".", u",", u"'", u" ", u"\u00A0", u"\u202F", u".,", u""});
    options[key] = NQ_TString(text);
    return text.empty() ? absent : text[0];
  };
  decimal_ = separator("InputDecimalSeparator", u'.');
  group_ = separator("InputThousandsSeparator", u',');
  separator("DecimalSeparator", u'.');
  separator("ThousandsSeparator", u',');
  if (!OneIn(3)) options["Decimals"] = OneIn(50) ? 5'000 : static_cast<int>(Below(OneIn(4) ? 25 : 5)) - 1;
  if (OneIn(3)) options["AddLeadingZeros"] = true;
  if (OneIn(2)) options["PreferredIntegerLength"] = static_cast<int>(Below(12)) - 1;
  if (!OneIn(3)) return options;
  options["Convert"] = true;
  options["ConvertUnitCategory"] = OneIn(30) ? "length" : "LENGTH";
  for (const char* key : {"ConvertFromUnit", "ConvertToUnit"})
    options[key] = NQ_TString(OneIn(30) ? u"s" : OneOf({u"mm", u"in", u"pt", u"m", u"mil"}));
  return options;
}

u16string NumbersAgainstStreams::Digits(std::size_t most) {
  u16string digits;
  for (std::size_t n = Below(most + 1); n > 0; --n)
    digits += OneIn(4) ? u'0' : OneIn(4) ? u'5' : static_cast<char16_t>(u'0' + Below(10));
  return digits;
}

NQ_TString NumbersAgainstStreams::Value() {
  u16string integers = Digits(OneIn(10) ? 25 : 8);
  if (OneIn(100)) integers = u16string(Below(300), u'0') + integers;
  for (std::size_t at = OneIn(2) ? integers.size() : 0; at > 3;) {
    at -= OneIn(30) ? 1 + Below(4) : 3;
    if (at > 0 && at < integers.size()) integers.insert(at, 1, group_);
  }
  u16string value = OneOf({u"", u"", u"", u"-", u"+", u" ", u" -", u"\t", u"--", u"x", u"\u00A0"}) + integers;
  if (!OneIn(3)) value += decimal_ + Digits(OneIn(10) ? 20 : 6);
  value += OneOf({u"", u"", u"", u"", u" ", u" mm", u"e3", u"E-2", u"e", u"e+400", u"x.5", u",", u"\xD83D"});
  if (OneIn(10)) value.insert(Below(value.size() + 1), 1, OneIn(2) ? group_ : decimal_);
  return NQ_TString(value);
}

TEST_F(NumbersAgainstStreams, AreFormattedAsByStreams) {
  const int count = Rounds(20'000);
  int fast = 0, refused = 0, errors = 0;
  NQ_TDict options;
  for (int i = 0; i < count; ++i) {
    if (i % 4 == 0) options = SomeOptions();
    const NQ_TString value = Value(), plain = ExpectSame(options, value);
    ASSERT_FALSE(HasFailure()) << "number " << i;
    fast += ReadPlainNumber(value.StringView(), ReadNumberOptions(options).input) ? 1 : 0;
    refused += plain.StartsWith("refused") ? 1 : 0;
    errors += plain.StartsWith("error") ? 1 : 0;
  }
  // The comparison says something only where all outcomes occur.
  EXPECT_TRUE(fast > count / 3 && refused > count / 20 && errors > count / 100)
      << fast << ' ' << refused << ' ' << errors;
}

// Doubles of any size with up to 20 decimals, many of them in the middle between two results.
TEST_F(NumbersAgainstStreams, AreRoundedAsByStreams) {
  for (int i = 0; i < Rounds(20'000); ++i) {
    double number = std::ldexp(static_cast<double>(random_()), static_cast<int>(Below(90)) - 60);
    if (OneIn(2)) number = static_cast<double>(Below(1'000'000)) / static_cast<double>(1U << Below(12));
    const int decimals = static_cast<int>(Below(OneIn(2) ? 20 : 5));
    NQ_TString text;
    AppendPlainNumber(number, decimals, 0, TPunctuation(), text);
    ASSERT_EQ(text, NQ_TString::Format("%.*f", decimals, number)) << "number " << i;
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
TEST(FormatNumber, TheGlobalLocaleAndTheRoundingDirectionCount) {
  const std::locale& c = std::locale::classic();
  const std::pair<std::locale, const char*> cases[] = {{std::locale("C.UTF-8"), "2.5"},
                                                       {std::locale(c, new TUnderscoreIsSpace), "2.5"},
                                                       {std::locale(c, new TArabicDigits), "refused 2.5"},
                                                       {std::locale(c, new TStars), "*"},
                                                       {std::locale(c, new TAlwaysSeven), "7.0"}};
  for (const auto& [locale, of25] : cases) {
    const std::locale before = std::locale::global(locale);
    EXPECT_EQ(ExpectSame(NQ_TDict(), "2.5"), of25);
    for (const char* value : {"_1.5", " 1.5", "_", "1.5_", "\u0661.\u0665"}) ExpectSame(NQ_TDict(), value);
    std::locale::global(before);
  }
  for (const int direction : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    std::fesetround(direction);
    for (const char* value : {"0.125", "2.5", "-2.5", "0.1", "123456789012345678.9"})
      for (const char* options : {"Decimals=0", "Decimals=2", "Decimals=20"}) ExpectSame(Options(options), value);
  }
}

}  // namespace
}  // namespace templatenames
