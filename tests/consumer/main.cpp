// A host of its own, in memory: what a program outside the source tree writes to use the library.
// It also puts its own hkPrintf and hkMalloc in place of the bundled ones.
#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <hostkit/hostkit.h>
#include <vpath/path.h>
#include <vpath/pathname.h>
#include <vpath/search.h>

namespace {

const std::map<std::string, std::vector<std::string>> kTree = {
    {"/lib/a", {"foo.v", "bar.v", "@Shape"}},
    {"/lib/a/@Shape", {"Shape.v", "area.v"}},
    {"/lib/b", {"private", "foo.v"}},
    {"/lib/b/private", {"foo.v"}},
};
int allocations = 0;

char* List(vpPath, const char* name, unsigned int**) {
    const auto dir = kTree.find(name);
    if (dir == kTree.end()) return nullptr;
    std::string names;
    for (const std::string& entry : dir->second) names.append(entry).push_back('\0');
    char* block = static_cast<char*>(hkMalloc(names.size() + 1));
    std::memcpy(block, names.c_str(), names.size() + 1);
    return block;
}

vpDirAccessibility Access(vpPath, const char* name) {
    return std::strcmp(name, "/lib/missing") == 0 ? vpDirNonexistent : vpDirAccessible;
}

bool IsReadable(const char*) { return true; }
bool IsDirectory(vpPath, const char* name) { return kTree.count(name) != 0; }
long ModificationTime(vpPath, const char*) { return 1000; }
void OnError(const char* text) { std::printf("error: %s\n", text); }
void OnWarning(const char* text) { std::printf("warning: %s\n", text); }
void OnInfo(const char* text) { std::printf("info: %s\n", text); }

void Search(const vpPath& path, const char* name) {
    const char* extensions[] = {"p", "v", nullptr};
    vpSearch* search = vpCreateAllSearch(path, name, extensions, vpReadCheckVerify);
    vpDir dir;
    char file[8192];
    while (const unsigned int position = vpFindNextFile(search, &dir, file)) {
        std::printf("%s: %s (extension %u)\n", name, file, position);
    }
    vpDestroySearch(&search);
}

}  // namespace

int hkPrintf(const char* format, ...) {
    std::fputs("console: ", stdout);
    va_list arguments;
    va_start(arguments, format);
    const int written = std::vprintf(format, arguments);
    va_end(arguments);
    return written;
}

void* hkMalloc(size_t size) {
    // Hands on to the bundled one, so that hkFree and hkRealloc need no counterpart here.
    using Malloc = void* (*)(size_t);
    static const auto bundled = reinterpret_cast<Malloc>(dlsym(RTLD_NEXT, "hkMalloc"));
    ++allocations;
    return bundled(size);
}

int main() {
    vpSetMessageFcns(OnError, OnWarning, OnInfo);
    vpSetDefaultIOFcns(List, Access, IsReadable, IsDirectory, ModificationTime);
    vpPath path = vpCreatePath(0, "main");
    vpAddDirsString(path, "/lib/a:/lib/missing:/lib/b/", vpAddAtEnd);
    Search(path, "foo");
    Search(path, "@Shape/area");

    // Everything that the library keeps comes from this program's hkMalloc, and so does what the
    // bundled utility library itself allocates.
    allocations = 0;
    vpAddDir(path, "/lib/c", vpAddAtEnd);
    std::printf("%s\n", allocations > 0 ? "own hkMalloc" : "bundled hkMalloc");
    allocations = 0;
    hkFree(hkStrdup("text"));
    std::printf("%s\n", allocations > 0 ? "own hkMalloc" : "bundled hkMalloc");

    vpRemovePath(path);
    vpGetNumPathDirs(path);
    std::printf("version %s\n", libvpath_version);
    return 0;
}
