// The tool as a user runs it: arguments and standard input in, both outputs and the exit code out.
#pragma once

#include <string>
#include <vector>

struct TRunResult {
  std::string out;
  std::string err;
  int code = -1;  // −1: it did not end by itself
};

/// Runs vexonames and waits for it.
TRunResult RunTool(const std::vector<std::string>& arguments, const std::string& in = "");

/// The same, with its standard output going to that file.
TRunResult RunToolInto(const std::string& outFile, const std::vector<std::string>& arguments, const std::string& in);

/// A file with that content, for the time of the test program; returns its path. The same name: the same file.
std::string FileWith(const std::string& name, const std::string& content);

std::string ReadAll(const std::string& file);

/// The path of a context file with names of all types, for tests that need just some names.
const std::string& ShopFile();
