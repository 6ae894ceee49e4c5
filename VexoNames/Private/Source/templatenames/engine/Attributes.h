// What attributes of an entry say.
#pragma once

#include "NQ_TAny.h"
#include "NQ_TString.h"
#include "NQ_TURL.h"

namespace templatenames {

/// The text in an attribute; null when the attribute is absent or holds something else.
inline const NQ_TString* TextIn(const NQ_TAny* attribute) {
  return attribute == nullptr ? nullptr : attribute->As<NQ_TString>();
}

/// How a URL is shown.
inline NQ_TString FileText(const NQ_TURL& url) { return NQ_TString("file://") + url.Host() + "/" + url.Path(); }

}  // namespace templatenames
