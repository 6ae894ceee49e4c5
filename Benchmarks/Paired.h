// Paired measurement. A machine that others use changes its speed by half within seconds, so two timings
// taken one after the other say little. Here all subjects of a group take turns in slices of about a
// millisecond; a ratio is taken within one round, where both sides met the same machine, and the median of
// many rounds counts.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

class WrongText : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Something that is timed: an engine on a workload.
class Subject {
 public:
  Subject(std::string name, std::size_t tokensPerRun) : name_(std::move(name)), tokens_(double(tokensPerRun)) {}
  virtual ~Subject() = default;

  const std::string& Name() const { return name_; }

  // Works for about that many nanoseconds and returns the nanoseconds it took for a token.
  virtual double Slice(double nanoseconds) = 0;

  // Throws WrongText unless the engine makes the expected text.
  virtual void Check() = 0;

 protected:
  double Tokens() const { return tokens_; }
  void Expect(const std::string& expected, const std::string& text) const;

 private:
  std::string name_;
  double tokens_;
};
using Subjects = std::vector<std::unique_ptr<Subject>>;

struct Ratio {
  double median = 0;
  double low = 0, high = 0;  // the quartiles: how far single rounds lay apart
};

struct Measurement {
  std::string group, subject;
  double nanosecondsPerToken = 0;        // median; tells nothing about another run
  std::map<std::string, Ratio> against;  // by the name of the other subject
};

// Checks every subject, measures, checks again; `sliceNanoseconds` is the length of one turn.
std::vector<Measurement> MeasurePaired(const std::string& group, const Subjects& subjects, int rounds,
                                       double sliceNanoseconds);

}  // namespace bench
