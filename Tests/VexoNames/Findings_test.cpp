// What is said of options, values, stages and formats: the rows of Findings.txt.
#include <functional>
#include <map>
#include <nlohmann/json.hpp>

#include "Support.h"
#include "engine/FormattingStep.h"
#include "formatting/CheckOptions.h"
#include "formatting/number/Units.h"
#include "systemnames/Office.h"
#include "text/PrintfRefusal.h"
#include "text/StageFindings.h"

namespace names_test {
namespace {

using namespace templatenames;
using std::string;
using TJson = nlohmann::json;
using TArguments = std::vector<TJson>;

NQ_TString TextAt(const TArguments& arguments, std::size_t at) { return S(arguments.at(at).get<string>()); }

string Said(const NQ_TString& reason, const NQ_TString& suggestion) {
  return ' ' + Text(reason) + (suggestion.Empty() ? "" : " => " + Text(suggestion)) + '\n';
}

string Said(const TFindings& findings) {
  string said;
  for (const TFinding& finding : findings.All())
    said += ' ' + string(TNameProblem::NameOf(finding.kind)) + ':' + Said(finding.reason, finding.suggestion);
  return said;
}

string OfOptions(const TArguments& arguments) {
  TFindings findings;
  CheckOptions(system_test::Dict(arguments.at(0).dump()), findings);
  return Said(findings);
}

string OfValue(const TArguments& arguments) {
  const NQ_TDict options = system_test::Dict(arguments.at(0).dump());
  NQ_TString value = TextAt(arguments, 1), unasked = value;
  TFindings findings;
  Output log;
  EXPECT_TRUE(ApplyFormattingOptions(options, 0, 1'000, value, &findings));
  EXPECT_TRUE(ApplyFormattingOptions(options, 0, 1'000, unasked, nullptr));
  EXPECT_EQ(value, unasked);
  return Said(findings);
}

string OfUnit(const TArguments& arguments) {
  const NQ_TString nearest = NearestUnit(TextAt(arguments, 0), TextAt(arguments, 1));
  return "=> " + Text(nearest);
}

string OfStageError(TStageError error, const NQ_TString& spec) {
  return Said(StageErrorReason(error, spec.StringView()), StageErrorSuggestion(error, spec.StringView()));
}

string OfElem(const TArguments& arguments) {
  const NQ_TString text = TextAt(arguments, 0), input = TextAt(arguments, 1);
  const TElemSpec spec = ParseElem(text.StringView());
  if (spec.error != TStageError::None) return OfStageError(spec.error, text);
  TFindings findings;
  AddElemFindings(text.StringView(), spec, input.StringView(),
                  Element(input.StringView(), spec.separator, spec.index.value), findings);
  return Said(findings);
}

string OfExtract(const TArguments& arguments) {
  const NQ_TString text = TextAt(arguments, 0), input = TextAt(arguments, 1);
  const TExtractSpec spec = ParseExtract(text.StringView());
  if (spec.error != TStageError::None) return OfStageError(spec.error, text);
  TFindings findings;
  AddExtractFindings(text.StringView(), spec, input.StringView(),
                     Extract(input.StringView(), spec.start.value, spec.length.value), findings);
  return Said(findings);
}

template <TPrintfFormat::TKind kKind>
string OfFormat(const TArguments& arguments) {
  const NQ_TString format = TextAt(arguments, 0);
  TPrintfFormat::TRefusal refusal;
  if (TPrintfFormat::Parse(format.StringView(), kKind, &refusal)) return "";
  return Said(RefusalReason(format.StringView(), kKind, refusal),
              RefusalSuggestion(format.StringView(), kKind, refusal));
}

// The JSON values of a case, whatever words stand between them.
TArguments ArgumentsIn(const string& line) {
  TArguments arguments;
  for (std::size_t at = line.find_first_of("{\""); at < line.size(); at = line.find_first_of("{\"", at)) {
    std::size_t end = line.find_first_of("}\"", at + 1);
    while (end != line.npos && !TJson::accept(line.substr(at, end + 1 - at))) end = line.find_first_of("}\"", end + 1);
    if (end == line.npos) break;
    arguments.push_back(TJson::parse(line.substr(at, end + 1 - at)));
    at = end + 1;
  }
  return arguments;
}

const RowFile file("Findings.txt", {}, [](const Row& row) {
  const std::map<string, std::function<string(const TArguments&)>> kinds = {
      {"options", OfOptions},
      {"value", OfValue},
      {"unit", OfUnit},
      {"elem", OfElem},
      {"extract", OfExtract},
      {"number", OfFormat<TPrintfFormat::TKind::Integer>},
      {"text", OfFormat<TPrintfFormat::TKind::Text>},
  };
  const string head = row.text.substr(0, row.text.rfind("=>")), given = row.text.substr(head.size());
  EXPECT_EQ(kinds.at(head.substr(0, head.find(' ')))(ArgumentsIn(head)), given + row.below);
});

}  // namespace
}  // namespace names_test
