// The command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "NQM_TAddress.h"
#include "NQ_TTime.h"

struct TOptions {
  enum class TCommand : std::uint8_t { Resolve, Names, Translate, Serve };
  enum class TForm : std::uint8_t { Plain, Table, Json };

  TCommand command = TCommand::Resolve;
  std::optional<std::string> context;   // file
  std::optional<NQM_TAddress> connect;  // where all services are
  std::optional<TForm> form;            // when the user chose one; Table not for translate
  std::optional<NQ_TTime> now;
  std::optional<std::string> zone;
  int debug = 0;
  bool requests = false;           // say what services are asked
  std::vector<std::string> texts;  // of resolve and translate; none: standard input
  std::string prefix = "[";        // of translate
  std::string suffix = "]";
  bool back = false;
  std::string serveHost = "localhost";
  std::uint16_t servePort = 0;  // any free one
};

/// Reads the arguments. When there is nothing left to do (help was shown, or what is wrong was said) returns how the
/// program is to end.
std::optional<int> ParseOptions(int count, const char* const* arguments, TOptions& options);
