// vpath which: the files that a name stands for, in order of precedence.
#include <climits>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "extension_array.h"
#include "name_arguments.h"
#include "open_search.h"
#include "path_names.h"

namespace {

struct WhichOptions {
    std::vector<std::string> names;
    bool all = false;
    bool verify = false;
    std::string fromDir;
    std::string fromFile;
};

// How every name is asked for.
class Query {
  public:
    Query(const vpPath& path, const vpDir& from, vpReadCheck readCheck,
          const ExtensionArray& extensions)
        : path_(path), from_(from), readCheck_(readCheck), extensions_(extensions) {}

    bool filtersExtensions() const { return !extensions_.isAny(); }

    Search search(const std::string& name) { return open(name, extensions_.data(), vpCaseOfPath); }

    // First matches under looser rules, "" for none.
    std::string firstOfAnyExtension(const std::string& name) {
        return first(open(name, nullptr, vpCaseOfPath));
    }
    std::string firstOfAnyCase(const std::string& name) {
        return first(open(name, extensions_.data(), vpCaseInsensitive));
    }
    std::string firstPrivate(const std::string& name) {
        const std::string inside = "private/" + name;
        if (inside.size() > PATH_MAX) return "";
        return first(
            Search(vpCreateAllSearch(path_, inside.c_str(), extensions_.data(), readCheck_)));
    }

  private:
    Search open(const std::string& name, const char** extensions, vpCaseSensitivity caseRule) {
        if (vpGetDirType(from_) == vpDirTypeNone) {
            return Search(vpCreateDirnameVisibleSearchIterator(
                path_, /*dirName=*/nullptr, name.c_str(), extensions, readCheck_, caseRule));
        }
        return Search(
            vpCreateVisibleSearchIterator(from_, name.c_str(), extensions, readCheck_, caseRule));
    }

    static std::string first(const Search& search) {
        char file[kNameRoom];
        return vpFindNextFile(search.get(), nullptr, file) == 0 ? "" : FullFileName(file);
    }

    const vpPath path_;
    const vpDir from_;  // null: nowhere in particular
    const vpReadCheck readCheck_;
    ExtensionArray extensions_;
};

std::string DirectoryOfFile(const std::string& fileName) {
    const size_t slash = fileName.rfind('/');
    if (slash == std::string::npos) return ".";
    return fileName.substr(0, slash == 0 ? 1 : slash);
}

// The directory from which to look; the null directory when none is given.
vpDir StartDirectory(const vpPath& path, const WhichOptions& options) {
    const bool fromFile = options.fromDir.empty();
    if (fromFile && options.fromFile.empty()) return vpGetNullDir(path);

    const std::string dirName = fromFile ? DirectoryOfFile(options.fromFile) : options.fromDir;
    const vpDir dir = FindDir(path, dirName);
    if (vpGetDirType(dir) == vpDirTypeNone) {
        throw CommandError((fromFile ? "--from-file " + options.fromFile : "--from " + dirName) +
                           ": not a directory of the path; add it with --path");
    }
    return dir;
}

// Why a name was not found, as far as a looser question tells, and what would find it.
std::string Explain(const std::string& name, Query& query, const Context& context) {
    std::string found;
    if (query.filtersExtensions() && !(found = query.firstOfAnyExtension(name)).empty()) {
        return found + " has another extension; list it in --ext";
    }
    if (!context.options.ignoreCase && !(found = query.firstOfAnyCase(name)).empty()) {
        return found + " differs in case; use --ignore-case";
    }
    if (!(found = query.firstPrivate(name)).empty()) {
        return found + " is private; ask --from its directory";
    }
    if (context.options.sources.empty()) {
        return "only the current directory was searched; add others with --path";
    }
    return "add its directory with --path";
}

// Prints the first match, or all; whether there was one.
bool Answer(const std::string& name, bool all, Query& query, Output& output) {
    const Search search = query.search(name);
    char file[kNameRoom];
    // The current directory may be on the path as well; a file is then found twice.
    std::unordered_set<std::string> printed;
    while (vpFindNextFile(search.get(), nullptr, file) != 0) {
        const auto [fullName, isNew] = printed.insert(FullFileName(file));
        if (isNew) {
            output.print(
                Record("match").field("name", name).column("file", *fullName, Style::kFile));
        }
        if (!all) break;
    }
    return !printed.empty();
}

ExitStatus RunWhich(const WhichOptions& options, Context& context) {
    CheckNameArguments(options.names, "NAME", "a file");
    const vpPath path = context.loaded().path;
    Query query(path, StartDirectory(path, options),
                options.verify ? vpReadCheckVerify : vpReadCheckSkip,
                context.options.extensionArray());
    Output& output = context.output();
    ExitStatus status = kExitFound;
    for (const std::string& name : options.names) {
        if (Answer(name, options.all, query, output)) continue;
        output.miss(name, "not found on the path", Explain(name, query, context));
        status = kExitNotFound;
    }
    return status;
}

}  // namespace

Command AddWhichCommand(CLI::App& app) {
    const auto options = std::make_shared<WhichOptions>();
    CLI::App* which = app.add_subcommand("which", "Files that names stand for");
    which->fallthrough();
    which->footer(
        "Example: where foo comes from for code in /w/lib, and what it hides\n"
        "  vpath --path /w/lib:/w/tools which -a --from /w/lib foo");
    AddNameArguments(*which, "NAME", options->names,
                     "file names; '+pkg/name', '@cls/name', 'private/name' too");
    which->add_flag("-a,--all", options->all, "print all matches, in order of precedence");
    which->add_flag("--verify", options->verify, "pass over files that cannot be read");
    CLI::Option* fromDir = which->add_option("--from", options->fromDir,
                                             "look from DIR: its private files come first");
    CLI::Option* fromFile =
        which->add_option("--from-file", options->fromFile, "look from the directory of FILE");
    fromDir->option_text("DIR")->excludes(fromFile);
    fromFile->option_text("FILE");
    return {which, [options](Context& context) { return RunWhich(*options, context); }};
}
