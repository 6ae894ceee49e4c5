// The tables of a page of Docs/, as tests read them.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace names_test {

/// All of the page.
inline std::string Page(const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(VEXONAMES_SOURCE_DIR "/Docs/" + name).rdbuf();
  return text.str();
}

/// A cell without blanks around it; code without its backticks.
inline std::string Shown(std::string cell) {
  cell.erase(0, cell.find_first_not_of(' '));
  cell.erase(cell.find_last_not_of(' ') + 1);
  const bool code = cell.size() > 1 && cell.front() == '`' && cell.find('`', 1) == cell.size() - 1;
  return code ? cell.substr(1, cell.size() - 2) : cell;
}

/// The rows of all tables of a page whose first column has that title.
inline std::vector<std::vector<std::string>> Rows(const std::string& page, const std::string& title) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(page);
  std::string header;
  for (std::string line; std::getline(lines, line);) {
    if (line.substr(0, 2) == "|-") continue;
    std::vector<std::string> row;
    std::istringstream cells(line.substr(0, 2) == "| " ? line.substr(1) : "");
    for (std::string cell; std::getline(cells, cell, '|');) row.push_back(Shown(cell));
    if (!row.empty() && header == title) rows.push_back(row);
    if (header.empty() || row.empty()) header = row.empty() ? "" : row.front();
  }
  return rows;
}

}  // namespace names_test
