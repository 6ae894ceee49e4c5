#include "Targets.h"

#include <stdexcept>

namespace bench {
namespace {

constexpr auto Cost = Direction::CostAtMost;
constexpr auto Faster = Direction::FasterAtLeast;

constexpr Target kTargets[] = {
    {"W1 file path", "W1", "vexo", "ctemplate", Cost, 1.5, 0.75},
    {"W2 1,000 tokens", "W2", "vexo", "ctemplate", Cost, 1.8, 0.9},
    {"W3 10 MB", "W3", "vexo", "ctemplate", Cost, 1.5, 0.75},
    {"W4 nested values", "W4", "vexo", "ctemplate", Cost, 1.2, 0.5},
    {"W5 two threads", "W5", "vexo", "ctemplate", Cost, 1.5, 0.75},
    {"W5 two threads, one registry", "W5", "vexo_shared", "ctemplate"},
    {"W1 at first sight", "first-W1", "vexo", "hand8", Cost, 4.0, 1.6},
    {"W2 at first sight", "first-W2", "vexo", "hand8", Cost, 4.0, 1.6},
    {"regex token, times faster", "regex", "vexo", "pcre_each_time", Faster, 10.0, 18.0},
    {"whole-value regex, times faster", "regex-whole", "vexo", "pcre_each_time", Faster, 10.0, 18.0},
    {"ISO date token, times faster", "date", "vexo", "icu_each_time", Faster, 30.0, 300.0},
    {"ISO date formatter, times faster", "date", "formatter", "icu_each_time", Faster, 30.0, 300.0},
    {"date with month name, times faster", "date-months", "vexo", "icu_each_time", Faster, 30.0, 300.0},
    {"month name formatter, times faster", "date-months", "formatter", "icu_each_time", Faster, 30.0, 300.0},
    {"date with zone name, times faster", "date-zones", "vexo", "icu_each_time", Faster},
    // The gate is what the reference does too, reading, converting and writing; the road to it stands beside it.
    {"number token, formatter alone", "number", "formatter", "streams_each_time", Faster, 25.0, 80.0},
    {"number token as a whole, informs", "number", "vexo", "streams_each_time", Faster},
    {"XML formatter", "xml", "formatter", "by_hand", Cost, 1.5, 1.0},
    {"XML token", "xml", "vexo", "by_hand"},
    {"URL formatter", "url", "formatter", "by_hand", Cost, 1.5, 1.0},
    {"URL token", "url", "vexo", "by_hand"},
    {"custom formatter", "custom", "formatter", "by_hand", Cost, 1.5, 1.0},
    {"custom token", "custom", "vexo", "by_hand"},
    {"kept reply of a service", "queries", "cached_query", "plain", Cost, 1.3, 1.05},
    {"loading records", "records", "records", "dictionaries", Cost, 4.0, 2.0},
    // What is not the services' own code is the rest: 1 - 1 / measured.
    {"a task, against its services alone", "task", "task", "services_alone"},
    {"the reset's share of a task", "task", "reset", "task"},
    {"1M names against 100", "names", "vexo 1M", "vexo 100"},
    {"1M names against 100, first sight", "names", "vexo first 1M", "vexo first 100"},
    {"1M names against 100, hand8", "names", "hand8 1M", "hand8 100"},
    {"1M tokens against 1,000", "tokens", "vexo 1M", "vexo 1k"},
    {"1M tokens against 1,000, hand8", "tokens", "hand8 1M", "hand8 1k"},
    {"W1, UTF-8 in and out", "W1", "vexo_utf8", "ctemplate"},
    {"W2, UTF-8 in and out", "W2", "vexo_utf8", "ctemplate"},
    {"W3, UTF-8 in and out", "W3", "vexo_utf8", "ctemplate"},
    {"W4, UTF-8 in and out", "W4", "vexo_utf8", "ctemplate"},
    {"W5, UTF-8 in and out", "W5", "vexo_utf8", "ctemplate"},
    {"W1 at first sight, UTF-8", "first-W1", "vexo_utf8", "hand8"},
    {"W2 at first sight, UTF-8", "first-W2", "vexo_utf8", "hand8"},
    {"regex, UTF-8, times faster", "regex", "vexo_utf8", "pcre_each_time", Faster},
    {"whole-value regex, UTF-8", "regex-whole", "vexo_utf8", "pcre_each_time", Faster},
};

Ratio InDirection(const Ratio& cost, Direction direction) {
  if (direction == Direction::CostAtMost) return cost;
  return {1 / cost.median, 1 / cost.high, 1 / cost.low};
}

Verdict VerdictOf(const Target& target, double measured) {
  const auto keeps = [&](double bound) {
    return target.direction == Direction::CostAtMost ? measured <= bound : measured >= bound;
  };
  if (!target.line) return Verdict::Informs;
  if (!keeps(*target.line)) return Verdict::Missed;
  return target.aim && keeps(*target.aim) ? Verdict::AimMet : Verdict::Met;
}

}  // namespace

std::vector<Judged> Judge(const std::vector<Measurement>& measurements) {
  std::vector<Judged> rows;
  for (const Target& target : kTargets) {
    bool measured = false, found = false;
    for (const Measurement& m : measurements) {
      if (m.group != target.group) continue;
      measured = true;
      if (m.subject != target.subject) continue;
      found = true;
      const Ratio ratio = InDirection(m.against.at(target.reference), target.direction);
      rows.push_back({target, ratio, VerdictOf(target, ratio.median)});
    }
    // A row that finds nothing would be a gate that always stands open.
    if (measured && !found) throw std::logic_error(std::string(target.what) + ": no subject " + target.subject);
  }
  return rows;
}

const char* VerdictText(Verdict verdict) {
  switch (verdict) {
    case Verdict::Informs:
      return "";
    case Verdict::AimMet:
      return "aim met";
    case Verdict::Met:
      return "met";
    case Verdict::Missed:
      return "MISSED";
  }
  return "";
}

}  // namespace bench
