// Date patterns that probably mean something else than they say.
//
//   FindUnlikely(u"dd.mm.YYYY");            // meant dd.MM.yyyy
//   FindUnlikely(u"yyyy-MM-ddTHH:mm");      // meant yyyy-MM-dd'T'HH:mm
//   FindUnlikely(u"mm:ss").reason.Empty();  // nothing wrong with minutes beside seconds
//
// Letters of dates and of times differ in case only, so each is judged by the fields beside it. Nothing here fails; any
// thread may call.
#pragma once

#include "NQ_TString.h"

namespace templatenames {

struct TUnlikelyPattern {
  NQ_TString reason;  // what each such letter means, and what was probably wanted; empty when all is well
  NQ_TString meant;   // the pattern to put in its place
};

TUnlikelyPattern FindUnlikely(const NQ_TString& pattern);

}  // namespace templatenames
