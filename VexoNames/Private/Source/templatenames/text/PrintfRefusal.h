// Sentences about formats that TPrintfFormat refuses.
//
//   TPrintfFormat::TRefusal refusal;
//   if (!TPrintfFormat::Parse(u"v%s", kind, &refusal)) {
//     RefusalReason(u"v%s", kind, refusal);           // "%s" does not write a whole number; "%d" does
//     RefusalSuggestion(u"v%s", kind, refusal);       // v%d
//   }
//
// Any thread may call.
#pragma once

#include <string_view>

#include "NQ_TString.h"
#include "text/PrintfFormat.h"

namespace templatenames {

/// What is wrong with the format, and what would do.
NQ_TString RefusalReason(std::u16string_view format, TPrintfFormat::TKind kind, const TPrintfFormat::TRefusal& refusal);

/// The format that was probably meant, which Parse accepts; empty where that is not obvious.
NQ_TString RefusalSuggestion(std::u16string_view format, TPrintfFormat::TKind kind,
                             const TPrintfFormat::TRefusal& refusal);

}  // namespace templatenames
