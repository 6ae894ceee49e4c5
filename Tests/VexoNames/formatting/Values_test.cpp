// What becomes of values: the rows of Values.txt, and what Docs/formatting-options.md shows.
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "DocsPage.h"
#include "NQ_TTime.h"
#include "OptionsText.h"
#include "Support.h"
#include "engine/DateLog.h"
#include "formatting/CheckOptions.h"
#include "formatting/OptionTable.h"
#include "formatting/date/DateTime.h"
#include "formatting/number/FormatNumber.h"
#include "formatting/number/NumberByStreams.h"
#include "formatting/text/FormatText.h"
#include "systemnames/Office.h"

namespace names_test {
namespace {

using namespace templatenames;
using std::string;
using system_test::Dict;
using TJson = nlohmann::json;

bool IsWritten(const TNumberOutcome& outcome) { return outcome.kind == TNumberOutcome::TKind::Written; }

using TFormat = bool (*)(const NQ_TDict& options, NQ_TString& value);
constexpr std::pair<std::string_view, TFormat> kFormatters[] = {
    {"TEXT", [](const NQ_TDict& options, NQ_TString& value) { return FormatText(options, 1'000, value); }},
    {"NUMBER", [](const NQ_TDict& options, NQ_TString& value) { return IsWritten(FormatNumber(options, value)); }},
    {"NUMBER", [](const NQ_TDict& options,
                  NQ_TString& value) { return IsWritten(FormatNumberByStreams(ReadNumberOptions(options), value)); }},
    {"DATETIME",
     [](const NQ_TDict& options, NQ_TString& value) {
       const TDateOutcome outcome = FormatDateTimeValue(options, value, nullptr);
       LogDate(0, options, "", value, outcome);
       return outcome.written;
     }},
};

/// The value in quotes as it is after formatting, "!" when it was refused, the error between braces.
string Outcome(TFormat format, const NQ_TDict& options, const string& value, bool logsRefusal) {
  NQ_TString text = S(value);
  bool done = false;
  Output log;
  const string error = Thrown([&] { done = format(options, text); });
  EXPECT_EQ(log.Take().empty(), done || !logsRefusal);
  EXPECT_TRUE(done || Text(text) == value);
  return !error.empty() ? '{' + error + '}' : done ? TJson(Text(text)).dump() : "!";
}

const RowFile file("formatting/Values.txt", {}, [](const Row& row) {
  NQ_TTime::SetClock([] { return 1601899387250.0; });
  const std::size_t quote = row.text.find(" \""), arrow = row.text.find("\" => ");
  const NQ_TDict options = formatting_test::Options(row.text.substr(0, quote));
  const string value = TJson::parse(row.text.substr(quote + 1, arrow - quote)), expected = row.text.substr(arrow + 5);
  for (const auto& [word, format] : kFormatters) {
    if (Text(*options.Get<NQ_TString>("DataFormat")) != word) continue;
    EXPECT_EQ(Outcome(format, options, value, word == "DATETIME"),
              expected[0] == '"' ? TJson::parse(expected).dump() : expected);
  }
  NQ_TTime::SetClock(nullptr);
});

// ---- the page

std::vector<std::vector<string>> RowsOf(const string& title) { return Rows(Page("formatting-options.md"), title); }

string Formatted(const TJson& options, const string& value) {
  Names names("text due = x");
  names.SetValue("due", S(value));
  names.SetFormattingOptions("due", Dict(options.dump()));
  Output log;
  try {
    return Resolved(names, "<<due/>>");
  } catch (const NQ_EException& error) {
    return error.ClassName();
  }
}

TEST(FormattingOptionsPage, HasTheOptionsOfTheTable) {
  const std::pair<string, TOptionForm> kinds[] = {{"text", TOptionForm::Text},
                                                  {"true or false", TOptionForm::Flag},
                                                  {"whole number", TOptionForm::Count},
                                                  {"list of pairs", TOptionForm::Pairs}};
  std::set<string> page, table;
  for (const auto& row : RowsOf("Option")) page.insert(row.at(0) + ": " + row.at(1));
  for (const TOption& option : std::span(kOptions).subspan(1)) {  // the first one chooses among them
    const auto form = option.form < TOptionForm::Flag ? TOptionForm::Text : option.form;
    for (const auto& [kind, its] : kinds)
      if (its == form) table.insert(Text(NQ_TString(option.key)) + ": " + kind);
  }
  EXPECT_EQ(page, table);
}

// An example needs each of its options: without one, the value becomes something else in at least one of them. Who does
// not read an option cannot pass.
TEST(FormattingOptionsPage, EveryOptionHasAnExampleAndEveryExampleHolds) {
  std::set<string> unused;
  for (const TOption& option : kOptions) unused.insert(Text(NQ_TString(option.key)));
  for (const auto& row : RowsOf("Options")) {
    const TJson options = TJson::parse(row.at(0)), flat = options.flatten(), value = TJson::parse(row.at(1));
    const string formatted = TJson::parse(row.at(2));
    EXPECT_EQ(Formatted(options, value), formatted) << row.at(0);
    TFindings findings;
    CheckOptions(Dict(options.dump()), findings);
    EXPECT_TRUE(findings.All().empty()) << row.at(0) << Text(findings.All().front().reason);
    for (const auto& [path, leaf] : flat.items()) {
      TJson without = options;
      const TJson::json_pointer place(path);
      without.at(place.parent_pointer()).erase(place.back());
      if (Formatted(without, value) != formatted) unused.erase(place.back());
      if (path.starts_with("/CustomEncoding")) unused.erase("CustomEncoding");
    }
  }
  EXPECT_TRUE(unused.empty()) << "no example of " << *unused.begin();
}

TEST(FormattingOptionsPage, ContextFile) {
  const string page = Page("formatting-options.md");
  const std::size_t begin = page.find("```json\n") + 8;
  const TJson due = TJson::parse(page.substr(begin, page.find("```", begin) - begin))["names"]["due"];
  EXPECT_NE(page.find("becomes `" + Formatted(due["FormattingOptions"], due["Value"]) + "`"), string::npos);
}

TEST(FormattingOptionsPage, UnitsAndPatterns) {
  std::map<string, string> bases;
  for (const auto& row : RowsOf("Category")) {
    const string& base = bases.try_emplace(row.at(0), row.at(1)).first->second;
    const TJson options = {{"DataFormat", "NUMBER"},       {"Convert", true},       {"ConvertUnitCategory", row.at(0)},
                           {"ConvertFromUnit", row.at(1)}, {"ConvertToUnit", base}, {"Decimals", 18}};
    EXPECT_DOUBLE_EQ(std::stod(Formatted(options, "1")), std::stod(row.at(3))) << row.at(0) << ' ' << row.at(1);
  }
  EXPECT_EQ(bases.size(), 5U);
  TJson options = {{"DataFormat", "DATETIME"},
                   {"InputDateTimeFormat", "ISO8601"},
                   {"TimeZone", "Europe/Brussels"},
                   {"Language", "en"}};
  EXPECT_GE(RowsOf("Pattern").size(), 15U);
  for (const auto& row : RowsOf("Pattern")) {
    options["CustomDateTimeFormat"] = row.at(0);
    EXPECT_EQ(Formatted(options, "2020-10-05T14:03:07.25+02:00"), row.at(1)) << row.at(0);
  }
}

}  // namespace
}  // namespace names_test
