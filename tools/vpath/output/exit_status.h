#pragma once

#include <stdexcept>

enum ExitStatus : int {
    kExitFound = 0,
    kExitNotFound = 1,       // some of what was asked for
    kExitFailure = 2,        // wrong usage, or input or output that failed
    kExitInterrupted = 130,  // by SIGINT, as shells count
    kExitTerminated = 143,   // by SIGTERM
};

// Ends the command with kExitFailure. The text is one line that says what to do about it.
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};
