// Templates to text, with everything there is to say about each.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "EngineLog.h"
#include "TName.h"

/// What is to be said beside the report: of the template's bytes, and of files behind its names.
struct TRemark {
  const char* kind;  // a word for programs
  std::string text;
};

struct TResolution {
  NQ_TString text;    // the template, as it was understood
  NQ_TString result;  // failed tokens stand in it as written
  bool ok = true;
  TNameReport report;
  std::vector<TRemark> remarks;
};

/// Resolves the template once. A handler that throws leaves the template as it was, with its report.
TResolution ResolveTemplate(TName& names, TEngineLog& log, std::string_view utf8);
