// Texts made from the definitions of the commands and options, so that they say what is so.
#pragma once

#include <string>

namespace CLI {
class App;
}

// Adds the hidden option --generate WHAT. It writes to `what`, which must outlive the parse.
void AddGenerateOption(CLI::App& app, std::string& what);

// "bash", "zsh" or "fish": the completions for that shell; "man": the section COMMANDS of vpath(1).
// Throws CommandError for anything else.
std::string Generate(const CLI::App& app, const std::string& what);
