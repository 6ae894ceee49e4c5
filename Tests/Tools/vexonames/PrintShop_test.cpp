// The print shop that ./dev demo shows.
#include <gtest/gtest.h>

#include "vexonames/RunTool.h"

namespace {

const std::string kShop = VEXONAMES_SOURCE_DIR "/Examples/print-shop/";

TEST(PrintShop, DemoPrintsWhatIsExpected) {
  const TRunResult run = RunTool({"resolve", "--table", "--context", kShop + "context.json", "--now",
                                  "2026-05-17T13:05:00+02:00", "--zone", "Europe/Paris"},
                                 ReadAll(kShop + "templates.txt"));
  EXPECT_EQ(run.out, ReadAll(VEXONAMES_SOURCE_DIR "/Tests/Examples/print-shop.expected"));
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.code, 1);  // some templates fail, to show how that looks
}

}  // namespace
