// What Docs/formatting-options.md shows is what happens.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "DocsPage.h"
#include "NQ_TArray.h"
#include "TName.h"

namespace {

using std::string;
using TJson = nlohmann::json;
using TRow = std::vector<string>;

const string& Page() {
  static const string page = names_test::Page("formatting-options.md");
  return page;
}

std::vector<TRow> Rows(const string& title) { return names_test::Rows(Page(), title); }

NQ_TString Wide(const string& utf8) { return NQ_TString(std::string_view(utf8)); }

NQ_TDict Options(const TJson& json);

NQ_TAny Option(const TJson& json) {
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number()) return json.get<int>();
  if (json.is_string()) return Wide(json.get<string>());
  NQ_TArray pairs;
  for (const TJson& pair : json) pairs.Add(Options(pair));
  return pairs;
}

NQ_TDict Options(const TJson& json) {
  NQ_TDict options;
  for (const auto& [key, value] : json.items()) options.Add(Wide(key), Option(value));
  return options;
}

string Formatted(const TJson& options, const string& value) {
  TName names;
  names.Define("due", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("due", Wide(value));
  names.SetFormattingOptions("due", Options(options));
  NQ_TString result;
  EXPECT_TRUE(names.Resolve("<<due/>>", result));
  return string(result.Narrow());
}

TEST(FormattingOptionsPage, EveryOptionHasAnExampleAndEveryExampleHolds) {
  std::set<string> unused;
  for (const TRow& row : Rows("Option")) EXPECT_TRUE(unused.insert(row.at(0)).second) << row.at(0);
  EXPECT_GE(unused.size(), 25U);
  for (const TRow& row : Rows("Options")) {
    SCOPED_TRACE(row.at(0) + " of " + row.at(1));
    const TJson options = TJson::parse(row.at(0));
    EXPECT_EQ(Formatted(options, TJson::parse(row.at(1))), TJson::parse(row.at(2)).get<string>());
    const TJson flat = options.flatten();
    for (const auto& [path, value] : flat.items()) {
      std::istringstream keys(path);
      for (string key; std::getline(keys, key, '/');) unused.erase(key);
    }
  }
  EXPECT_TRUE(unused.empty()) << "no example of " << *unused.begin();
}

TEST(FormattingOptionsPage, ContextFile) {
  const std::size_t begin = Page().find("```json\n") + 8;
  const TJson due = TJson::parse(Page().substr(begin, Page().find("```", begin) - begin))["names"]["due"];
  EXPECT_NE(Page().find("becomes `" + Formatted(due["FormattingOptions"], due["Value"]) + "`"), string::npos);
}

TEST(FormattingOptionsPage, Units) {
  std::map<string, string> bases;
  for (const TRow& row : Rows("Category")) {
    const string& base = bases.try_emplace(row.at(0), row.at(1)).first->second;
    const TJson options = {{"DataFormat", "NUMBER"},       {"Convert", true},       {"ConvertUnitCategory", row.at(0)},
                           {"ConvertFromUnit", row.at(1)}, {"ConvertToUnit", base}, {"Decimals", 18}};
    EXPECT_DOUBLE_EQ(std::stod(Formatted(options, "1")), std::stod(row.at(3))) << row.at(0) << ' ' << row.at(1);
  }
  EXPECT_EQ(bases.size(), 5U);
}

TEST(FormattingOptionsPage, Patterns) {
  const std::vector<TRow> rows = Rows("Pattern");
  EXPECT_GE(rows.size(), 15U);
  for (const TRow& row : rows) {
    const TJson options = {{"DataFormat", "DATETIME"},
                           {"InputDateTimeFormat", "ISO8601"},
                           {"TimeZone", "Europe/Brussels"},
                           {"Language", "en"},
                           {"CustomDateTimeFormat", row.at(0)}};
    EXPECT_EQ(Formatted(options, "2020-10-05T14:03:07.25+02:00"), row.at(1)) << row.at(0);
  }
}

}  // namespace
