// vpath classes: the class directories of the path.
#include <memory>

#include <vpath/path.h>
#include <vpath/search.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "loading/inner_dirs.h"
#include "loading/path_names.h"

namespace {

void PrintClassesIn(const vpDir& dir, Output& output) {
    vpDir classDir = vpGetMethodDirs(dir, dir);
    for (; vpGetDirType(classDir) != vpDirTypeNone; classDir = vpGetMethodDirs(dir, classDir)) {
        output.print(Record("class")
                         .column("name", DottedName(classDir), Style::kName)
                         .column("directory", FullNameOf(classDir), Style::kDirectory));
    }
}

ExitStatus RunClasses(bool inPackages, Context& context) {
    const auto next = inPackages ? NextDirOrPackage : vpGetNextPathDir;
    vpDir dir = next(vpGetNullDir(context.loaded().path));
    for (; vpGetDirType(dir) != vpDirTypeNone; dir = next(dir))
        PrintClassesIn(dir, context.output());
    return kExitFound;
}

}  // namespace

Command AddClassesCommand(CLI::App& app) {
    const auto inPackages = std::make_shared<bool>(false);
    CLI::App* classes = app.add_subcommand("classes", "Class directories");
    classes->fallthrough();
    classes->footer(
        "Prints the class and its directory, a tab between them, in path order. A class\n"
        "in a package is called by its dotted name: that of /w/lib/+geo/@Circle is\n"
        "geo.Circle.\n"
        "Example: the classes that more than one directory adds to\n"
        "  vpath --path /w/lib:/w/tools classes -a | cut -f 1 | sort | uniq -d");
    classes->add_flag("-a,--all", *inPackages, "those in packages too, after those beside them");
    return {classes, [inPackages](Context& context) { return RunClasses(*inPackages, context); }};
}
