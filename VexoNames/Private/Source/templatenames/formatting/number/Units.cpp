#include "formatting/number/Units.h"

#include <span>
#include <string_view>
#include <vector>

#include "NQ_EException.h"
#include "NQ_ENoSuchUnit.h"
#include "NQ_ENoSuchUnitCategory.h"
#include "text/Nearest.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

struct TUnit {
  std::u16string_view name;
  double size;                  // in base units, those of size 1
  std::u16string_view inWords;  // for people who write that
};

struct TCategory {
  std::u16string_view name;
  std::span<const TUnit> units;
};

constexpr TUnit kAngles[] = {
    {u"rad", 1.0, u"radian"}, {u"\u00B0", 0.017453292519943295, u"degree"},  // π/180
};

constexpr TUnit kFileSizes[] = {
    {u"B", 1.0, u"byte"},
    {u"KB", 1024.0, u"kilobyte"},
    {u"MB", 1024.0 * 1024, u"megabyte"},
    {u"GB", 1024.0 * 1024 * 1024, u"gigabyte"},
    {u"TB", 1024.0 * 1024 * 1024 * 1024, u"terabyte"},
};

constexpr TUnit kLengths[] = {
    {u"mm", 1.0, u"millimetre"}, {u"cm", 10.0, u"centimetre"}, {u"dm", 100.0, u"decimetre"},
    {u"m", 1000.0, u"metre"},    {u"in", 25.4, u"inch"},       {u"pt", 0.35277777777777775, u"point"},  // 25.4/72
    {u"mil", 0.0254, u"mil"},
};

// Pixels, dots and lines count alike.
constexpr TUnit kResolutions[] = {
    {u"ppi", 1.0, u"pixel per inch"},         {u"ppmm", 25.4, u"pixel per millimetre"},
    {u"ppcm", 2.54, u"pixel per centimetre"}, {u"dpi", 1.0, u"dot per inch"},
    {u"dpmm", 25.4, u"dot per millimetre"},   {u"dpcm", 2.54, u"dot per centimetre"},
    {u"lpi", 1.0, u"line per inch"},          {u"lpmm", 25.4, u"line per millimetre"},
    {u"lpcm", 2.54, u"line per centimetre"},
};

constexpr TUnit kTimes[] = {
    {u"ms", 0.001, u"millisecond"}, {u"s", 1.0, u"second"},  {u"min", 60.0, u"minute"},
    {u"h", 3600.0, u"hour"},        {u"d", 86400.0, u"day"}, {u"wk", 604800.0, u"week"},
};

constexpr TCategory kCategories[] = {
    {u"ANGLE", kAngles},           {u"FILESIZE", kFileSizes}, {u"LENGTH", kLengths},
    {u"RESOLUTION", kResolutions}, {u"TIME", kTimes},
};

/// The row of that name, or null.
template <class TRow>
const TRow* Find(std::span<const TRow> rows, std::u16string_view name) {
  for (const TRow& row : rows)
    if (name == row.name) return &row;
  return nullptr;
}

const TCategory* FindCategory(std::u16string_view name) { return Find<TCategory>(kCategories, name); }

template <class TRow>
std::vector<std::u16string_view> NamesOf(std::span<const TRow> rows) {
  std::vector<std::u16string_view> names;
  for (const TRow& row : rows) names.push_back(row.name);
  return names;
}

}  // namespace

double ConvertUnit(const NQ_TString& category, const NQ_TString& from, const NQ_TString& to, double number) {
  const TCategory* const row = FindCategory(category.StringView());
  if (row == nullptr) nq::Throw(NQ_ENoSuchUnitCategory(category));
  const TUnit* const first = Find(row->units, from.StringView());
  if (first == nullptr) nq::Throw(NQ_ENoSuchUnit(from));
  const TUnit* const second = Find(row->units, to.StringView());
  if (second == nullptr) nq::Throw(NQ_ENoSuchUnit(to));
  return first->size * number / second->size;
}

std::span<const std::u16string_view> UnitCategories() {
  static const auto* const names = new auto(NamesOf<TCategory>(kCategories));
  return *names;
}

bool IsUnitCategory(std::u16string_view category) { return FindCategory(category) != nullptr; }

bool IsUnit(std::u16string_view category, std::u16string_view unit) {
  const TCategory* const row = FindCategory(category);
  return row != nullptr && Find(row->units, unit) != nullptr;
}

NQ_TString NearestCategory(const NQ_TString& category) {
  return NQ_TString(NearestWord(category.StringView(), UnitCategories()));
}

// Of names so short, every other one is near another unit: only the case may differ. Words may be misspelt.
NQ_TString NearestUnit(const NQ_TString& category, const NQ_TString& unit) {
  const TCategory* const row = FindCategory(category.StringView());
  if (row == nullptr) return {};
  const NQ_TString lower = unit.Lowered();
  for (const TUnit& candidate : row->units)
    if (NQ_TString(candidate.name).Lowered() == lower) return NQ_TString(candidate.name);
  std::vector<std::u16string_view> words;
  for (const TUnit& candidate : row->units) words.push_back(candidate.inWords);
  const std::u16string_view word = NearestWord(unit.StringView(), words);
  for (const TUnit& candidate : row->units)
    if (!word.empty() && candidate.inWords == word) return NQ_TString(candidate.name);
  return {};
}

NQ_TString UnknownCategoryReason(const NQ_TString& category) {
  return Sentence(Quoted(category.StringView()), u" is no category of units: it can be ", Choices(UnitCategories()));
}

NQ_TString UnknownUnitReason(const NQ_TString& category, const NQ_TString& unit) {
  const TCategory* const row = FindCategory(category.StringView());
  if (row == nullptr) return UnknownCategoryReason(category);
  return Sentence(Quoted(unit.StringView()), u" is no unit of ", category, u": it can be ",
                  Choices(NamesOf(row->units)));
}

}  // namespace templatenames
