// vpath ls: what the library holds of a directory.
#include <memory>
#include <string>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/dir_entries.h"
#include "loading/path_names.h"
#include "options/name_arguments.h"

namespace {

ExitStatus RunLs(const std::vector<std::string>& names, Context& context) {
    CheckNameArguments(names, "DIR", "a directory");
    const vpPath path = context.loaded().path;
    Output& output = context.output();
    ExitStatus status = kExitFound;
    for (const std::string& name : names) {
        const vpDir dir = FindDir(path, name);
        if (vpGetDirType(dir) == vpDirTypeNone) {
            output.miss(name, "not a directory of the path", "add it with --path");
            status = kExitNotFound;
            continue;
        }
        const std::string dirName = FullNameOf(dir);
        ForEachEntry(
            dir, context.options.extensionArray(),
            [&](const std::string& kind, const std::string& fullName) {
                output.print(Record("entry")
                                 .field("directory", dirName)
                                 .column("kind", kind)
                                 .field("name", fullName.substr(fullName.rfind('/') + 1))
                                 .column("file", fullName,
                                         kind == "file" ? Style::kFile : Style::kDirectory));
            });
    }
    return status;
}

}  // namespace

Command AddLsCommand(CLI::App& app) {
    const auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* ls = app.add_subcommand("ls", "What a directory holds");
    ls->fallthrough();
    AddNameArguments(*ls, "DIR", *names, "on the path, or a special directory inside it");
    ls->footer(
        "Prints the kind (file, package, class, private; directory for a plain one) and\n"
        "the full name, a tab between them, as the path knows them. --ext chooses files.\n"
        "Example: the classes in /w/lib and in its package geo\n"
        "  vpath --path /w/lib ls /w/lib /w/lib/+geo | grep '^class'");
    return {ls, [names](Context& context) { return RunLs(*names, context); }};
}
