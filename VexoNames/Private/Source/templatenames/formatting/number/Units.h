// Conversion between units of measurement.
//
// Units belong to categories, "LENGTH" or "FILESIZE"; within one, every unit is a multiple of the category's base unit.
// Names are matched exactly: "mm" is a unit and "MM" is none.
//
//   ConvertUnit(u"LENGTH", u"in", u"mm", 2);   // 50.8
//
// Any thread may call.
#pragma once

#include "NQ_TString.h"

namespace templatenames {

/// The number of the first unit, in the second one. Throws NQ_ENoSuchUnitCategory with the category, or NQ_ENoSuchUnit
/// with the unit, whichever of category, first and second unit is the first that is unknown.
double ConvertUnit(const NQ_TString& category, const NQ_TString& from, const NQ_TString& to, double number);

}  // namespace templatenames
