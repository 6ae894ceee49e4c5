// vexonames_bench: how fast names are put into templates, as ratios to references measured in the same run.
//
//   vexonames_bench [--rounds N] [--only GROUP] [--gate] [--json FILE]
//
//   --rounds N    rounds to measure (101; large texts take a fraction of them)
//   --only GROUP  only that group (W1); may be given several times
//   --gate        exit 1 when a target's line is not kept
//   --json FILE   the figures once more, as JSON
//
// How to read it. The first tables show, for each workload, what every engine takes for a token. The
// nanoseconds hold for this machine at this minute and are there to inform; what counts is the ratios, taken
// between slices of a millisecond that followed each other, the median of all rounds. "/ctemplate 0.80" says:
// 0.80 times the time of ctemplate, whose template was parsed beforehand while ours is handed over as text
// each time. "/hand8" compares with what a program written by hand for exactly this template language needs,
// "/memcpy" with copying the result.
//
// The last table holds the ratios against their targets: the line must be kept, the aim is what we want.
// The headline is "vexo": the caller holds its template as the workflow system's own text, NQ_TString, and takes
// the result as one. "vexo_utf8" hands over UTF-8 and reads UTF-8 back, so that converting both ways is timed
// too; its rows inform.
//
// "Times faster" rows turn the ratio round, and more is better. The quartiles say how much single rounds
// scattered; when they lie far apart the machine was too busy for a verdict. Rows without a line inform.
//
// Before anything is timed, and after it, every engine must make the expected text; one that does not ends
// the program with exit 1. Bad usage exits 2.
//
// To add a row: an engine (like those in RegexTokens.h), a group in Groups.cpp, a target in Targets.cpp.
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "Groups.h"
#include "Paired.h"
#include "Report.h"
#include "Targets.h"

namespace {

struct Options {
  int rounds = 101;
  std::vector<std::string> only;
  bool gate = false;
  std::string json;
};

bool IsGroup(std::string_view id) {
  const auto groups = bench::AllGroups();
  return std::any_of(groups.begin(), groups.end(), [&](const bench::Group& group) { return id == group.id; });
}

bool ReadCount(std::string_view text, int& count) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  return error == std::errc() && end == text.data() + text.size() && count > 0;
}

bool ReadOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view option = argv[i];
    const bool last = i + 1 == argc;
    if (option == "--gate")
      options.gate = true;
    else if (last)
      return false;
    else if (option == "--rounds") {
      if (!ReadCount(argv[++i], options.rounds)) return false;
    } else if (option == "--only" && IsGroup(argv[i + 1]))
      options.only.emplace_back(argv[++i]);
    else if (option == "--json")
      options.json = argv[++i];
    else
      return false;
  }
  return true;
}

int Usage() {
  std::fprintf(stderr, "usage: vexonames_bench [--rounds N] [--only GROUP] [--gate] [--json FILE]\ngroups:\n");
  for (const bench::Group& group : bench::AllGroups()) std::fprintf(stderr, "  %-10s %s\n", group.id, group.about);
  return 2;
}

bool Wanted(const Options& options, const bench::Group& group) {
  return options.only.empty() || std::count(options.only.begin(), options.only.end(), group.id) > 0;
}

int Run(const Options& options) {
  std::vector<bench::Measurement> all;
  for (const bench::Group& group : bench::AllGroups()) {
    if (!Wanted(options, group)) continue;
    const int rounds = std::max(1, options.rounds / group.roundsDivisor);
    const auto measured = bench::MeasurePaired(group.id, group.make(), rounds, group.sliceNanoseconds);
    bench::PrintMeasurements(group, measured);
    all.insert(all.end(), measured.begin(), measured.end());
  }
  const auto rows = bench::Judge(all);
  bench::PrintTargets(rows);
  if (!options.json.empty() && !bench::WriteJson(options.json, all, rows)) {
    std::fprintf(stderr, "cannot write %s: %s\n", options.json.c_str(), std::strerror(errno));
    return 2;
  }
  const auto missed = std::count_if(rows.begin(), rows.end(),
                                    [](const bench::Judged& row) { return row.verdict == bench::Verdict::Missed; });
  return options.gate && missed > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ReadOptions(argc, argv, options)) return Usage();
#ifndef __OPTIMIZE__
  std::printf("This build is not optimised: its figures say nothing about the library.\n\n");
#endif
  try {
    return Run(options);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "vexonames_bench: %s\n", e.what());
    return 1;
  }
}
