#include "commands/query.h"

#include <climits>

#include <CLI/CLI.hpp>

#include "loading/path_names.h"
#include "options/not_empty.h"
#include "output/exit_status.h"

namespace {

std::string FirstOf(const Search& search) {
    char file[kNameRoom];
    return vpFindNextFile(search.get(), nullptr, file) == 0 ? "" : FullFileName(file);
}

}  // namespace

void AddFromOptions(CLI::App& command, FromOptions& options) {
    CLI::Option* dir =
        command.add_option("--from", options.dir, "look from DIR: its private files come first");
    CLI::Option* file =
        command.add_option("--from-file", options.file, "look from the directory of FILE");
    dir->option_text("DIR")->excludes(file)->check(NotEmpty);
    file->option_text("FILE")->check(NotEmpty);
}

vpDir StartDirectory(const vpPath& path, const FromOptions& options) {
    const bool fromFile = options.dir.empty();
    if (fromFile && options.file.empty()) return vpGetNullDir(path);

    const std::string dirName = fromFile ? DirOfFile(options.file) : options.dir;
    const vpDir dir = FindDir(path, dirName);
    if (vpGetDirType(dir) == vpDirTypeNone) {
        throw CommandError((fromFile ? "--from-file " + options.file : "--from " + dirName) +
                           ": not a directory of the path; add it with --path");
    }
    return dir;
}

std::string Query::firstOfAnyExtension(const std::string& name) {
    return FirstOf(open(name, nullptr, vpCaseOfPath));
}

std::string Query::firstOfAnyCase(const std::string& name) { return FirstOf(searchAnyCase(name)); }

std::string Query::firstPrivate(const std::string& name) {
    const std::string inside = "private/" + name;
    if (inside.size() > PATH_MAX) return "";
    return FirstOf(
        Search(vpCreateAllSearch(path_, inside.c_str(), extensions_.data(), readCheck_)));
}

Search Query::open(const std::string& name, const char** extensions, vpCaseSensitivity caseRule) {
    if (vpGetDirType(from_) == vpDirTypeNone) {
        return Search(vpCreateDirnameVisibleSearchIterator(path_, /*dirName=*/nullptr, name.c_str(),
                                                           extensions, readCheck_, caseRule));
    }
    return Search(
        vpCreateVisibleSearchIterator(from_, name.c_str(), extensions, readCheck_, caseRule));
}
