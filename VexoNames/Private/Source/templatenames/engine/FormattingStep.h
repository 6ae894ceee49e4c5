#pragma once
#include "NQ_TDict.h"
#include "text/Finding.h"
namespace templatenames {
[[nodiscard]] bool ApplyFormattingOptions(const NQ_TDict& options, int debugLevel, std::int64_t mostCharacters, NQ_TString& value, TFindings* findings);
}
