#include "Resolution.h"

#include <algorithm>

#include "NQ_EException.h"
#include "Text.h"

namespace {

// No token fails when the parameters of a workflow cannot be read from its XML files: only the log tells.
constexpr std::string_view kUnreadParameters[] = {
    "Failed to update Workflow Parameter values from ",
    "Looking up XML Workflow Parameters failed.",
};

void AddRemarks(const std::vector<std::string>& lines, std::vector<TRemark>& remarks) {
  constexpr std::size_t kMostRemarks = 20;
  for (std::string line : lines) {
    const bool tells =
        std::ranges::any_of(kUnreadParameters, [&](std::string_view begin) { return line.starts_with(begin); });
    if (!tells || remarks.size() == kMostRemarks) continue;
    std::ranges::replace(line, '\n', ' ');  // before the cause
    remarks.push_back({"workflow-parameters", Printable(Shortened(line))});
  }
}

}  // namespace

TResolution ResolveTemplate(TName& names, TEngineLog& log, std::string_view utf8) {
  TResolution resolution;
  resolution.text = NQ_TString(utf8);
  if (resolution.text.Narrow() != utf8)
    resolution.remarks.push_back({"invalid-utf8", "invalid UTF-8 was replaced by U+FFFD"});
  log.Take();
  try {
    resolution.ok = names.Resolve(resolution.text, resolution.result, resolution.report);
  } catch (const NQ_EException&) {
    resolution.ok = false;
    resolution.result = resolution.text;
  }
  AddRemarks(log.Take(), resolution.remarks);
  return resolution;
}
