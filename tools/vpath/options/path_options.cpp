#include "options/path_options.h"

#include <cstdlib>

#include <CLI/CLI.hpp>

#include "options/not_empty.h"

namespace {

// Empty pieces count: they stand for a name's own extension, or none.
void AddExtensions(const std::string& list, PathOptions& options) {
    options.anyExtension = false;
    size_t begin = 0;
    for (;;) {
        const size_t comma = list.find(',', begin);
        options.extensions.push_back(list.substr(begin, comma - begin));
        if (comma == std::string::npos) return;
        begin = comma + 1;
    }
}

}  // namespace

void AddPathOptions(CLI::App& app, PathOptions& options) {
    const auto addSource = [&](const char* name, PathSource::Kind kind, const char* help) {
        const auto store = [&options, kind](const std::string& text) {
            options.sources.push_back({kind, text});
        };
        // Run at each occurrence, not once at the end: so the sources keep their order.
        return app.add_option_function<std::string>(name, store, help)
            ->trigger_on_parse()
            ->group("Path, in the order written, each may be repeated (default: those of $VPATH)");
    };
    addSource("--path", PathSource::kList, "add the directories of LIST, as 'a:b:c'")
        ->type_name("LIST");
    addSource("--path-file", PathSource::kListFile, "add the lists that the lines of FILE hold")
        ->type_name("FILE");
    addSource("--recursive", PathSource::kTree, "add DIR and the directories below it")
        ->type_name("DIR");

    const auto addName = [&](const char* name, std::string& value, const char* type,
                             const char* help) {
        app.add_option(name, value, help)->type_name(type)->check(NotEmpty);
    };
    addName("--cwd", options.currentDirectory, "DIR", "its current directory");
    addName("--cache", options.cacheFile, "FILE", "answer from a cache");
    addName("--root", options.root, "DIR", "where its toolbox is");
    AddExtensionOption(app, options);
    app.add_flag("--ignore-case", options.ignoreCase, "ignore case of names");
    app.add_flag("--stats", options.stats, "what the load cost");
}

void AddExtensionOption(CLI::App& app, PathOptions& options) {
    app.add_option_function<std::string>(
           "--ext", [&options](const std::string& list) { AddExtensions(list, options); },
           "extensions, as 'v,p'")
        ->trigger_on_parse()
        ->type_name("LIST");
}

void UseDefaultPath(PathOptions& options) {
    const char* list = std::getenv("VPATH");
    if (!options.sources.empty() || list == nullptr || *list == '\0') return;
    options.sources.push_back({PathSource::kList, list});
    options.sourcesAreDefault = true;
}
