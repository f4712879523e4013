#include "shell/session_commands.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "loading/path_names.h"
#include "options/name_arguments.h"
#include "shell/session.h"

namespace {

using Names = std::vector<std::string>;

// Calls `act` with each directory of the path that is named, in the order written.
ExitStatus ForEachDir(const Names& names, Context& context,
                      const std::function<bool(const std::string&, const vpDir&)>& act) {
    CheckNameArguments(names, "DIR", "a directory");
    ExitStatus status = kExitFound;
    for (const std::string& name : names) {
        const vpDir dir = FindDir(context.loaded().path, name);
        if (vpGetDirType(dir) == vpDirTypeNone) {
            context.output().miss(name, "not a directory of the path", "'dirs' lists them");
            status = kExitNotFound;
        } else if (!act(name, dir)) {
            status = kExitNotFound;
        }
    }
    return status;
}

Command AddCd(CLI::App& app) {
    const auto name = std::make_shared<std::string>();
    CLI::App* cd = app.add_subcommand("cd", "Change the current directory");
    cd->add_option("DIR", *name, "the home directory if not given")->option_text(" ");
    cd->footer(
        "Directories that were added by a relative name are read again from there.\n"
        "Example: back to where the home directory is\n"
        "  cd");
    return {cd, [name](Context& context) {
                const char* const home = std::getenv("HOME");
                if (name->empty() && home != nullptr) *name = home;
                const std::string full = FullDirName(*name).value_or(*name);
                const char* const refusal = vpSetCWDName(context.loaded().path, full.c_str());
                if (refusal != nullptr) throw CommandError(*name + ": " + refusal);
                return kExitFound;
            }};
}

Names Elements(const Names& lists) {
    Names elements;
    for (const std::string& list : lists) {
        for (size_t begin = 0; begin <= list.size();) {
            const size_t end = std::min(list.find_first_of(":;", begin), list.size());
            if (end != begin) elements.push_back(list.substr(begin, end - begin));
            begin = end + 1;
        }
    }
    return elements;
}

struct AddOptions {
    Names lists;
    bool isFirst = false;
    bool isRecursive = false;
};

ExitStatus RunAdd(const AddOptions& options, Context& context) {
    const vpPath path = context.loaded().path;
    if (options.isRecursive) {
        for (const std::string& name : options.lists) {
            const auto root = FullDirName(name);
            AddTree(path, root.value_or(name), context.options.ignoreCase);
        }
        return kExitFound;
    }
    Names elements = Elements(options.lists);
    if (options.isFirst) std::reverse(elements.begin(), elements.end());
    ExitStatus status = kExitFound;
    for (const std::string& element : elements) {
        const vpDir dir =
            vpAddDir(path, element.c_str(), options.isFirst ? vpAddAtBeginning : vpAddAtEnd);
        if (vpGetDirType(dir) == vpDirTypeNone) status = kExitNotFound;
    }
    return status;
}

Command AddAdd(CLI::App& app) {
    const auto options = std::make_shared<AddOptions>();
    CLI::App* add = app.add_subcommand("add", "Add directories to the path");
    AddNameArguments(*add, "LIST", options->lists, "directories, as 'a:b:c'");
    CLI::Option* first = add->add_flag("-f,--first", options->isFirst, "in front, not at the end");
    add->add_flag("-r,--recursive", options->isRecursive, "each and those below it")
        ->excludes(first);
    add->footer(
        "Elements that cannot be added are said, the others are added.\n"
        "Example: a new release in front of all, so that it is found first\n"
        "  add -f /w/new");
    return {add, [options](Context& context) { return RunAdd(*options, context); }};
}

Command AddRemove(CLI::App& app) {
    const auto names = std::make_shared<Names>();
    CLI::App* remove = app.add_subcommand("remove", "Take directories off it");
    AddNameArguments(*remove, "DIR", *names, "on the path");
    remove->footer(
        "Example: what is found without /w/tools\n"
        "  remove /w/tools");
    return {remove, [names](Context& context) {
                return ForEachDir(*names, context, [&](const std::string& name, const vpDir& dir) {
                    const bool isOnPath = vpGetDirType(dir) == vpDirTypePath;
                    if (isOnPath) {
                        vpRemoveDir(dir);
                    } else if (vpGetDirType(dir) == vpDirTypeCurrent) {
                        context.output().miss(name, "the current directory", "leave it with 'cd'");
                    } else {
                        context.output().miss(name, "a directory inside one of the path",
                                              "remove that");
                    }
                    return isOnPath;
                });
            }};
}

Command AddReplace(CLI::App& app) {
    const auto list = std::make_shared<std::string>();
    CLI::App* replace = app.add_subcommand("replace", "Make it another list");
    replace->add_option("LIST", *list, "directories, as 'a:b:c'; those on it are not read again")
        ->required()
        ->option_text(" ");
    replace->footer(
        "Example: the same directories the other way round\n"
        "  replace /w/tools:/w/lib");
    return {replace, [list](Context& context) {
                return vpReplacePath(context.loaded().path, list->c_str()) ? kExitFound
                                                                           : kExitNotFound;
            }};
}

struct FreezeOptions {
    Names names;
    bool isOff = false;
};

Command AddFreeze(CLI::App& app) {
    const auto options = std::make_shared<FreezeOptions>();
    CLI::App* freeze = app.add_subcommand("freeze", "Do not look for changes");
    AddNameArguments(*freeze, "DIR", options->names, "on the path");
    freeze->add_flag("--off", options->isOff, "look for them again");
    freeze->footer(
        "'refresh' passes over it then, and 'refresh --all' does not.\n"
        "Example: a library that is never written to\n"
        "  freeze /w/lib");
    return {freeze, [options](Context& context) {
                return ForEachDir(
                    options->names, context, [&](const std::string& name, const vpDir& dir) {
                        if (options->isOff) {
                            vpUnFreeze(dir);
                            return true;
                        }
                        vpFreeze(dir);
                        if (vpIsFrozen(dir)) return true;
                        context.output().miss(name, "the current directory, never frozen",
                                              "leave it with 'cd'");
                        return false;
                    });
            }};
}

// Takes in events however the line ends.
class EventsForOneLine {
  public:
    explicit EventsForOneLine(Session& session)
        : session_(session), wereShown_(session.areEventsShown()) {
        session_.setEvents(true);
    }
    ~EventsForOneLine() { session_.setEvents(wereShown_); }
    EventsForOneLine(const EventsForOneLine&) = delete;
    EventsForOneLine& operator=(const EventsForOneLine&) = delete;

