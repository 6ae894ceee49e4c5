#include "Resolver.h"

#include <sstream>

#include "Hints.h"
#include "NQ_EException.h"

namespace {

/// No log lines of the tool's own questions.
class TQuiet {
 public:
  explicit TQuiet(TName& names) : names_(names), level_(names.SetDebugLevel(0)) {}
  TQuiet(const TQuiet&) = delete;
  TQuiet& operator=(const TQuiet&) = delete;
  ~TQuiet() { names_.SetDebugLevel(level_); }

 private:
  TName& names_;
  int level_;
};

}  // namespace

TResolution TResolver::Resolve(std::string_view utf8) {
  TResolution resolution;
  resolution.text = NQ_TString(utf8);
  if (resolution.text.Narrow() != utf8) resolution.hints.emplace_back("invalid UTF-8 was replaced by U+FFFD");
  const TCounters::TValues before = counters_.Save();
  log_.Take();
  try {
    resolution.ok = names_.Resolve(resolution.text, resolution.result);
  } catch (const NQ_EException& error) {
    resolution.ok = false;
    resolution.result = resolution.text;
    std::ostringstream what;
    what << error;
    resolution.failures.list.push_back({{}, "exception", what.str(), {}});
  }
  for (std::string& hint : HintsFrom(log_.Take())) resolution.hints.push_back(std::move(hint));
  const TQuiet quiet(names_);
  for (std::string& hint : HintsFor(names_, resolution.text)) resolution.hints.push_back(std::move(hint));
  if (!resolution.ok && resolution.failures.list.empty()) {
    const TCounters::TValues after = counters_.Save();
    counters_.Restore(before);
    resolution.failures = diagnosis_.Explain(resolution.text);
    counters_.Restore(after);
  }
  return resolution;
}
