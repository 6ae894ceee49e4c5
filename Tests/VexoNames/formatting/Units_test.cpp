#include "formatting/Units.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>
#include <string>

#include "Support.h"

namespace templatenames {
namespace {

using names_test::S;
using names_test::Thrown;

// Each unit once, against another.
TEST(Units, Convert) {
  struct {
    const char* category;
    double number;
    const char* from;
    const char* to;
    double converted;
  } const cases[] = {
      {"ANGLE", 180, "\u00B0", "rad", std::numbers::pi},
      {"FILESIZE", 3, "KB", "B", 3072},
      {"FILESIZE", 1048576, "B", "MB", 1},
      {"FILESIZE", 2, "GB", "MB", 2048},
      {"FILESIZE", 1, "TB", "GB", 1024},
      {"LENGTH", 2, "in", "mm", 50.8},
      {"LENGTH", 72, "pt", "in", 1},
      {"LENGTH", 1000, "mil", "in", 1},
      {"LENGTH", 1, "dm", "cm", 10},
      {"LENGTH", 2.5, "m", "mm", 2500},
      {"RESOLUTION", 1, "ppmm", "ppi", 25.4},
      {"RESOLUTION", 10, "ppcm", "ppmm", 1},
      {"RESOLUTION", 300, "dpi", "lpi", 300},
      {"RESOLUTION", 1, "dpmm", "dpcm", 10},
      {"RESOLUTION", 1, "lpmm", "lpcm", 10},
      {"TIME", 1, "wk", "d", 7},
      {"TIME", 2, "h", "min", 120},
      {"TIME", 90, "s", "min", 1.5},
      {"TIME", 250, "ms", "s", 0.25},
      {"TIME", 1e-300, "ms", "ms", 1e-300},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(row.category) + ' ' + row.from + " to " + row.to);
    EXPECT_DOUBLE_EQ(ConvertUnit(S(row.category), S(row.from), S(row.to), row.number), row.converted);
  }
}

TEST(Units, MultiplyBeforeDividing) {
  EXPECT_EQ(ConvertUnit("FILESIZE", "TB", "TB", 1e300), std::numeric_limits<double>::infinity());
}

TEST(Units, UnknownNames) {
  struct {
    const char *category, *from, *to, *error;
  } const cases[] = {
      {"length", "?", "?", "NQ_ENoSuchUnitCategory: length"},
      {"", "", "", "NQ_ENoSuchUnitCategory: "},
      {"LENGTHS", "mm", "mm", "NQ_ENoSuchUnitCategory: LENGTHS"},
      {"LENGTH", "s", "?", "NQ_ENoSuchUnit: s"},
      {"LENGTH", "MM", "mm", "NQ_ENoSuchUnit: MM"},
      {"LENGTH", "mm", "", "NQ_ENoSuchUnit: "},
      {"ANGLE", "rad", "\u00BA", "NQ_ENoSuchUnit: \u00BA"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Thrown([&] { ConvertUnit(S(row.category), S(row.from), S(row.to), 1); }), row.error);
  }
}

}  // namespace
}  // namespace templatenames
