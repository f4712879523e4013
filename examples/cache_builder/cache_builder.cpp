// Writes the toolbox cache of an installation, then starts as the environment does and shows that
// it needs the file system no more for what the toolboxes hold.
//
//     cache_builder ROOT CACHE      ROOT/toolbox holds the toolboxes, CACHE is the file to write
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <vpath/path.h>
#include <vpath/search.h>
#include <vpath_posix/posix_host.h>

namespace {

int g_listings = 0;

// The ready-made callback, counted.
char* List(vpPath path, const char* name, unsigned int** words) {
    ++g_listings;
    return vpPosixListDirectory(path, name, words);
}

// Every directory beneath `root` that can stand on a path: the library itself reads those that are
// private, class or package directories with the directory that holds them.
std::vector<std::string> ToolboxDirectories(const std::string& root) {
    namespace fs = std::filesystem;
    std::vector<std::string> found;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(root, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!entry->is_directory(error)) continue;
        if (name[0] == '@' || name[0] == '+' || vpIsPrivateDirName(name.c_str())) {
            entry.disable_recursion_pending();
        } else {
            found.push_back(entry->path());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

// Toolbox directories are frozen: they are read once, and never tested for changes. Only such are
// written to a cache.
vpPath CreatePath(const char* name, const std::string& toolboxRoot) {
    return vpCreatePathWithPreFrozen(0, name, toolboxRoot.c_str(), vpCaseDefault, false);
}

void Add(const vpPath& path, const std::vector<std::string>& directories) {
    std::vector<const char*> names;
    names.reserve(directories.size());
    for (const std::string& name : directories) names.push_back(name.c_str());
    vpAddDirsArray(path, names.data(), static_cast<int>(names.size()), vpAddAtEnd);
}

// Files of each directory, as the path answers; the same with a cache and without.
int CountFiles(const vpPath& path) {
    vpSearch* search = vpCreatePathOnlySearch(path, vpPath(), nullptr, nullptr, vpReadCheckSkip);
    int files = 0;
    while (vpFindNextFile(search, nullptr, nullptr) != 0) ++files;
    vpDestroySearch(&search);
    return files;
}

void Report(const char* how, const vpPath& path) {
    std::printf("%s: %d directories, %d files; %d listings asked of the file system\n", how,
                vpGetNumPathDirs(path) - 1, CountFiles(path), g_listings);
    g_listings = 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: cache_builder ROOT CACHE\n");
        return 2;
    }
    const std::string root = std::filesystem::absolute(argv[1]);
    const std::string toolboxRoot = root + "/toolbox";
    const char* cache = argv[2];
    vpSetDefaultIOFcns(List, vpPosixAccessibility, vpPosixIsReadable, vpPosixIsDirectory,
                       vpPosixModificationTime);
    const std::vector<std::string> directories = ToolboxDirectories(toolboxRoot);

    vpPath path = CreatePath("builder", toolboxRoot);
    vpHideCWD(path, true);  // what it holds has no place in what is counted
    g_listings = 0;
    Add(path, directories);
    Report("from the file system", path);
    const bool written = vpWritePathToCacheFile(path, cache);
    vpRemovePath(path);
    if (!written) {
        std::fprintf(stderr, "cache_builder: %s could not be written\n", cache);
        return 1;
    }

    path = CreatePath("main", toolboxRoot);
    vpHideCWD(path, true);
    vpUseToolboxCache(path, cache, root.c_str(), /*verbose=*/false);
    if (!vpInToolboxCacheMode()) return 1;  // the console has said why
    g_listings = 0;
    Add(path, directories);
    Report("from the cache", path);
    vpRevertFromToolboxCache(path);
    vpRemovePath(path);
    return 0;
}
