// The log: one line per event, on standard output or to the host's sink.
#pragma once

#include <functional>
#include <locale>
#include <sstream>
#include <string>

namespace templatenames {

/// Takes a line, without its end, and the level at which it is written: 0 for lines that are always written.
using TLogSink = std::function<void(int level, const std::string& line)>;

/// Where lines go from now on; an empty function for standard output. Any thread.
void SetLogSink(TLogSink sink);

/// Hands the line to the sink; without one it goes to standard output, at once and with a line end. Any thread.
void WriteLine(int level, const std::string& line);
/// The same for a line that goes to standard error when there is no sink.
void WriteError(int level, const std::string& line);

/// Joins the parts as they print and writes them as one line. Numbers look the same whatever the program's locale is.
template <class... Parts>
void Log(int level, const Parts&... parts) {
  std::ostringstream line;
  line.imbue(std::locale::classic());
  (line << ... << parts);
  WriteLine(level, line.str());
}

}  // namespace templatenames
