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
