#include "EngineLog.h"

#include <cstdio>
#include <iostream>
#include <utility>

namespace {

// A log line holds whole values and templates.
constexpr std::size_t kMostKept = std::size_t{4} * 1024 * 1024;

}  // namespace

TEngineLog::TEngineLog(bool forward) : before_(std::cout.rdbuf(this)), forward_(forward) {}

TEngineLog::~TEngineLog() { std::cout.rdbuf(before_); }

std::string TEngineLog::Take() { return std::exchange(said_, {}); }

bool TEngineLog::SetForwarding(bool forward) { return std::exchange(forward_, forward); }

TEngineLog::int_type TEngineLog::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const char one = traits_type::to_char_type(character);
  return xsputn(&one, 1) == 1 ? character : traits_type::eof();
}

std::streamsize TEngineLog::xsputn(const char* text, std::streamsize length) {
  const auto size = static_cast<std::size_t>(length);
  if (forward_) std::fwrite(text, 1, size, stderr);
  said_.append(text, size);
  if (said_.size() > 2 * kMostKept) said_.erase(0, said_.size() - kMostKept);
  return length;
}

std::string_view LastMessage(std::string_view log) {
  while (!log.empty() && log.back() == '\n') log.remove_suffix(1);
  const std::size_t lineEnd = log.rfind("\nTName:");
  return lineEnd == std::string_view::npos ? log : log.substr(lineEnd + 1);
}
