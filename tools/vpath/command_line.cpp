#include "command_line.h"

#include <algorithm>

#include <vpath/path.h>

#include "generate.h"
#include "help.h"
#include "loading/stats.h"
#include "output/console.h"

namespace {

std::vector<Command> AddAnsweringCommands(CLI::App& app) {
    return {
        AddWhichCommand(app),   AddClassCommand(app),    AddClassesCommand(app),
        AddMethodsCommand(app), AddPackagesCommand(app), AddDirsCommand(app),
        AddLsCommand(app),      AddStatsCommand(app),    AddShadowsCommand(app),
        AddDiffCommand(app),    AddWhyNotCommand(app),   AddDoctorCommand(app),
    };
}

// CLI11 takes the words last one first. It would take the word that follows "--option=", as
// scripts write with an empty variable, for the value.
std::vector<std::string> Arguments(const std::vector<std::string>& words) {
    std::vector<std::string> arguments;
    bool options = true;
    for (const std::string& word : words) {
        options = options && word != "--";
        const size_t equals = word.find('=');
        if (options && word.starts_with("--") && equals + 1 == word.size()) {
            arguments.push_back(word.substr(0, equals));
            arguments.emplace_back();
        } else {
            arguments.push_back(word);
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

}  // namespace

CommandLine::CommandLine(Context& context, const char* name, const char* description,
                         const char* help)
    : context_(context), help_(help), app_(description, name) {
    app_.formatter(MakeHelpFormatter());
    app_.set_help_flag("-h,--help", "print this help");
    app_.require_subcommand(/*min=*/0, /*max=*/1);  // run tells of a missing one
}

CommandLine::CommandLine(Context& context, OfProgram)
    : CommandLine(context, "vpath", "Finds names on a search path of directories.",
                  "run 'vpath --help'") {
    app_.footer(
        "Exit status: 0 found or clean, 1 not found or shadowed, 2 wrong usage or I/O.\n"
        "Example: vpath --path /w/lib:/w/tools --ext v,p which foo");
    app_.set_version_flag("--version", std::string("vpath ") + libvpath_version,
                          "print the version");
    AddPathOptions(app_, context.options);
    AddOutputOptions(app_, context.outputOptions);
    add(AddAnsweringCommands(app_));
    AddGenerateOption(app_, generated_);
    add({AddWatchCommand(app_), AddCacheCommand(app_), AddReportCommand(app_),
         AddShellCommand(app_)});
}

CommandLine::CommandLine(Context& context, OfShell)
    : CommandLine(context, "", "Answers from the path that is loaded, and changes it.",
                  "see 'help'") {
    app_.footer("'add' does here what advice calls --path. Ctrl-C ends a line, Ctrl-D the shell.");
    AddExtensionOption(app_, context.options);
    AddOutputOptions(app_, context.outputOptions);
    add(AddAnsweringCommands(app_));
}

void CommandLine::add(const std::vector<Command>& commands) {
    commands_.insert(commands_.end(), commands.begin(), commands.end());
}

const CLI::App* CommandLine::find(const std::string& command) const {
    const auto found = std::find_if(commands_.begin(), commands_.end(),
                                    [&](const Command& at) { return at.app->check_name(command); });
    return found == commands_.end() ? nullptr : found->app;
}

bool CommandLine::parse(const std::vector<std::string>& words) {
    try {
        app_.parse(Arguments(words));
        if (generated_.empty()) return true;
        Print(Generate(app_, generated_));
    } catch (const CLI::CallForHelp&) {
        Print(app_.help());
    } catch (const CLI::CallForVersion& version) {
        PrintLine(version.what());
    } catch (const CLI::ParseError& error) {
        throw CommandError(std::string(error.what()) + "; " + help_);
    }
    FlushOutput();
    return false;
}

ExitStatus CommandLine::run() {
    for (const Command& command : commands_) {
        if (!command.app->parsed()) continue;
        try {
            const ExitStatus status = command.run(context_);
            if (context_.options.stats && context_.isLoaded()) {
                context_.output().remark(StatsRecord(context_.loaded()));
            }
            context_.output().finish();
            return status;
        } catch (const CommandError&) {
            context_.output().finish(/*failed=*/true);
            throw;
        }
    }
    throw CommandError(std::string("no command; ") + help_);
}
