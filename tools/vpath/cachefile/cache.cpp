// vpath cache: makes, checks and shows the cache file of a toolbox folder.
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include <CLI/CLI.hpp>

#include "cachefile/cache_commands.h"

CacheArguments CheckCacheArguments(const std::string& fileName, Context& context) {
    PathOptions& options = context.options;
    if (fileName.empty()) throw CommandError("an empty FILE; give the name of the cache file");
    if (!options.cacheFile.empty()) {
        throw CommandError("--cache is for commands that ask; the cache file here is FILE");
    }
    if (options.root.empty()) {
        throw CommandError("--root is required: the directory that holds the folder 'toolbox'");
    }
    CacheArguments arguments{fileName, FullNameOfCacheFile(fileName), ToolboxOf(options.root)};
    const std::string& dir = arguments.toolbox.dir;
    struct stat status;
    if (stat(dir.c_str(), &status) != 0) {
        throw CommandError("--root " + options.root + ": " + dir + ": " + std::strerror(errno));
    }
    if (!S_ISDIR(status.st_mode)) {
        throw CommandError("--root " + options.root + ": " + dir + ": not a directory");
    }
    // VPATH is about what to ask, not about what a cache is to hold.
    if (options.sources.empty() || options.sourcesAreDefault) {
        options.sources = {{PathSource::kTree, dir}};
    }
    return arguments;
}

void AddCacheFileArgument(CLI::App& command, std::string& fileName) {
    command.add_option("FILE", fileName, "the cache file")->required();
}

Command AddCacheCommand(CLI::App& app) {
    CLI::App* cache = app.add_subcommand("cache", "Toolbox cache files");
    cache->fallthrough();
    cache->footer(
        "A cache file tells what the directories under ROOT/toolbox hold, so that nobody\n"
        "need read them. Every command answers from it with --cache FILE --root ROOT.\n"
        "Names are those of --root ROOT: /w/inst/toolbox/a has to be on the path as that.\n"
        "Example: make one, and find foo by it\n"
        "  vpath cache write inst.cache --root inst\n"
        "  vpath --cache inst.cache --root inst --recursive inst/toolbox which foo");
    cache->require_subcommand(/*min=*/0, /*max=*/1);
    const std::vector<Command> commands = {
        AddCacheWriteCommand(*cache), AddCacheCheckCommand(*cache), AddCacheShowCommand(*cache)};
    return {cache, [commands](Context& context) {
                for (const Command& command : commands) {
                    if (command.app->parsed()) return command.run(context);
                }
                throw CommandError("no command after 'cache'; run 'vpath cache --help'");
            }};
}
