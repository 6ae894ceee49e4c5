#include "formatting/number/Units.h"

#include <span>
#include <string_view>

#include "NQ_EException.h"
#include "NQ_ENoSuchUnit.h"
#include "NQ_ENoSuchUnitCategory.h"

namespace templatenames {
namespace {

struct TUnit {
  std::u16string_view name;
  double size;  // in base units, those of size 1
};

struct TCategory {
  std::u16string_view name;
  std::span<const TUnit> units;
};

constexpr TUnit kAngles[] = {
    {u"rad", 1.0}, {u"\u00B0", 0.017453292519943295},  // π/180
};

constexpr TUnit kFileSizes[] = {
    {u"B", 1.0},
    {u"KB", 1024.0},
    {u"MB", 1024.0 * 1024},
    {u"GB", 1024.0 * 1024 * 1024},
    {u"TB", 1024.0 * 1024 * 1024 * 1024},
};

constexpr TUnit kLengths[] = {
    {u"mm", 1.0},     {u"cm", 10.0}, {u"dm", 100.0},
    {u"m", 1000.0},   {u"in", 25.4}, {u"pt", 0.35277777777777775},  // 25.4/72
    {u"mil", 0.0254},
};

// Pixels, dots and lines count alike.
constexpr TUnit kResolutions[] = {
    {u"ppi", 1.0}, {u"ppmm", 25.4}, {u"ppcm", 2.54},  //
    {u"dpi", 1.0}, {u"dpmm", 25.4}, {u"dpcm", 2.54},  //
    {u"lpi", 1.0}, {u"lpmm", 25.4}, {u"lpcm", 2.54},
};

constexpr TUnit kTimes[] = {
    {u"ms", 0.001},   //
    {u"s", 1.0},      //
    {u"min", 60.0},   //
    {u"h", 3600.0},   //
    {u"d", 86400.0},  //
    {u"wk", 604800.0},
};

constexpr TCategory kCategories[] = {
    {u"ANGLE", kAngles},           {u"FILESIZE", kFileSizes}, {u"LENGTH", kLengths},
    {u"RESOLUTION", kResolutions}, {u"TIME", kTimes},
};

/// The row of that name, or null.
template <class TRow>
const TRow* Find(std::span<const TRow> rows, const NQ_TString& name) {
  for (const TRow& row : rows)
    if (name.StringView() == row.name) return &row;
  return nullptr;
}

}  // namespace

double ConvertUnit(const NQ_TString& category, const NQ_TString& from, const NQ_TString& to, double number) {
  const TCategory* const row = Find<TCategory>(kCategories, category);
  if (row == nullptr) nq::Throw(NQ_ENoSuchUnitCategory(category));
  const TUnit* const first = Find(row->units, from);
  if (first == nullptr) nq::Throw(NQ_ENoSuchUnit(from));
  const TUnit* const second = Find(row->units, to);
  if (second == nullptr) nq::Throw(NQ_ENoSuchUnit(to));
  return first->size * number / second->size;
}

}  // namespace templatenames
