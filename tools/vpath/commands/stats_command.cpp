// vpath stats: what the path holds and what loading it took, as an answer.
#include <CLI/CLI.hpp>

#include "command.h"
#include "loading/stats.h"

Command AddStatsCommand(CLI::App& app) {
    CLI::App* stats = app.add_subcommand("stats", "What the path holds and cost");
    stats->fallthrough();
    stats->footer(
        "Prints what --stats says beside other answers: directories, files and names,\n"
        "the callbacks made to the file system, the time and the memory of the load.\n"
        "Example: the files that a tree holds, as a number\n"
        "  vpath --recursive /usr/include --json stats | jq '.[0].files'");
    return {stats, [](Context& context) {
                context.output().print(StatsRecord(context.loaded()));
                context.options.stats = false;  // it is said
                return kExitFound;
            }};
}
