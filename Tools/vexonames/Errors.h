// What ends the tool before its work is done.
#pragma once

#include <stdexcept>

/// How the tool ends.
enum TExitCode : int {
  kExitResolved = 0,
  kExitFailedTokens = 1,
  kExitBadInput = 2,
  kExitServiceFailed = 3,
};

/// Input or output that the tool cannot go on with: arguments, the context file, the standard streams. The message is
/// for people and complete; main prints it and ends with kExitBadInput.
class TInputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A service that the tool cannot do without failed; main ends with kExitServiceFailed.
class TServiceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
