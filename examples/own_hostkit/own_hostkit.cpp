// A host that brings its own utility calls (hostkit.c) and sees that the library uses them.
#include <cstdio>
#include <cstring>

#include <hostkit/hostkit.h>
#include <vpath/search.h>

#include "blocks.h"

namespace {

// One directory, which holds one file; the library frees the block with the hkFree of hostkit.c.
char* List(vpPath, const char* name, unsigned int**) {
    static const char kNames[] = "plot.v\0";
    if (std::strcmp(name, "/lib") != 0) return nullptr;
    return static_cast<char*>(std::memcpy(hkMalloc(sizeof kNames), kNames, sizeof kNames));
}
vpDirAccessibility Accessibility(vpPath, const char*) { return vpDirAccessible; }
bool IsReadable(const char*) { return true; }
bool IsDirectory(vpPath, const char* name) { return std::strcmp(name, "/lib") == 0; }
long ModificationTime(vpPath, const char*) { return 1000; }

}  // namespace

int main() {
    vpSetDefaultIOFcns(List, Accessibility, IsReadable, IsDirectory, ModificationTime);
    {
        vpPath path = vpCreatePath(0, "main");
        vpAddDir(path, "/lib", vpAddAtEnd);
        char file[8192];
        vpFindFirstFileInAll(path, "plot", nullptr, vpReadCheckVerify, nullptr, file);
        std::printf("plot: %s\n", file);
        std::printf("memory comes from the host: %s\n", blocks_taken > 0 ? "yes" : "no");
        vpRemovePath(path);
        vpGetNumPathDirs(path);  // the path is gone, which the library says on the console
    }
    // The last handle has let go.
    std::printf("blocks not given back: %ld\n", blocks_taken - blocks_given_back);
}
