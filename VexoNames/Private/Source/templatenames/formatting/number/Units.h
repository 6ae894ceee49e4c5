// Conversion between units of measurement.
//
// Units belong to categories, "LENGTH" or "FILESIZE"; within one, every unit is a multiple of the category's base unit.
// Names are matched exactly: "mm" is a unit and "MM" is none.
//
//   ConvertUnit(u"LENGTH", u"in", u"mm", 2);   // 50.8
//   NearestUnit(u"LENGTH", u"inches");         // in
//
// Any thread may call.
#pragma once

#include <span>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

/// The number of the first unit, in the second one. Throws NQ_ENoSuchUnitCategory with the category, or NQ_ENoSuchUnit
/// with the unit, whichever of category, first and second unit is the first that is unknown.
double ConvertUnit(const NQ_TString& category, const NQ_TString& from, const NQ_TString& to, double number);

/// The names of all categories.
std::span<const std::u16string_view> UnitCategories();
bool IsUnitCategory(std::u16string_view category);
/// Whether the unit belongs to the category.
bool IsUnit(std::u16string_view category, std::u16string_view unit);

/// The category that was probably meant; empty when none is near.
NQ_TString NearestCategory(const NQ_TString& category);
/// The unit of that category that was probably meant by a misspelt name or by an English word: "MM", "inch"; empty when
/// none is near, or the category is unknown.
NQ_TString NearestUnit(const NQ_TString& category, const NQ_TString& unit);

/// Sentences about what ConvertUnit throws for.
NQ_TString UnknownCategoryReason(const NQ_TString& category);
NQ_TString UnknownUnitReason(const NQ_TString& category, const NQ_TString& unit);

}  // namespace templatenames
