#include "Rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace rows_test {
namespace {

using TCheck = std::function<void(const Row&)>;

std::vector<Row> Read(const std::string& path, std::initializer_list<std::string_view> settings) {
  std::ifstream in(path);
  std::vector<Row> rows;
  Row next{path};  // what is set for it
  std::string_view setAbove;
  for (std::string line; std::getline(in, line);) {
    ++next.line;
    if (line.empty() || line[0] == '#') continue;
    const auto* const word = std::ranges::find_if(settings, [&](auto known) { return line.starts_with(known); });
    const bool isHead = line.starts_with("> ");
    if (word != settings.end()) {
      std::string& value = next.settings[std::string(*word)];
      if (setAbove != *word) value.clear();
      value += line.substr(std::min(line.size(), word->size() + 1));
      setAbove = *word;
      continue;
    }
    setAbove = {};
    const bool isIndented = line[0] == ' ' && !line.starts_with(" =>");  // else the row of an empty text
    if (!rows.empty() && (isIndented || (!isHead && next.text.starts_with("> ")))) {
      rows.back().below += line + '\n';
    } else {
      next.text = line;
      rows.push_back(next);
      if (isHead) rows.back().text.erase(0, 2);
    }
  }
  return rows;
}

class RowTest : public testing::Test {
 public:
  RowTest(const Row& row, const TCheck& check) : row_(row), check_(check) {}

  void TestBody() override {
    const testing::ScopedTrace place(row_.file.c_str(), row_.line, row_.text);
    check_(row_);
  }

 private:
  const Row row_;
  const TCheck check_;
};

void Register(const std::string& file, const std::string& name, const Row& row, const TCheck& check) {
  testing::RegisterTest(file.c_str(), name.c_str(), nullptr, nullptr, row.file.c_str(), row.line,
                        [=]() -> RowTest* { return new RowTest(row, check); });
}

}  // namespace

std::string Row::Setting(std::string_view word) const {
  const auto found = settings.find(word);
  return found == settings.end() ? "" : found->second;
}

RowFile::RowFile(const std::string& file, std::initializer_list<std::string_view> settings, const TCheck& check) {
  const std::string path = VEXONAMES_TESTS_DIR + file;
  const std::vector<Row> rows = Read(path, settings);
  for (const Row& row : rows) Register(file, "L" + std::to_string(row.line), row, check);
  // Its full name is the filter for all of them: as such ctest runs it.
  Register(file, "*", {path}, [count = rows.size()](const Row&) { EXPECT_GT(count, 0U); });
}

std::vector<std::string> Pieces(std::string_view text, std::string_view separator, std::size_t most) {
  std::vector<std::string> pieces(1);
  while (!text.empty()) {
    std::size_t taken = 1;
    if (text[0] == '\\' && text.substr(1).starts_with(separator)) {
      pieces.back() += separator;
      taken += separator.size();
    } else if (pieces.size() < most && text.starts_with(separator)) {
      pieces.emplace_back();
      taken = separator.size();
    } else {
      pieces.back() += text[0];
    }
    text.remove_prefix(taken);
  }
  return pieces;
}

}  // namespace rows_test
