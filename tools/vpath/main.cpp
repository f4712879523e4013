// vpath: loads a search path over real directories and answers from it.
#include <algorithm>
#include <csignal>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "console.h"
#include "generate.h"
#include "help.h"
#include "stats.h"

namespace {

ExitStatus Run(const std::vector<Command>& commands, Context& context) {
    for (const Command& command : commands) {
        if (!command.app->parsed()) continue;
        try {
            const ExitStatus status = command.run(context);
            if (context.options.stats && context.isLoaded()) {
                context.output().remark(StatsRecord(context.loaded()));
            }
            context.output().finish();
            return status;
        } catch (const CommandError&) {
            context.output().finish(/*failed=*/true);
            throw;
        }
    }
    throw CommandError("no command; run 'vpath --help'");
}

// The arguments as CLI11 takes them, last one first. It would take the argument that follows
// "--option=", as scripts write with an empty variable, for the value.
std::vector<std::string> Arguments(int argc, char** argv) {
    std::vector<std::string> arguments;
    bool options = true;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        options = options && argument != "--";
        const size_t equals = argument.find('=');
        if (options && argument.starts_with("--") && equals + 1 == argument.size()) {
            argument.pop_back();
            arguments.push_back(argument);
            arguments.emplace_back();
        } else {
            arguments.push_back(argument);
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

ExitStatus ParseAndRun(int argc, char** argv) {
    Context context;
    CLI::App app("Finds names on a search path of directories.", "vpath");
    app.formatter(MakeHelpFormatter());
    app.footer(
        "Exit status: 0 found or clean, 1 not found or shadowed, 2 wrong usage or I/O.\n"
        "Example: vpath --path /w/lib:/w/tools --ext v,p which foo");
    app.set_help_flag("-h,--help", "print this help");
    app.set_version_flag("--version", std::string("vpath ") + libvpath_version,
                         "print the version");
    app.require_subcommand(/*min=*/0, /*max=*/1);  // Run tells of a missing one
    AddPathOptions(app, context.options);
    AddOutputOptions(app, context.outputOptions);
    std::string generated;
    AddGenerateOption(app, generated);
    const std::vector<Command> commands = {
        AddWhichCommand(app),   AddClassCommand(app),    AddClassesCommand(app),
        AddMethodsCommand(app), AddPackagesCommand(app), AddWatchCommand(app),
        AddCacheCommand(app),   AddDirsCommand(app),     AddLsCommand(app),
        AddStatsCommand(app),   AddShadowsCommand(app),  AddDiffCommand(app),
        AddWhyNotCommand(app),  AddReportCommand(app),   AddDoctorCommand(app),
    };
    try {
        app.parse(Arguments(argc, argv));
        if (!generated.empty()) {
            Print(Generate(app, generated));
            FlushOutput();
            return kExitFound;
        }
        UseDefaultPath(context.options);
        return Run(commands, context);
    } catch (const CLI::CallForHelp&) {
        Print(app.help());
    } catch (const CLI::CallForVersion& version) {
        PrintLine(version.what());
    } catch (const CLI::ParseError& error) {
        throw CommandError(std::string(error.what()) + "; run 'vpath --help'");
    }
    FlushOutput();
    return kExitFound;
}

}  // namespace

int main(int argc, char** argv) {
    // A closed pipe, or a file at the limit of its size, shows as a failed write instead.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return ParseAndRun(argc, argv);
    } catch (const OutputClosed&) {
        return kExitFound;
    } catch (const std::exception& error) {
        Complain(error.what());
        return kExitFailure;
    }
}
