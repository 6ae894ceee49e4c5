// The standard streams: lines in, data out, diagnostics beside them.
#pragma once

#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The texts to work on: the arguments, or, when there are none, the lines of standard input. A carriage return before
/// the line end and a byte order mark before the first line belong to the file, not to the text. Throws TInputError
/// when reading fails or a line is longer than 64 MiB.
class TTexts {
 public:
  explicit TTexts(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  std::optional<std::string> Next();
  bool FromInput() const { return arguments_.empty(); }
  /// How many were given out so far.
  std::size_t Count() const { return count_; }

 private:
  std::optional<std::string> NextLine();
  bool Fill();

  const std::vector<std::string>& arguments_;
  std::size_t count_ = 0;
  std::string block_;
  std::size_t at_ = 0;
};

/// Standard output. Each call is written at once, so that a program at the other end of a pipe gets its answer, and
/// throws TInputError when that fails.
class TData {
 public:
  void Line(std::string_view line);
  /// A line of text from anywhere: on a terminal without what could change it.
  void Result(std::string_view text);
  static bool IsTerminal();
};

/// Standard error: lines, and below them how far a long batch has come when a person is watching.
class TDiagnostics {
 public:
  explicit TDiagnostics(bool showsProgress);
  TDiagnostics(const TDiagnostics&) = delete;
  TDiagnostics& operator=(const TDiagnostics&) = delete;
  ~TDiagnostics() { Clear(); }

  /// The parts as one line.
  void Line(std::initializer_list<std::string_view> parts);
  void Progress(std::size_t done);

 private:
  void Clear();

  using TClock = std::chrono::steady_clock;

  bool showsProgress_;
  bool shown_ = false;
  TClock::time_point next_;
};
