// The log: one line per event on standard output.
#pragma once

#include <locale>
#include <sstream>
#include <string>

namespace templatenames {

/// Writes the line, a line end and a flush, at once. Any thread.
void WriteLine(const std::string& line);

/// Joins the parts as they print and writes them as one line. Numbers look the same whatever the program's locale is.
template <class... Parts>
void Log(const Parts&... parts) {
  std::ostringstream line;
  line.imbue(std::locale::classic());
  (line << ... << parts);
  WriteLine(line.str());
}

}  // namespace templatenames
