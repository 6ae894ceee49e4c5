#include "engine/DateLog.h"

#include <boost/lexical_cast.hpp>

#include "formatting/date/DateOptions.h"
#include "text/Log.h"

namespace templatenames {
namespace {

// With the 17 digits that tell any two times apart.
std::string TimeText(double time) { return boost::lexical_cast<std::string>(time); }

}  // namespace

void LogDate(int debugLevel, const NQ_TDict& options, const NQ_TString& before, const NQ_TString& after,
             const TDateOutcome& outcome) {
  const bool logsSteps = debugLevel >= kLevelOfDateSteps;
  if (logsSteps) {
    for (std::size_t i = 0; i < outcome.formsFailed; ++i)
      Log(kLevelOfDateSteps, "Parsing ", before, " using ", IsoPatterns()[i], " failed.  Trying less complete format");
  }
  if (!outcome.read) {
    Log(0, "Parsing date '", after, "' into UTC time failed.  Caused by:\n", outcome.error, '\n', options);
    return;
  }
  if (logsSteps)
    Log(kLevelOfDateSteps, "Parsed date '", before, "' into UTC time '", TimeText(outcome.time), "'\n", options);
  if (!outcome.written) {
    Log(0, "Formatting wall time '", TimeText(outcome.time), "' failed.  Caused by:\n", outcome.error, '\n', options);
  } else if (logsSteps) {
    Log(kLevelOfDateSteps, "Formatted wall time '", TimeText(outcome.time), "' into '", after, "'\n", options);
  }
}

}  // namespace templatenames
