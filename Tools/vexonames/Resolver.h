// Templates to text, with everything there is to say about each.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Diagnosis.h"
#include "EngineLog.h"
#include "TName.h"

struct TResolution {
  NQ_TString text;    // the template, as it was understood
  NQ_TString result;  // failed tokens stand in it as written
  bool ok = true;
  TFailures failures;              // of a template that is not ok
  std::vector<std::string> hints;  // what may be a mistake although nothing failed
};

/// Resolves templates with a registry that is complete: names defined later are resolved, but never suggested.
class TResolver {
 public:
  TResolver(TName& names, TEngineLog& log, TServiceCalls& calls)
      : names_(names), log_(log), counters_(names), diagnosis_(names, log, calls) {}

  TResolution Resolve(std::string_view utf8);

 private:
  TName& names_;
  TEngineLog& log_;
  TCounters counters_;
  TDiagnosis diagnosis_;
};
