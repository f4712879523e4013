// What a session understands beside the commands that answer: commands that change its path.
#pragma once

#include <vector>

#include "command.h"

class Session;

// Both must outlive the commands.
std::vector<Command> AddSessionCommands(CLI::App& app, Session& session);
