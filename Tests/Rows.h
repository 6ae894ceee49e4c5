// Files of rows: each row is a test of its own, named after its file and line; a failure shows both.
//
//   names: text A = x                 a setting, which holds for the rows below; "names: " is one of the given words
//   resolve <A/> => x                 a row
//   > resolve <A/>                    a row with lines below it, which say what it leads to: up to the next "> "
//   TName::Resolve: "<A/>"
//   options {"Decimals": 2}           or such as begin with a blank
//    option-value: the options have no effect without DataFormat
//
// Empty lines are for the reader, and lines that begin with "#".
//
//   const RowFile cases("Cases.txt", {"names:"}, [](const Row& row) {
//     const auto parts = Pieces(row.text, " => ", 2);
//     EXPECT_EQ(Outcome(row.Setting("names:"), parts.at(0)), parts.at(1));
//   });
//
//   names_tests --gtest_filter=Cases.txt.L12     the row of line 12; Cases.txt.* all of them
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace rows_test {

struct Row {
  std::string file;  // its path
  int line = 0;
  std::string text{};   // without "> "
  std::string below{};  // the lines below it, each with its end
  std::map<std::string, std::string, std::less<>> settings{};

  /// What stands after the word, on the last such line above, or on the last such lines if they follow each other.
  std::string Setting(std::string_view word) const;
};

/// The rows of a file as tests; its path is that below the folder of the program. A file without any is a failure.
class RowFile {
 public:
  RowFile(const std::string& file, std::initializer_list<std::string_view> settings,
          const std::function<void(const Row&)>& check);
};

/// The pieces between separators, at most that many. A backslash before a separator makes it text: "a\; b" has no "; ".
std::vector<std::string> Pieces(std::string_view text, std::string_view separator,
                                std::size_t most = std::string::npos);

}  // namespace rows_test
