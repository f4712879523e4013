// A command with its options, as it is written after "vpath" or on a line of the shell.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"

class CommandLine {
  public:
    // What stands after "vpath": every command, and the options that make a path.
    struct OfProgram {};
    // What stands on a line of the shell: the commands that answer from the path. Others can be
    // added. The path is there.
    struct OfShell {};

    // `context` must outlive it; the options are written there.
    CommandLine(Context& context, OfProgram);
    CommandLine(Context& context, OfShell);

    CLI::App& app() { return app_; }
    void add(const std::vector<Command>& commands);
    const std::vector<Command>& commands() const { return commands_; }
    const CLI::App* find(const std::string& command) const;  // null for none

    // To be called once. False when help, the version or a generated text was asked for, which is
    // then printed.
    // Throws CommandError with what is wrong.
    bool parse(const std::vector<std::string>& words);

    // Runs what was parsed, and ends its output. Throws what commands throw.
    ExitStatus run();

  private:
    CommandLine(Context& context, const char* name, const char* description, const char* help);

    Context& context_;
    const char* const help_;  // what tells more about wrong usage
    std::string generated_;   // which text, if any
    CLI::App app_;
    std::vector<Command> commands_;
};
