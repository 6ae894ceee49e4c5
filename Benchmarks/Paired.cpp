#include "Paired.h"

#include <algorithm>

namespace bench {
namespace {

Ratio Summary(std::vector<double> ratios) {
  std::sort(ratios.begin(), ratios.end());
  const std::size_t last = ratios.size() - 1;
  return {ratios[last / 2], ratios[last / 4], ratios[last - last / 4]};
}

std::vector<double> Divided(const std::vector<double>& times, const std::vector<double>& by) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < times.size(); ++i) ratios.push_back(times[i] / by[i]);
  return ratios;
}

}  // namespace

void Subject::Expect(const std::string& expected, const std::string& text) const {
  if (text == expected) return;
  const auto differ = std::mismatch(expected.begin(), expected.end(), text.begin(), text.end());
  const std::size_t at = std::size_t(differ.first - expected.begin());
  throw WrongText(name_ + " makes a wrong text: at " + std::to_string(at) + " \"" + text.substr(at, 60) +
                  "\" instead of \"" + expected.substr(at, 60) + "\"");
}

std::vector<Measurement> MeasurePaired(const std::string& group, const Subjects& subjects, int rounds,
                                       double sliceNanoseconds) {
  for (const auto& subject : subjects) subject->Check();

  std::vector<std::vector<double>> times(subjects.size());
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t turn = 0; turn < subjects.size(); ++turn) {
      // Every other round backwards, so that nobody always comes after the same neighbour.
      const std::size_t i = round % 2 ? subjects.size() - 1 - turn : turn;
      times[i].push_back(subjects[i]->Slice(sliceNanoseconds));
    }
  }
  for (const auto& subject : subjects) subject->Check();

  std::vector<Measurement> results;
  for (std::size_t i = 0; i < subjects.size(); ++i) {
    Measurement m{group, subjects[i]->Name(), Summary(times[i]).median, {}};
    for (std::size_t other = 0; other < subjects.size(); ++other) {
      m.against[subjects[other]->Name()] = Summary(Divided(times[i], times[other]));
    }
    results.push_back(std::move(m));
  }
  return results;
}

}  // namespace bench