  private:
    Session& session_;
    const bool wereShown_;
};

struct RefreshOptions {
    Names names;
    bool all = false;
};

Command AddRefresh(CLI::App& app, Session& session) {
    const auto options = std::make_shared<RefreshOptions>();
    CLI::App* refresh = app.add_subcommand("refresh", "Read what has changed");
    AddNameArguments(*refresh, "DIR", options->names, "instead of all")->required(false);
    refresh->add_flag("--all", options->all, "whatever has changed, frozen or not");
    refresh->footer(
        "Prints the directories that were read, as 'events on' does: \"reread\" or \"added\"\n"
        "and the name, a tab between them.\n"
        "Example: what the times of the directories do not tell\n"
        "  refresh --all");
    return {refresh, [options, &session](Context& context) {
                const vpDirRefreshType type = options->all ? vpRefreshAlways : vpRefreshIfChanged;
                const EventsForOneLine events(session);
                if (options->names.empty()) {
                    vpRefreshAllDirectories(context.loaded().path, type);
                }
                const ExitStatus status =
                    ForEachDir(options->names, context, [&](const std::string&, const vpDir& dir) {
                        vpRefreshDirectory(dir, type);
                        return true;
                    });
                session.tellEvents(context.output());
                return status;
            }};
}

Command AddEvents(CLI::App& app, Session& session) {
    const auto setting = std::make_shared<std::string>();
    CLI::App* events = app.add_subcommand("events", "Show what lines cause");
    events->add_option("SETTING", *setting, "'on' or 'off'")->required()->option_text(" ");
    events->footer(
        "Shows the events that a listener of the path would hear of, after each line:\n"
        "the event and its directory, '-' for none, a tab between them.\n"
        "Example: what each line causes from here on\n"
        "  events on");
    return {events, [setting, &session](Context&) {
                if (*setting != "on" && *setting != "off") {
                    throw CommandError("events " + *setting + ": say on or off");
                }
                session.setEvents(*setting == "on");
                return kExitFound;
            }};
}

Command AddHelp(CLI::App& app, Session& session) {
    const auto name = std::make_shared<std::string>();
    CLI::App* help = app.add_subcommand("help", "What there is to say");
    help->add_option("COMMAND", *name, "what it does")->option_text(" ");
    help->footer(
        "Example: the options of which\n"
        "  help which");
    return {help, [name, &session](Context&) {
                return name->empty() ? session.run({"--help"}) : session.run({*name, "--help"});
            }};
}

Command AddQuit(CLI::App& app, Session& session) {
    CLI::App* quit = app.add_subcommand("quit", "End the shell");
    quit->alias("exit");
    quit->footer(
        "So does 'exit'.\n"
        "Example: enough\n"
        "  quit");
    return {quit, [&session](Context&) {
                session.end();
                return kExitFound;
            }};
}

}  // namespace

std::vector<Command> AddSessionCommands(CLI::App& app, Session& session) {
    std::vector<Command> commands = {
        AddCd(app),
        AddAdd(app),
        AddRemove(app),
        AddReplace(app),
        AddFreeze(app),
        AddRefresh(app, session),
        AddEvents(app, session),
        AddHelp(app, session),
        AddQuit(app, session),
    };
    for (const Command& command : commands) command.app->fallthrough();
    return commands;
}
