// vpath dirs: the directories of the path, in order.
#include <cstddef>
#include <string_view>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/dir_entries.h"
#include "loading/path_names.h"

namespace {

struct Counts {
    size_t files = 0;
    size_t packages = 0;
    size_t classes = 0;
    size_t plain = 0;
    bool hasPrivate = false;
};

Counts CountsOf(const vpDir& dir, const ExtensionArray& extensions) {
    Counts counts;
    ForEachEntry(dir, extensions, [&](std::string_view kind, const std::string&) {
        if (kind == "file") ++counts.files;
        if (kind == "package") ++counts.packages;
        if (kind == "class") ++counts.classes;
        if (kind == "directory") ++counts.plain;
        if (kind == "private") counts.hasPrivate = true;
    });
    return counts;
}

ExitStatus RunDirs(Context& context) {
    int position = 0;
    vpDir dir = vpGetNullDir(context.loaded().path);
    while (vpGetDirType(dir = vpGetNextPathDir(dir)) != vpDirTypeNone) {
        // An empty slot is passed over and keeps its place.
        if (position == 0 && vpGetDirType(dir) != vpDirTypeCurrent) ++position;
        const Counts counts = CountsOf(dir, context.options.extensionArray());
        context.output().print(
            Record("directory")
                .column("position", position++)
                .column("kind", KindOf(dir))
                .column("files", counts.files)
                .column("special", counts.packages + counts.classes + (counts.hasPrivate ? 1 : 0))
                .column("directory", FullNameOf(dir), Style::kDirectory)
                .field("packages", counts.packages)
                .field("classes", counts.classes)
                .field("private", counts.hasPrivate)
                .field("subdirectories", counts.plain)
                .mark("relative", !vpIsAbsoluteDir(dir))
                .mark("frozen", vpIsFrozen(dir)));
    }
    return kExitFound;
}

}  // namespace

Command AddDirsCommand(CLI::App& app) {
    CLI::App* dirs = app.add_subcommand("dirs", "The path's directories");
    dirs->fallthrough();
    dirs->footer(
        "Prints the position (0: the current directory), the kind, the number of files\n"
        "(with --ext those that count), of special directories in it (private, class and\n"
        "package), its name; then \"relative\" when it was added by a relative name and\n"
        "\"frozen\" when nobody looks for changes in it. Tabs between them.\n"
        "Example: the directories that add nothing\n"
        "  vpath --path /w/lib:/w/tools --ext v,p dirs | awk '$3 + $4 == 0'");
    return {dirs, RunDirs};
}
