// What the commands 'vpath cache ...' share.
#pragma once

#include <string>

#include "command.h"
#include "loading/toolbox_cache.h"

// The file and the toolbox folder that a command works on.
struct CacheArguments {
    std::string fileName;  // as the user wrote it
    std::string file;      // its full name
    Toolbox toolbox;
};

// To be asked for before the path is loaded, which may change the current directory. Fills in the
// sources of the path where the options give none: the whole toolbox folder. Throws CommandError
// for options that cannot be meant.
CacheArguments CheckCacheArguments(const std::string& fileName, Context& context);

// Adds FILE to a command.
void AddCacheFileArgument(CLI::App& command, std::string& fileName);

// Each adds a command to `cache`.
Command AddCacheWriteCommand(CLI::App& cache);
Command AddCacheCheckCommand(CLI::App& cache);
Command AddCacheShowCommand(CLI::App& cache);
