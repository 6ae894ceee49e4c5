// The conversions beside ICU's.
#include "NQ_Utf.h"

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include <string>

#include "Support.h"

namespace base_test {
namespace {

std::u16string ByIcu(const std::string& utf8) {
  const icu::UnicodeString units = icu::UnicodeString::fromUTF8(utf8);
  return {units.getBuffer(), static_cast<std::size_t>(units.length())};
}

std::string ByIcu(const std::u16string& utf16) {
  std::string utf8;
  return icu::UnicodeString(utf16.data(), static_cast<std::int32_t>(utf16.size())).toUTF8String(utf8);
}

TEST(NQ_Utf, ConvertsAsIcuDoes) {
  // Characters, cut ones, lone trail bytes, overlong forms, surrogates, above U+10FFFF, bytes that never occur.
  const char* const pieces[] = {"\xC3\xB8",     "\xE2\x82\xAC", "\xF0\x9F\x93\x84", "\xC3",
                                "\xE2\x82",     "\xF0\x9F",     "\xF0\x9F\x93",     "\x80",
                                "\xED\xB0\x80", "\xFE\xFF",     "\xF4\x90",         "\xF4\x8F\xBF\xBF",
                                "\xC0\xAF",     "\xE0\x80\xAF", "\xEF\xBB\xBF"};
  const char16_t units[] = {u'\u00FF', u'\u07FF', u'\u0800', u'\xD800', u'\xDC00', u'\xDBFF', u'\uFFFF', u'\0'};
  TRandom random(3);
  for (int round = 0; round < 5000; ++round) {
    std::string utf8, appended = "before";
    std::u16string utf16;
    for (unsigned count = random.Below(8); count > 0; --count) {
      const unsigned ascii = random.Below(2) * random.Below(70);
      utf8.append(ascii, 'x').append(pieces[random.Below(std::size(pieces))]);
      utf16.append(ascii, u'x');
      for (unsigned i = random.Below(4); i > 0; --i) utf16 += units[random.Below(std::size(units))];
    }
    ASSERT_EQ(S(utf8).StringView(), ByIcu(utf8)) << round;
    ASSERT_EQ(NQ_TString(utf16).Narrow(), ByIcu(utf16)) << round;
    nq::AppendUtf8(utf16, appended);
    ASSERT_EQ(appended, "before" + ByIcu(utf16)) << round;
  }
  // A text that changes between ASCII and other characters all the time takes linear time.
  std::string mixed;
  while (mixed.size() < 2'000'000) mixed += "a\xC3\xB8";
  EXPECT_EQ(NQ_TString(S(mixed).StringView()).Narrow(), mixed);
}

}  // namespace
}  // namespace base_test
