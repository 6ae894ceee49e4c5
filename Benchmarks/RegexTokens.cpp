#include "RegexTokens.h"

#include <pcre.h>

namespace bench {
namespace {

const std::string kFileName = "Brochure-20240517_front_v007.pdf";
constexpr std::array<const char*, 4> kLiterals = {"jobs/", "/", "/", "_"};  // before each part
constexpr const char* kEnding = ".tif";

// Appends group 1 of the pattern; false when there is none.
bool AppendGroup(const char* pattern, const std::string& subject, std::string& out) {
  const char* error = nullptr;
  int offset = 0;
  pcre* const compiled = pcre_compile(pattern, PCRE_UTF8, &error, &offset, nullptr);
  if (!compiled) return false;
  int groups[6];
  const int found = pcre_exec(compiled, nullptr, subject.data(), int(subject.size()), 0, 0, groups, 6);
  pcre_free(compiled);
  if (found < 2) return false;
  out.append(subject, std::size_t(groups[2]), std::size_t(groups[3] - groups[2]));
  return true;
}

}  // namespace

const Patterns kShortPatterns = {
    "^([A-Za-z]+)-",
    "-([0-9]{8})_",
    "_([a-z]+)_v[0-9]",
    "_v([0-9]+)\\.pdf$",
};
const Patterns kWholeNamePatterns = {
    "^([A-Za-z]+)-[0-9]{8}_[a-z]+_v[0-9]+\\.pdf$",
    "^[A-Za-z]+-([0-9]{8})_[a-z]+_v[0-9]+\\.pdf$",
    "^[A-Za-z]+-[0-9]{8}_([a-z]+)_v[0-9]+\\.pdf$",
    "^[A-Za-z]+-[0-9]{8}_[a-z]+_v([0-9]+)\\.pdf$",
};

Workload FileNameRegistry() {
  Workload w;
  w.names = {{"file", kFileName}};
  w.tokens = kLiterals.size();
  return w;
}

std::string RegexTemplate(const Patterns& patterns) {
  std::string text;
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    text += kLiterals[i] + ("<<file regex=\"" + std::string(patterns[i])) + "\"/>>";
  }
  return text + kEnding;
}

std::string RegexExpected() { return "jobs/Brochure/20240517/front_007.tif"; }

void PcreEachTime::Run() {
  out_.clear();
  for (std::size_t i = 0; i < patterns_.size(); ++i) {
    out_ += kLiterals[i];
    if (!AppendGroup(patterns_[i], kFileName, out_)) out_ += "(no group)";
  }
  out_ += kEnding;
}

}  // namespace bench
