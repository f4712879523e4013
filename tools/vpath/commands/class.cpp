// vpath class: the file that defines a class.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/class_files.h"
#include "loading/class_text.h"
#include "options/name_arguments.h"
#include "output/console.h"

namespace {

ExitStatus RunClass(const std::vector<std::string>& classNames, Context& context) {
    CheckNameArguments(classNames, "CLASS", "a class");
    const vpPath path = context.loaded().path;
    Output& output = context.output();
    ExitStatus status = kExitFound;
    for (const std::string& className : classNames) {
        const unsigned int unreadBefore = UnreadClassFiles();
        if (const auto file = ClassFile(path, className, context.options)) {
            output.print(
                Record("definition").field("name", className).column("file", *file, Style::kFile));
            FlushOutput();  // what is said of the texts of files comes in the order of the names
            continue;
        }
        if (UnreadClassFiles() != unreadBefore) {
            output.miss(className, "not known", "make the files that may declare it readable");
            status = kExitFailure;
        } else {
            output.miss(className, "no such class",
                        WhyNoClassFile(path, className, context.options));
            status = std::max(status, kExitNotFound);
        }
    }
    return status;
}

}  // namespace

Command AddClassCommand(CLI::App& app) {
    const auto classNames = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand("class", "Files that define classes");
    command->fallthrough();
    AddNameArguments(*command, "CLASS", *classNames,
                     "names of classes, as 'Shape' or 'geo.Circle'");
    command->footer(
        "A class is defined by Name.v or Name.p in a directory of the path, or in a class\n"
        "directory @Name there; geo.Name by the like in a package directory +geo. The\n"
        "file must declare it: its first line that begins with a letter, blanks aside,\n"
        "begins with the word 'classdef'. In one directory the extension that stands\n"
        "last in --ext is preferred (default: v,p).\n"
        "Example: what defines Shape and geo.Circle\n"
        "  vpath --path /w/lib:/w/tools class Shape geo.Circle");
    return {command, [classNames](Context& context) { return RunClass(*classNames, context); }};
}
