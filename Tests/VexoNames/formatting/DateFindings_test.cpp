// What template authors are told of dates: the rows of DateFindings.txt.
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "NQ_TTime.h"
#include "OptionsText.h"
#include "Support.h"
#include "formatting/date/CheckDateOptions.h"
#include "formatting/date/DateTime.h"
#include "formatting/date/IcuNames.h"

namespace templatenames {
namespace {

using formatting_test::Options;
using names_test::S;
using names_test::Text;
using std::string;

// "unlikely: what was found => what would do", one finding a line.
string Told(const TFindings& findings) {
  string told;
  for (const TFinding& finding : findings.All()) {
    told += "  " + string(TNameProblem::NameOf(finding.kind)) + ": " + Text(finding.reason);
    told += finding.suggestion.Empty() ? "\n" : " => " + Text(finding.suggestion) + "\n";
  }
  return told;
}

// A row is options, alone or with a value between double quotes.
string FindingsOf(const string& row) {
  const std::size_t quote = row.find(" \"");
  const NQ_TDict options = Options(row.substr(0, quote));
  TFindings findings;
  if (quote == row.npos) {
    CheckDateOptions(options, findings);
    return Told(findings);
  }
  NQ_TString value = S(nlohmann::json::parse(row.substr(quote + 1)).get<string>()), plain = value;
  FormatDateTimeValue(options, value, &findings);
  FormatDateTimeValue(options, plain, nullptr);
  EXPECT_EQ(value, plain);
  return Told(findings);
}

const names_test::RowFile file("formatting/DateFindings.txt", {}, [](const names_test::Row& row) {
  NQ_TTime::SetClock([] { return 1601899387250.0; });  // 2020-10-05T12:03:07.25Z
  EXPECT_EQ(FindingsOf(row.text), row.below);
  NQ_TTime::SetClock(nullptr);
});

TEST(DateFindings, PatternsTooLongToBeUsed) {
  const string longest(256, 'd');
  EXPECT_EQ(FindingsOf("CustomInputDateTimeFormat=" + longest + "|DateTimeFormat=UNIX"), "");
  EXPECT_EQ(FindingsOf("CustomInputDateTimeFormat=" + longest + "d|DateTimeFormat=UNIX"),
            "  option-value: \"CustomInputDateTimeFormat\" has more than 256 characters and is not used\n");
}

TEST(IcuNames, WhatIcuListsIsKnown) {
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t count = 0;
  const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
  ASSERT_GT(count, 0);
  for (std::int32_t i = 0; i < count; ++i) EXPECT_TRUE(IsKnownLanguage(locales[i].getName())) << locales[i].getName();
  const std::unique_ptr<icu::StringEnumeration> zones(icu::TimeZone::createEnumeration(error));
  while (const char* const id = zones->next(nullptr, error))
    EXPECT_EQ(IsKnownZone(id), string("Etc/Unknown") != id) << id;
}

// A pattern with any other letter gives less text than it has parts.
TEST(DateFindings, OnlyLettersThatIcuDoesNotWriteMeanNothing) {
  for (const char letter : string("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) {
    NQ_TDict options = Options("InputDateTimeFormat=UNIX");
    options["CustomDateTimeFormat"] = S(string("'x'") + letter);
    NQ_TString value("0");
    FormatDateTimeValue(options, value, nullptr);
    TFindings findings;
    CheckDateOptions(options, findings);
    EXPECT_EQ(value == "x", Told(findings).find("means nothing") != string::npos) << letter;
  }
}

}  // namespace
}  // namespace templatenames
