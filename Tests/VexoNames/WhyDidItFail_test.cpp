// What Docs/why-did-it-fail.md shows of each kind of problem is so.
#include <functional>
#include <map>
#include <set>

#include "DocsPage.h"
#include "Support.h"
#include "systemnames/Office.h"

using namespace names_test;
using std::string;

namespace {

// Kinds that nothing gives yet: their examples show what is meant.
const std::set<string> kLanding = {"unquoted", "unknown-attribute", "repeated-attribute", "marker"};

struct Example {
  string kind;
  std::map<string, string> lines;  // "names", "template", ...
};

// Indented lines "word: text" below the heading "### kind"; an empty line ends an example.
std::vector<Example> Examples() {
  std::vector<Example> examples;
  std::istringstream lines(Page("why-did-it-fail.md"));
  string kind;
  bool within = false;
  for (string line; std::getline(lines, line);) {
    if (line.substr(0, 4) == "### ") kind = line.substr(4);
    const bool belongs = line.substr(0, 4) == "    ";
    if (belongs && !within) examples.push_back({kind, {}});
    if (belongs) {
      const std::size_t colon = line.find(':');
      examples.back().lines[line.substr(4, colon - 4)] = line.substr(line.find_first_not_of(' ', colon + 1));
    }
    within = belongs;
  }
  return examples;
}

// What the words of "with" stand for.
const std::map<string, std::function<void(TName&)>> kPrograms = {
    {"", [](TName&) {}},
    {"a service for stock that is not there",
     [](TName& names) {
       names.RemValue("stock");
       names.SetServerQuery("stock", "srv1", "warehouse", "GetStock", NQ_TDict());
       names.SetLookupHandler("stock", TName::TName_LookupServerQuery);
     }},
    {"a program that gives the text \"many\" for pages",
     [](TName& names) {
       const auto gives = [](const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) { return value = S("many"), true; };
       names.SetLookupHandler("pages", gives, false);
     }},
    {"a program that fails with \"no such job\" for job",
     [](TName& names) {
       const auto fails = [](const NQ_TString&, NQ_TDict*, TName*, NQ_TAny&) -> bool {
         throw NQ_EException("no such job");
       };
       names.SetLookupHandler("job", fails, false);
     }},
};

void Prepare(Example& example, TName& names) {
  Do(names, example.lines["names"]);
  if (const string options = example.lines["options"]; !options.empty()) {
    const std::size_t blank = options.find(' ');
    names.SetFormattingOptions(S(options.substr(0, blank)), system_test::Dict(options.substr(blank)));
  }
  kPrograms.at(example.lines["with"])(names);
}

// The lines that the page should have.
std::map<string, string> Told(TName& names, const string& text) {
  NQ_TString result(text);
  TNameReport report;
  const Output log;  // some problems are logged too
  try {
    names.Resolve(S(text), result, report);
  } catch (const NQ_EException&) {
    result = S(text);
  }
  std::vector<TNameProblem> problems = report.Failures();
  problems.insert(problems.end(), report.Notes().begin(), report.Notes().end());
  std::map<string, string> told = {{"becomes", Text(result)}};
  for (const TNameProblem& problem : problems) {
    const string kind(problem.KindName()), reason = Text(problem.Reason());
    if (told.contains("kind")) {
      told["also"] += kind + ": " + reason;
      continue;
    }
    told["kind"] = kind;
    told["reason"] = reason;
    if (!problem.Suggestion().Empty()) told["instead"] = Text(problem.Suggestion());
  }
  return told;
}

TEST(WhyDidItFailPage, EveryExampleHolds) {
  for (Example& example : Examples()) {
    Names names("");
    Prepare(example, names);
    const std::map<string, string> told = Told(names, example.lines["template"]);
    std::map<string, string> shown = {{"kind", example.kind}};
    for (const char* const word : {"becomes", "reason", "instead", "also"})
      if (example.lines.contains(word)) shown[word] = example.lines[word];
    if (kLanding.contains(example.kind)) shown = {{"becomes", shown["becomes"]}};
    EXPECT_EQ(told, shown) << example.kind;
  }
}

TEST(WhyDidItFailPage, EveryKindHasAnExample) {
  std::set<string> shown, all;
  for (const Example& example : Examples()) shown.insert(example.kind);
  for (int kind = 0; !TNameProblem::NameOf(TNameProblem::TNameProblem_Kind(kind)).empty(); ++kind)
    all.emplace(TNameProblem::NameOf(TNameProblem::TNameProblem_Kind(kind)));
  EXPECT_EQ(shown, all);
}

}  // namespace
