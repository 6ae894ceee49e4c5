#include "text/Log.h"

#include <iostream>
#include <memory>
#include <mutex>
#include <utility>

namespace templatenames {
namespace {

using TPointer = std::shared_ptr<const TLogSink>;

struct TShared {
  std::mutex lock;
  TPointer sink;  // null: standard output
};

TShared& Shared() {
  static auto* const shared = new TShared;  // never destroyed: threads may log while the program ends
  return *shared;
}

// A share, so that a sink may be replaced while another thread runs it, and may set one itself.
TPointer Sink() {
  const std::lock_guard<std::mutex> guard(Shared().lock);
  return Shared().sink;
}

void Write(int level, const std::string& line, std::ostream& otherwise) {
  if (const TPointer sink = Sink(); sink != nullptr) {
    (*sink)(level, line);
  } else {
    otherwise << line + '\n' << std::flush;
  }
}

}  // namespace

void SetLogSink(TLogSink sink) {
  TPointer next = sink == nullptr ? nullptr : std::make_shared<const TLogSink>(std::move(sink));
  const std::lock_guard<std::mutex> guard(Shared().lock);
  std::swap(Shared().sink, next);  // the one before is destroyed after the lock
}

void WriteLine(int level, const std::string& line) { Write(level, line, std::cout); }

void WriteError(int level, const std::string& line) { Write(level, line, std::cerr); }

}  // namespace templatenames
