// What the engine writes to its log.
//
// An object of this class takes the log lines of the process for as long as it lives: standard output is for data. On
// standard error they stand, one line each, when a person asks for them.
#pragma once

#include <mutex>
#include <string>
#include <vector>

class TEngineLog {
 public:
  explicit TEngineLog(bool shows);
  TEngineLog(const TEngineLog&) = delete;
  TEngineLog& operator=(const TEngineLog&) = delete;
  ~TEngineLog();

  /// The lines that are written at every debug level, since the last call; of very many the first, of very long ones
  /// the beginning. A line may have line ends in it.
  std::vector<std::string> Take();

 private:
  void Add(int level, const std::string& line);

  const bool shows_;
  std::mutex lock_;
  std::vector<std::string> kept_;
};
