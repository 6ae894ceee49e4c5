// What the fuzz targets share.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "NQ_TString.h"

namespace fuzz {

/// Ends the program, as a crash does, when what must hold does not.
inline void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// The input as a byte that chooses, lines, and the rest.
class TInput {
 public:
  TInput(const unsigned char* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  unsigned Byte() {
    const unsigned byte = rest_.empty() ? 0 : static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(rest_.empty() ? 0 : 1);
    return byte;
  }
  std::string_view Line() {
    const std::string_view line = rest_.substr(0, rest_.find('\n'));
    rest_.remove_prefix(line.size() + (line.size() < rest_.size() ? 1 : 0));
    return line;
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

/// Silences standard output: the log would be most of the work.
inline void Quiet() { std::cout.rdbuf(nullptr); }

}  // namespace fuzz
