// What became of the tokens of a template: which failed and why, and how the others came to their text.
#include <iostream>

#include "TName.h"

int main() {
  TName names;
  names.Define("customer", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("customer", "Imprimerie Lefèvre & Fils");
  names.Define("file", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("file", "job_0815_cover.pdf");

  const NQ_TString text = "<<custmer/>>/<<file elem=\"_,7\"/>>";
  NQ_TString path;
  TNameReport report;
  names.Resolve(text, path, report);
  for (const TNameProblem& problem : report.Failures())
    std::cout << problem.Token() << ": " << problem.Reason() << '\n';

  // A note is of a token that resolves and probably should not.
  TNamePlaces places(text);
  for (const TNameProblem& note : report.Notes()) {
    const TNamePlace place = places.At(note.Begin());
    std::cout << "line " << place.line << ", column " << place.column << ": " << note.Reason() << '\n';
  }

  // Step by step.
  const TNameExplanation explained = names.Explain("<<file elem=\"_,1\"/>>");
  for (const TNameExplanation::TStep& step : explained.Tokens().front().steps)
    std::cout << step.name << ": " << step.text << '\n';
}
