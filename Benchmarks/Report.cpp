#include "Report.h"

#include <optional>

namespace bench {
namespace {

// A number right-aligned in `width` columns, a dash when there is none.
std::string Column(std::optional<double> number, int width, int decimals) {
  char text[64];
  if (number)
    std::snprintf(text, sizeof text, "%*.*f", width, decimals, *number);
  else
    std::snprintf(text, sizeof text, "%*s", width, "-");
  return text;
}

std::optional<double> Against(const Measurement& m, const char* reference) {
  const auto found = m.against.find(reference);
  if (found == m.against.end()) return {};
  return found->second.median;
}

std::string JsonNumber(std::optional<double> number) {
  if (!number) return "null";
  char text[64];
  std::snprintf(text, sizeof text, "%.6g", *number);
  return text;
}

std::string JsonRatio(const Ratio& ratio) {
  return "{\"median\": " + JsonNumber(ratio.median) + ", \"low\": " + JsonNumber(ratio.low) +
         ", \"high\": " + JsonNumber(ratio.high) + "}";
}

// All texts here are names from our own tables, with nothing to escape.
std::string Json(const Measurement& m) {
  std::string text = "{\"group\": \"" + m.group + "\", \"subject\": \"" + m.subject +
                     "\", \"ns_per_token\": " + JsonNumber(m.nanosecondsPerToken) + ", \"against\": {";
  const char* separator = "";
  for (const auto& [reference, ratio] : m.against) {
    text += separator + ("\"" + reference) + "\": " + JsonRatio(ratio);
    separator = ", ";
  }
  return text + "}}";
}

std::string Json(const Judged& row) {
  const Target& t = row.target;
  return std::string("{\"what\": \"") + t.what + "\", \"group\": \"" + t.group + "\", \"subject\": \"" + t.subject +
         "\", \"reference\": \"" + t.reference + "\", \"measured\": " + JsonRatio(row.measured) +
         ", \"line\": " + JsonNumber(t.line) + ", \"aim\": " + JsonNumber(t.aim) + ", \"verdict\": \"" +
         VerdictText(row.verdict) + "\"}";
}

template <class Rows>
std::string JsonArray(const Rows& rows) {
  std::string text = "[";
  const char* separator = "\n  ";
  for (const auto& row : rows) {
    text += separator + Json(row);
    separator = ",\n  ";
  }
  return text + "\n]";
}

}  // namespace

void PrintMeasurements(const Group& group, const std::vector<Measurement>& measurements) {
  std::printf("%s: %s\n", group.id, group.about);
  std::printf("  %-22s %9s %9s %9s %11s\n", "engine", "ns/token", "/hand8", "/memcpy", "/ctemplate");
  for (const Measurement& m : measurements) {
    std::printf("  %-22s %9.1f %s %s %s\n", m.subject.c_str(), m.nanosecondsPerToken,
                Column(Against(m, "hand8"), 9, 2).c_str(), Column(Against(m, "memcpy"), 9, 1).c_str(),
                Column(Against(m, "ctemplate"), 11, 2).c_str());
  }
  constexpr double kSecond = 1e9;
  if (group.unit != nullptr)
    std::printf("  %.0f %s per second\n", kSecond / measurements.front().nanosecondsPerToken, group.unit);
  std::printf("\n");
  std::fflush(stdout);
}

void PrintTargets(const std::vector<Judged>& rows) {
  std::printf("%-34s %-19s %9s %15s %6s %6s\n", "targets", "against", "measured", "(quartiles)", "line", "aim");
  for (const Judged& row : rows) {
    char quartiles[32];
    std::snprintf(quartiles, sizeof quartiles, "(%.2f-%.2f)", row.measured.low, row.measured.high);
    std::printf("%-34s %-19s %9.2f %15s %s %s  %s\n", row.target.what, row.target.reference, row.measured.median,
                quartiles, Column(row.target.line, 6, 2).c_str(), Column(row.target.aim, 6, 2).c_str(),
                VerdictText(row.verdict));
  }
}

bool WriteJson(const std::string& file, const std::vector<Measurement>& measurements, const std::vector<Judged>& rows) {
  const std::string text =
      "{\"measurements\": " + JsonArray(measurements) + ",\n\"targets\": " + JsonArray(rows) + "}\n";
  std::FILE* const out = std::fopen(file.c_str(), "w");
  if (!out) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), out) == text.size();
  return std::fclose(out) == 0 && written;
}

}  // namespace bench
