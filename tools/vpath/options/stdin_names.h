// Names that a command is asked about on standard input.
#pragma once

#include <optional>
#include <string>

class StdinNames {
  public:
    // A NUL ends each name when `nulSeparated`, else a line feed.
    explicit StdinNames(bool nulSeparated) : end_(nulSeparated ? '\0' : '\n') {}

    // The next name that is not empty, as soon as it has come whole; nothing at the end of the
    // input, which may end the last name too. Throws CommandError when the input cannot be read,
    // or a line holds a NUL.
    std::optional<std::string> next();

  private:
    const char end_;
};
