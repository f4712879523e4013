// vpath methods: the method files of a class.
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include <vpath/path.h>
#include <vpath/search.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/class_files.h"
#include "loading/inner_dirs.h"
#include "loading/open_search.h"
#include "loading/path_names.h"
#include "options/name_arguments.h"

namespace {

// Prints the methods of one class.
class MethodLister {
  public:
    MethodLister(const vpPath& path, const std::string& className, ExtensionArray extensions,
                 Output& output)
        : path_(path), className_(className), extensions_(extensions), output_(output) {}

    // All methods that have a file in `classDir` and were not printed yet.
    void printMethodsIn(const vpDir& classDir) {
        const Search files(
            vpCreateDirSearch(classDir, nullptr, extensions_.data(), vpReadCheckSkip));
        char file[kNameRoom];
        while (vpFindNextFile(files.get(), nullptr, file) != 0) {
            if (printed_.count(file) == 0) printMethod(StemOf(file));
        }
    }

  private:
    // Its files over all directories of the class, in order of precedence.
    void printMethod(const std::string& method) {
        // The final dot keeps a dot inside the name from being taken for an extension's.
        const std::string name = ClassDirName(className_) + "/" + method + ".";
        const Search files(
            vpCreateMethodSearch(path_, name.c_str(), extensions_.data(), vpReadCheckSkip));
        char file[kNameRoom];
        vpDir dir;
        bool hidden = false;
        while (vpFindNextFile(files.get(), &dir, file) != 0) {
            if (!IsAsDeepAs(dir, className_) || !printed_.insert(file).second) continue;
            output_.print(Record("method")
                              .field("class", className_)
                              .column("name", method, Style::kName)
                              .column("file", FullFileName(file), Style::kFile)
                              .mark("hidden", hidden)
                              .faint(hidden));
            hidden = true;
        }
    }

    const vpPath path_;
    const std::string className_;
    ExtensionArray extensions_;
    Output& output_;
    std::unordered_set<std::string> printed_;
};

ExitStatus RunMethods(const std::vector<std::string>& classNames, Context& context) {
    CheckNameArguments(classNames, "CLASS", "a class");
    const vpPath path = context.loaded().path;
    Output& output = context.output();
    ExitStatus status = kExitFound;
    for (const std::string& className : classNames) {
        const std::vector<vpDir> classDirs = ClassDirs(path, className);
        MethodLister lister(path, className, context.options.extensionArray(), output);
        for (const vpDir& classDir : classDirs) lister.printMethodsIn(classDir);
        if (!classDirs.empty()) continue;
        if (const auto file = ClassFile(path, className, context.options)) {
            output.miss(className, "has no class directory", *file + " declares it");
            continue;
        }
        const std::vector<vpDir> others = ClassDirs(path, className, vpCaseInsensitive);
        output.miss(className, "no class directory on the path",
                    others.empty() ? "add the directory that holds it with --path"
                                   : FullNameOf(others[0]) + " differs in case; use --ignore-case");
        status = kExitNotFound;
    }
    return status;
}

}  // namespace

Command AddMethodsCommand(CLI::App& app) {
    const auto classNames = std::make_shared<std::vector<std::string>>();
    CLI::App* methods = app.add_subcommand("methods", "Method files of a class");
    methods->fallthrough();
    AddNameArguments(*methods, "CLASS", *classNames,
                     "names of classes, as 'Shape' or 'geo.Circle'");
    methods->footer(
        "Prints the method, its file and, when a file before it counts instead, \"hidden\";\n"
        "tabs between them. The files of one method follow each other in order of\n"
        "precedence, over all directories of the class.\n"
        "Example: the methods of Shape that count\n"
        "  vpath --path /w/lib:/w/tools --ext v,p methods Shape | grep -v 'hidden$'");
    return {methods, [classNames](Context& context) { return RunMethods(*classNames, context); }};
}
