// vpath diff: the names that mean another file on another path.
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include <hostkit/hostkit.h>
#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/names_on_path.h"

namespace {

struct DiffOptions {
    std::string before;
    std::string after;
};

class Differ {
  public:
    Differ(const vpPath& before, const vpPath& after, Context& context)
        : before_(before),
          after_(after),
          extensions_(context.options.extensionArray()),
          output_(context.output()) {}

    // Whether the name means different files.
    bool answer(const std::string& name) {
        const auto before = winner(before_, name);
        const auto after = winner(after_, name);
        if (before == after) return false;
        output_.print(Record("difference")
                          .column("change",
                                  !before  ? "added"
                                  : !after ? "removed"
                                           : "changed",
                                  Style::kNote)
                          .column("name", name, Style::kName)
                          .column("before", before, Style::kFile)
                          .column("after", after, Style::kFile));
        return true;
    }

  private:
    std::optional<std::string> winner(const vpPath& path, const std::string& name) const {
        const auto files = FilesOf(path, name, extensions_, vpCaseOfPath, /*limit=*/1);
        return files.empty() ? std::nullopt : std::optional(files[0]);
    }

    const vpPath before_;
    const vpPath after_;
    const ExtensionArray extensions_;
    Output& output_;
};

// Paths beside that of the command go when they have been compared.
struct Loaded {
    vpPath path;
    bool isOther;  // beside the path of the command

    Loaded(const vpPath& loaded, bool other) : path(loaded), isOther(other) {}
    ~Loaded() {
        if (isOther) vpRemovePath(path);
    }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;
};

// The first of a process is that of the command; a shell has one already.
Loaded Load(const std::string& list, Context& context) {
    if (context.isLoaded()) return {LoadOtherPath(list, context.options), true};
    context.options.sources = {{PathSource::kList, list}};
    return {context.loaded().path, false};
}

ExitStatus RunDiff(const DiffOptions& options, Context& context) {
    const Loaded before = Load(options.before, context);
    const Loaded after = Load(options.after, context);
    Differ differ(before.path, after.path, context);
    ExitStatus status = kExitFound;
    std::unordered_set<std::string> answered;
    for (const vpPath& path : {before.path, after.path}) {
        for (const NameOnPath& name :
             NamesOnPath(path, context.options.extensionArray(), context.options.ignoreCase)) {
            std::string key = name.name;
            if (context.options.ignoreCase) hkLowerCase(key.data());
            if (!answered.insert(std::move(key)).second) continue;
            if (differ.answer(name.name)) status = kExitNotFound;
        }
    }
    return status;
}

}  // namespace

Command AddDiffCommand(CLI::App& app) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App* diff = app.add_subcommand("diff", "Names two paths differ in");
    diff->fallthrough();
    diff->add_option("PATH1", options->before, "directories, as 'a:b:c'")
        ->required()
        ->option_text(" ");
    diff->add_option("PATH2", options->after, "those of another path, in its place")
        ->required()
        ->option_text(" ");
    diff->footer(
        "Prints each name that means another file on PATH2: \"added\", \"removed\" or\n"
        "\"changed\", the name, its file on PATH1 and that on PATH2, \"-\" for none; tabs\n"
        "between them. --path and the other options that fill a path do not go with it.\n"
        "Exit status: 1 when there are any.\n"
        "Example: what the new release of a library takes over\n"
        "  vpath --ext v,p diff /w/lib:/w/tools /w/new:/w/lib:/w/tools | grep '^changed'");
    return {diff, [options, &app](Context& context) {
                for (const char* source : {"--path", "--path-file", "--recursive", "--cache"}) {
                    const CLI::Option* option = app.get_option_no_throw(source);
                    if (option == nullptr || option->count() == 0) continue;
                    throw CommandError(std::string(source) +
                                       " beside diff; PATH1 and PATH2 say it all");
                }
                return RunDiff(*options, context);
            }};
}
