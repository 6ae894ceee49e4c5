// The time zones and languages that ICU knows.
//
//   IsKnownZone("Europe/Berln");       // false: ICU takes UTC
//   NearestZone("Europe/Berln");       // Europe/Berlin
//   NearestZone("UTC+2");              // GMT+2
//   NearestLanguage("dee_DE");         // de_DE
//
// The lists are made when first asked for. Any thread.
#pragma once

#include "NQ_TString.h"

namespace templatenames {

/// Whether it is one of ICU's identifiers, as "Europe/Berlin"; a fixed offset, as "GMT+02:00", is not.
bool IsListedZone(const NQ_TString& id);
bool IsKnownZone(const NQ_TString& id);
/// What was probably meant by an identifier that is not known: in other case, a city, an offset, an error of writing.
/// Empty when nothing is near.
NQ_TString NearestZone(const NQ_TString& id);

/// Whether ICU has the names of months and days for the identifier's language; the empty one is the root locale.
bool IsKnownLanguage(const NQ_TString& id);
NQ_TString NearestLanguage(const NQ_TString& id);

}  // namespace templatenames
