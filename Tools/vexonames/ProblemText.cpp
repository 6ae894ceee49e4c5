#include "ProblemText.h"

#include "Text.h"

namespace {

using TJson = nlohmann::ordered_json;

constexpr std::size_t kLongestReason = 500;

// "in the value of 'a' > 'b': "
std::string Within(const std::vector<NQ_TString>& names) {
  constexpr std::size_t kMostShown = 5;
  if (names.empty()) return {};
  std::string where = "in the value of ";
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) where += " > ";
    if (i == kMostShown && i + 1 < names.size()) {
      where += "... > ";
      i = names.size() - 1;
    }
    where += '\'' + Printable(Shortened(names[i].Narrow())) + '\'';
  }
  return where + ": ";
}

void Put(const char* key, const NQ_TString& text, TJson& object) {
  if (!text.Empty()) object[key] = std::string(text.Narrow());
}

}  // namespace

std::string Sentence(const TNameProblem& problem) {
  const std::string token = problem.Token().Empty() ? "" : Printable(Shortened(problem.Token().Narrow())) + ": ";
  return Within(problem.Within()) + token + Printable(Shortened(problem.Reason().Narrow(), kLongestReason));
}

std::vector<std::string> FailureLines(const TNameReport& report) {
  std::vector<std::string> lines;
  std::size_t untold = report.FailureCount() - report.Failures().size();
  const TNameProblem* before = nullptr;
  for (const TNameProblem& failure : report.Failures()) {
    const bool again = before != nullptr && !failure.Limit().Empty() && failure.Reason() == before->Reason();
    again ? void(++untold) : lines.push_back(Sentence(failure));
    before = &failure;
  }
  if (untold > 0) lines.push_back(std::to_string(untold) + (untold == 1 ? " more token fails" : " more tokens fail"));
  return lines;
}

TJson JsonOf(const TNameProblem& problem, TNamePlaces& places) {
  const TNamePlace place = places.At(problem.Begin());
  TJson object = {{"kind", problem.KindName()}, {"token", std::string(problem.Token().Narrow())}};
  Put("key", problem.Key(), object);
  object.update({{"begin", problem.Begin()}, {"end", problem.End()}, {"line", place.line}, {"column", place.column}});
  object["within"] = TJson::array();
  for (const NQ_TString& name : problem.Within()) object["within"].push_back(std::string(name.Narrow()));
  Put("reason", problem.Reason(), object);
  Put("suggestion", problem.Suggestion(), object);
  Put("limit", problem.Limit(), object);
  return object;
}
