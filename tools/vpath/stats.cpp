#include "stats.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <unordered_set>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>
#include <vpath/search.h>

#include "path_names.h"

namespace {

struct Contents {
    size_t pathDirectories = 0;
    size_t specialDirectories = 0;  // private, class and package directories
    size_t files = 0;
    size_t names = 0;
};

// A file's name as searches look it up.
std::string SearchName(std::string_view fullName) {
    std::string name(fullName.substr(fullName.rfind('/') + 1));
    const int extension = vpFindFileExt(name.c_str());
    if (extension > 0) name.resize(static_cast<size_t>(extension));
    hkLowerCase(name.data());
    return name;
}

Contents ContentsOf(const vpPath& path) {
    Contents contents;
    vpDir dir = vpGetNullDir(path);
    while (vpGetDirType(dir = vpGetNextPathDir(dir)) != vpDirTypeNone) ++contents.pathDirectories;

    vpSearch* search = vpCreateAllSearch(path, nullptr, nullptr, vpReadCheckSkip);
    char fullName[kNameRoom];
    std::unordered_set<std::string> names;
    while (vpFindNextFile(search, nullptr, fullName) != 0) {
        ++contents.files;
        names.insert(SearchName(fullName));
    }
    contents.names = names.size();
    vpDestroySearch(&search);

    search = vpCreateAllSearch(path, nullptr, nullptr, vpReadCheckSkip);
    while (vpFindNextDir(search, &dir) != 0) {
        if (vpGetDirType(dir) >= vpDirTypePackage) ++contents.specialDirectories;
    }
    vpDestroySearch(&search);
    return contents;
}

using Number = unsigned long long;

void PrintCalls(const char* when, const CallCounts& now, const CallCounts& before) {
    std::fprintf(stderr,
                 "callbacks %s: %llu listing, %llu accessibility, %llu readability, "
                 "%llu is-directory, %llu time stamp, %llu change-directory\n",
                 when, static_cast<Number>(now.listings - before.listings),
                 static_cast<Number>(now.accessibility - before.accessibility),
                 static_cast<Number>(now.readability - before.readability),
                 static_cast<Number>(now.isDirectory - before.isDirectory),
                 static_cast<Number>(now.timeStamps - before.timeStamps),
                 static_cast<Number>(now.changeDirectory - before.changeDirectory));
}

}  // namespace

void PrintStats(const LoadedPath& loaded) {
    const CallCounts calls = HostCalls();  // counting what the path holds may ask more
    const Contents contents = ContentsOf(loaded.path);
    std::fprintf(stderr, "directories: %zu on the path, %zu special ones inside them\n",
                 contents.pathDirectories, contents.specialDirectories);
    std::fprintf(stderr, "files: %zu\n", contents.files);
    std::fprintf(stderr, "distinct names: %zu\n", contents.names);
    PrintCalls("to load", loaded.loadCalls, {});
    PrintCalls("to answer", calls, loaded.loadCalls);
    std::fprintf(stderr, "load time: %.1f ms\n", loaded.loadSeconds * 1000);
    std::fprintf(stderr, "bytes held: %zu\n", loaded.loadedBytes);
}
