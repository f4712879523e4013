// vpath shadows: names found in more than one place.
#include <memory>
#include <string>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/names_on_path.h"
#include "commands/shadow_finder.h"
#include "options/name_arguments.h"

namespace {

struct ShadowsOptions {
    std::vector<std::string> names;
    bool compare = false;
};

// The number of places; they are printed when there are more than one.
size_t Answer(const std::vector<ShadowPlace>& places, Output& output) {
    if (places.size() < 2) return places.size();
    for (const ShadowPlace& place : places) {
        output.print(Record("shadow")
                         .column("name", place.name, Style::kName)
                         .column("file", place.file, Style::kFile)
                         .column("grade", place.grade, Style::kNote)
                         .faint(&place != &places[0]));
    }
    return places.size();
}

ExitStatus RunShadows(const ShadowsOptions& options, Context& context) {
    CheckNameArguments(options.names, "NAME", "a file");
    const vpPath path = context.loaded().path;
    const ShadowFinder finder(path, context.options, options.compare);
    Output& output = context.output();
    ExitStatus status = kExitFound;
    for (const std::string& name : options.names) {
        const size_t places = Answer(finder.placesOf(name), output);
        if (places == 0) {
            output.miss(name, "not found on the path", "'vpath which' says more");
        }
        if (places != 1) status = kExitNotFound;
    }
    if (!options.names.empty()) return status;
    for (const NameOnPath& name :
         NamesOnPath(path, context.options.extensionArray(), /*ignoreCase=*/true)) {
        if (name.places > 1 && Answer(finder.placesOf(name.name), output) > 1)
            status = kExitNotFound;
    }
    return status;
}

}  // namespace

Command AddShadowsCommand(CLI::App& app) {
    const auto options = std::make_shared<ShadowsOptions>();
    CLI::App* shadows = app.add_subcommand("shadows", "Names in several places");
    shadows->fallthrough();
    AddNameArguments(*shadows, "NAME", options->names,
                     "'foo', '+pkg/foo', '@cls/foo'; if none is given, all")
        ->required(false);
    shadows->add_flag("--compare", options->compare, "compare the contents of the files");
    shadows->footer(
        "Prints each name that is found in several places: the name, the place and what\n"
        "that is, tabs between them. The first \"wins\"; others are \"hidden\" (--compare:\n"
        "\"same content\", \"different content\" or \"unreadable\"), or have a name that only\n"
        "\"differs in case\", or are a \"file against class\": one of the two is a class\n"
        "directory or in it. Exit status: 1 when there are any.\n"
        "Example: the sources that hide others which are not the same\n"
        "  vpath --path /w/lib:/w/tools --ext v,p shadows --compare | grep different");
    return {shadows, [options](Context& context) { return RunShadows(*options, context); }};
}
