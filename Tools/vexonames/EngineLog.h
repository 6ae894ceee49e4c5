// What the engine says while it works.
//
// The engine writes its log to std::cout, which is the tool's data stream. An object of this class takes it over for as
// long as it lives: the data stays clean, and what was said can be read.
#pragma once

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

class TEngineLog final : private std::streambuf {
 public:
  /// Whether what is said goes to standard error too.
  explicit TEngineLog(bool forward);
  TEngineLog(const TEngineLog&) = delete;
  TEngineLog& operator=(const TEngineLog&) = delete;
  ~TEngineLog() override;

  /// What was said since the last call; of very much only the end.
  std::string Take();
  /// Returns the setting before.
  bool SetForwarding(bool forward);

 private:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;

  std::streambuf* before_;
  bool forward_;
  std::string said_;
};

/// The last message of a log: messages begin at the beginning of a line with "TName:", and may have several lines.
std::string_view LastMessage(std::string_view log);
