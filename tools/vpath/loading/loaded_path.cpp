#include "loading/loaded_path.h"

#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <vector>

#include "loading/path_names.h"
#include "loading/toolbox_cache.h"
#include "loading/tree_adder.h"
#include "output/exit_status.h"
#include "output/progress.h"

namespace {

size_t HeapBytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::string WithReason(const std::string& subject) { return subject + ": " + std::strerror(errno); }

// Adds each line as a path list of its own. Empty lines and those that begin with '#' say nothing.
void AddListFile(const vpPath& path, const std::string& fileName, std::ifstream& file) {
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.find('\0') != std::string::npos) {
            throw CommandError("--path-file " + fileName + ": NUL byte in line " +
                               std::to_string(number) + "; give a text file of directory names");
        }
        if (line.empty() || line[0] == '#') continue;
        vpAddDirsString(path, line.c_str(), vpAddAtEnd);
    }
    if (file.bad()) throw CommandError(WithReason("--path-file " + fileName));
}

std::ifstream OpenListFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw CommandError(WithReason("--path-file " + name) + "; name a readable file");
    struct stat status;
    if (stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        throw CommandError("--path-file " + name + ": a directory; to add it, use --path");
    }
    return file;
}

std::string TreeRoot(const std::string& name) {
    const auto root = FullDirName(name);
    if (!root) {
        throw CommandError("--recursive " + name + ": no such directory; name one that exists");
    }
    return *root;
}

// The directories that the options name; 0 when only reading tells.
size_t NamedDirectories(const PathOptions& options) {
    size_t count = 0;
    for (const PathSource& source : options.sources) {
        if (source.kind != PathSource::kList) return 0;
        count +=
            1 + static_cast<size_t>(std::count_if(source.text.begin(), source.text.end(),
                                                  [](char c) { return c == ':' || c == ';'; }));
    }
    return count;
}

void AddSources(const vpPath& path, const PathOptions& options,
                std::vector<std::ifstream>& listFiles) {
    Progress progress;
    progress.expect(NamedDirectories(options), [&path] {
        return static_cast<size_t>(vpGetNumPathDirs(path)) - 1;  // without the current directory
    });
    TreeAdder trees(path, options.ignoreCase);
    const ListingObservation observation(
        [&](const char* dirName, const char* names, const unsigned int* words) {
            progress.countDirectory();
            trees.onListing(dirName, names, words);
        });
    auto listFile = listFiles.begin();
    for (const PathSource& source : options.sources) {
        switch (source.kind) {
            case PathSource::kList:
                vpAddDirsString(path, source.text.c_str(), vpAddAtEnd);
                break;
            case PathSource::kListFile:
                AddListFile(path, source.text, *listFile++);
                break;
            case PathSource::kTree:
                trees.add(TreeRoot(source.text));
                break;
        }
    }
}

vpPath CreatePath(const char* name, const char* frozen, const PathOptions& options) {
    return vpCreatePathWithPreFrozen(0, name, frozen,
                                     options.ignoreCase ? vpCaseInsensitive : vpCaseSensitive,
                                     /*suppressChangeNotify=*/true);
}

}  // namespace

void AddTree(const vpPath& path, const std::string& dirName, bool ignoreCase) {
    PathOptions options;
    options.sources = {{PathSource::kTree, dirName}};
    options.ignoreCase = ignoreCase;
    std::vector<std::ifstream> noFiles;
    AddSources(path, options, noFiles);
}

LoadedPath LoadPath(const PathOptions& options, const char* frozen) {
    // These names are relative to where the command was started, all others to --cwd.
    std::vector<std::ifstream> listFiles;
    for (const PathSource& source : options.sources) {
        if (source.kind == PathSource::kListFile) listFiles.push_back(OpenListFile(source.text));
    }
    const bool fromCache = !options.cacheFile.empty();
    if (fromCache && options.root.empty()) {
        throw CommandError("--cache without --root; name the installation that it was made for");
    }
    Toolbox toolbox;
    std::string cacheFile;
    if (fromCache) {
        toolbox = ToolboxOf(options.root);
        cacheFile = FullNameOfCacheFile(options.cacheFile);
    }
    if (!options.currentDirectory.empty() && chdir(options.currentDirectory.c_str()) != 0) {
        throw CommandError(WithReason("--cwd " + options.currentDirectory) +
                           "; name a directory that can be entered");
    }

    InstallHost();
    const auto start = std::chrono::steady_clock::now();
    const size_t bytesBefore = HeapBytesInUse();
    const vpPath path = CreatePath("vpath", frozen, options);
    if (fromCache) UseCache(path, "--cache " + options.cacheFile, cacheFile, toolbox);
    AddSources(path, options, listFiles);

    const size_t bytesAfter = HeapBytesInUse();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {path, elapsed.count(), bytesAfter > bytesBefore ? bytesAfter - bytesBefore : 0,
            HostCalls(), fromCache};
}

vpPath LoadOtherPath(const std::string& list, const PathOptions& options) {
    static int count = 0;
    const std::string name = "other " + std::to_string(++count);
    const vpPath path = CreatePath(name.c_str(), /*frozen=*/nullptr, options);
    Progress progress;
    const ListingObservation observation(
        [&](const char*, const char*, const unsigned int*) { progress.countDirectory(); });
    vpAddDirsString(path, list.c_str(), vpAddAtEnd);
    return path;
}
