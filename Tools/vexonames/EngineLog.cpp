#include "EngineLog.h"

#include <iostream>
#include <utility>

#include "TName.h"
#include "Text.h"

namespace {

// A line can hold a whole value, and there can be one for each token.
constexpr std::size_t kMostLines = 1'000;
constexpr std::size_t kMostOfLine = 4'096;

}  // namespace

TEngineLog::TEngineLog(bool shows) : shows_(shows) {
  TName::SetLogSink([this](int level, const std::string& line) { Add(level, line); });
}

TEngineLog::~TEngineLog() { TName::SetLogSink({}); }

std::vector<std::string> TEngineLog::Take() {
  const std::lock_guard guard(lock_);
  return std::exchange(kept_, {});
}

void TEngineLog::Add(int level, const std::string& line) {
  const std::lock_guard guard(lock_);
  if (shows_) std::cerr << Printable(line) + '\n';
  if (level == 0 && kept_.size() < kMostLines) kept_.push_back(line.substr(0, kMostOfLine));
}
