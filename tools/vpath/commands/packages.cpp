// vpath packages: the package directories of the path.
#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "loading/inner_dirs.h"
#include "loading/path_names.h"

namespace {

ExitStatus RunPackages(Context& context) {
    vpDir dir = NextDirOrPackage(vpGetNullDir(context.loaded().path));
    for (; vpGetDirType(dir) != vpDirTypeNone; dir = NextDirOrPackage(dir)) {
        if (vpGetDirType(dir) != vpDirTypePackage) continue;
        context.output().print(Record("package")
                                   .column("name", DottedName(dir), Style::kName)
                                   .column("directory", FullNameOf(dir), Style::kDirectory));
    }
    return kExitFound;
}

}  // namespace

Command AddPackagesCommand(CLI::App& app) {
    CLI::App* packages = app.add_subcommand("packages", "Package directories");
    packages->fallthrough();
    packages->footer(
        "Prints the package and its directory, a tab between them, in path order; a\n"
        "package before those inside it. Their names are dotted: that of\n"
        "/w/lib/+geo/+flat is geo.flat.\n"
        "Example: the directories that make up the package geo\n"
        "  vpath --path /w/lib:/w/tools packages | grep -P '^geo[.\\t]'");
    return {packages, RunPackages};
}
