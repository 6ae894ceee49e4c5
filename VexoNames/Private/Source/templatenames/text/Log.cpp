#include "text/Log.h"

#include <iostream>

namespace templatenames {

void WriteLine(const std::string& line) { std::cout << line + '\n' << std::flush; }

}  // namespace templatenames
