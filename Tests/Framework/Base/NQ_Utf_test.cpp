// The conversions beside ICU's.
#include "NQ_Utf.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <string>
#include <vector>

#include "Support.h"

namespace base_test {
namespace {

std::u16string Converted(std::string_view utf8) { return std::u16string(NQ_TString(utf8).StringView()); }
std::string Converted(std::u16string_view utf16) { return std::string(NQ_TString(utf16).Narrow()); }

std::u16string ByIcu(const std::string& utf8) {
  std::u16string units(utf8.size() + 1, u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(units.data(), static_cast<std::int32_t>(units.size()), &length, utf8.data(),
                       static_cast<std::int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
  EXPECT_TRUE(U_SUCCESS(status));
  units.resize(static_cast<std::size_t>(length));
  return units;
}

std::string ByIcu(const std::u16string& utf16) {
  std::string bytes(utf16.size() * 3 + 1, '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, utf16.data(),
                     static_cast<std::int32_t>(utf16.size()), 0xFFFD, nullptr, &status);
  EXPECT_TRUE(U_SUCCESS(status));
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

TEST(NQ_Utf, EveryMaximalInvalidPieceBecomesOneReplacement) {
  const struct {
    const char* name;
    const char* utf8;
    const char16_t* utf16;
  } cases[] = {
      {"lone trail bytes", "a\x80\xBFz", u"a\uFFFD\uFFFDz"},
      {"lead without trail", "\xC3", u"\uFFFD"},
      {"three of four bytes", "\xF0\x9F\x93", u"\uFFFD"},
      {"three of four bytes, then text", "\xF0\x9F\x93z", u"\uFFFDz"},
      {"overlong two bytes", "\xC0\xAF", u"\uFFFD\uFFFD"},
      {"overlong three bytes", "\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},
      {"surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
      {"above U+10FFFF", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"bytes that never occur", "\xFE\xFF", u"\uFFFD\uFFFD"},
      {"last code point", "\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
      {"byte order mark is kept", "\xEF\xBB\xBFx", u"\uFEFFx"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Converted(std::string_view(row.utf8)), row.utf16) << row.name;
    EXPECT_EQ(ByIcu(std::string(row.utf8)), row.utf16) << row.name;
  }
}

TEST(NQ_Utf, ConvertsAsIcuDoes) {
  const char* const kPieces[] = {"\xC3\xB8", "\xE2\x82\xAC", "\xF0\x9F\x93\x84", "\xC3", "\xE2\x82",
                                 "\xF0\x9F", "\x80",         "\xED\xB0\x80",     "\xFF", "\xF4\x90"};
  TRandom random(3);
  for (int round = 0; round < 3000; ++round) {
    std::string utf8;
    std::u16string utf16;
    for (unsigned pieces = random.Below(8); pieces > 0; --pieces) {
      const unsigned ascii = random.Below(2) * random.Below(70);
      utf8.append(ascii, 'x');
      utf16.append(ascii, u'x');
      utf8 += kPieces[random.Below(std::size(kPieces))];
      const char16_t units[] = {u'\u00FF', u'\u07FF', u'\u0800', u'\xD800', u'\xDC00', u'\xDBFF', u'\uFFFF', u'\0'};
      for (unsigned i = random.Below(4); i > 0; --i) utf16 += units[random.Below(std::size(units))];
    }
    ASSERT_EQ(Converted(utf8), ByIcu(utf8)) << round;
    ASSERT_EQ(Converted(utf16), ByIcu(utf16)) << round;
    std::string appended = "before";
    nq::AppendUtf8(utf16, appended);
    ASSERT_EQ(appended, "before" + ByIcu(utf16)) << round;
  }
}

// A text that changes between ASCII and other characters all the time; the time limit of the tests is what fails.
TEST(NQ_Utf, LongMixedTextIsConvertedInOnePass) {
  constexpr std::size_t kLength = 2'000'000;
  std::string mixed;
  while (mixed.size() < kLength) mixed += "a\xC3\xB8";
  EXPECT_EQ(Converted(mixed).size(), mixed.size() / 3 * 2);
  EXPECT_EQ(Converted(Converted(mixed)), mixed);
}

}  // namespace
}  // namespace base_test
