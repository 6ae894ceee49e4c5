// Numbers without streams against numbers by streams: same text, same outcome, same error. VEXONAMES_SLOW_TESTS=1
// compares fifty times as much.
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdlib>
#include <iterator>
#include <locale>
#include <random>
#include <string>

#include "NQ_EException.h"
#include "OptionsText.h"
#include "formatting/FormatNumber.h"
#include "formatting/NumberByStreams.h"
#include "formatting/PlainNumber.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using formatting_test::S;

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

class TRandomNumbers : public ::testing::Test {
 protected:
  static constexpr unsigned kSeed = 20250607;

  std::size_t Below(std::size_t end) { return random_() % end; }
  bool OneIn(std::size_t many) { return Below(many) == 0; }
  template <std::size_t N>
  const char16_t* OneOf(const char16_t* const (&texts)[N]) {
    return texts[Below(N)];
  }

  NQ_TDict Options();
  std::u16string Value();
  std::u16string Digits(std::size_t most);
  void PutGroups(std::u16string& integers);

  char16_t decimal_ = u'.';
  char16_t group_ = u',';
  std::mt19937 random_{kSeed};
};

NQ_TDict TRandomNumbers::Options() {
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

std::u16string TRandomNumbers::Digits(std::size_t most) {
  std::u16string digits;
  for (std::size_t n = Below(most + 1); n > 0; --n)
    digits += OneIn(4) ? u'0' : OneIn(4) ? u'5' : static_cast<char16_t>(u'0' + Below(10));
  return digits;
}

void TRandomNumbers::PutGroups(std::u16string& integers) {
  for (std::size_t at = integers.size(); at > 3;) {
    at -= OneIn(30) ? 1 + Below(4) : 3;
    if (at > 0 && at < integers.size()) integers.insert(at, 1, group_);
  }
}

std::u16string TRandomNumbers::Value() {
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

TEST_F(TRandomNumbers, AreFormattedAsByStreams) {
  const int count = std::getenv("VEXONAMES_SLOW_TESTS") != nullptr ? 1'000'000 : 20'000;
  int fast = 0, refused = 0, errors = 0;
  NQ_TDict options;
  for (int i = 0; i < count; ++i) {
    if (i % 4 == 0) options = Options();
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
TEST_F(TRandomNumbers, AreRoundedAsByStreams) {
  const int count = std::getenv("VEXONAMES_SLOW_TESTS") != nullptr ? 1'000'000 : 20'000;
  for (int i = 0; i < count; ++i) {
    double number = std::ldexp(static_cast<double>(random_()), static_cast<int>(Below(90)) - 60);
    if (OneIn(2)) number = static_cast<double>(Below(1'000'000)) / static_cast<double>(1U << Below(12));
    const int decimals = static_cast<int>(Below(OneIn(2) ? 20 : 5));
    NQ_TString text;
    AppendPlainNumber(number, decimals, 0, TPunctuation(), text);
    ASSERT_EQ(text, NQ_TString::Format("%.*f", decimals, number)) << "number " << i << ", seed " << kSeed;
  }
}

// An unpaired half counts as U+FFFD in the streams, and as itself where decimals are counted.
TEST(NumberRoads, HalvesOfPairs) {
  const struct {
    const char16_t* separator;
    const char16_t* value;
    const char16_t* outcome;
  } cases[] = {
      {u"\uFFFD", u"1\xD83D\x35", u"formatted 2"},
      {u"\uFFFD", u"1\uFFFD5", u"formatted 1.5"},
      {u"\xD83D", u"1\xD83D\x35", u"formatted 1.0"},
      {u"\xDCC4", u"1\U0001F4C45", u"formatted 1.0"},
  };
  for (const auto& row : cases) {
    NQ_TDict options;
    options["InputDecimalSeparator"] = NQ_TString(row.separator);
    EXPECT_EQ(ExpectSame(options, row.value), NQ_TString(row.outcome)) << NQ_TString(row.outcome);
  }
}

// ---- programs that change what streams do

class TGlobalLocale {
 public:
  explicit TGlobalLocale(const std::locale& locale) : before_(std::locale::global(locale)) {}
  ~TGlobalLocale() { std::locale::global(before_); }
  TGlobalLocale(const TGlobalLocale&) = delete;
  TGlobalLocale& operator=(const TGlobalLocale&) = delete;

 private:
  std::locale before_;
};

struct TUnderscoreIsSpace : std::ctype<wchar_t> {
  bool do_is(mask wanted, char_type c) const override {
    return ctype::do_is(wanted, c == L'_' ? L' ' : c == L' ' ? L'_' : c);
  }
};

struct TArabicDigits : std::ctype<wchar_t> {
  char_type do_widen(char c) const override {
    return c >= '0' && c <= '9' ? static_cast<char_type>(L'\u0660' + (c - '0')) : ctype::do_widen(c);
  }
  const char* do_widen(const char* low, const char* high, char_type* to) const override {
    for (; low != high; ++low) *to++ = do_widen(*low);
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
TEST(NumberRoads, TheGlobalLocaleCounts) {
  const std::locale& c = std::locale::classic();
  struct {
    const char* name;
    std::locale locale;
    const char* of25;
  } const cases[] = {
      {"classic", c, "formatted 2.5"},
      {"C.UTF-8", std::locale("C.UTF-8"), "formatted 2.5"},
      {"other punctuation", std::locale(c, new std::numpunct_byname<wchar_t>("C")), "formatted 2.5"},
      {"spaces", std::locale(c, new TUnderscoreIsSpace), "formatted 2.5"},
      {"digits", std::locale(c, new TArabicDigits), "refused 2.5"},
      {"num_put", std::locale(c, new TStars), "formatted *"},
      {"num_get", std::locale(c, new TAlwaysSeven), "formatted 7.0"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const TGlobalLocale global(row.locale);
    EXPECT_EQ(ExpectSame(NQ_TDict(), "2.5"), row.of25);
    for (const char* value : {"_1.5", " 1.5", "_", "1.5_", "\u0661.\u0665"}) ExpectSame(NQ_TDict(), S(value));
  }
}

TEST(NumberRoads, TheRoundingDirectionCounts) {
  for (const int direction : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    std::fesetround(direction);
    for (const char* value : {"0.125", "2.5", "-2.5", "0.1", "123456789012345678.9"})
      for (const char* options : {"Decimals=0", "Decimals=2", "Decimals=20"}) ExpectSame(Options(options), S(value));
  }
}

}  // namespace
}  // namespace templatenames
