// The names that a command is asked about.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// Adds the names as the arguments of `command`, one or more. `what` is what its help calls one.
CLI::Option* AddNameArguments(CLI::App& command, const char* what, std::vector<std::string>& names,
                              const char* help);

// Throws CommandError for a name that cannot be that of `whose` ("a file"), before anything is
// answered.
void CheckNameArguments(const std::vector<std::string>& names, const char* what, const char* whose);
