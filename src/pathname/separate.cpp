// Telling names apart and taking them apart at their separators.
#include <cstring>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>

#include "pathname/components.h"
#include "pathname/text.h"

bool vpIsAbsolutePath(const char* name) {
    return name != nullptr && (*name == '/' || *name == '~');
}

bool vpIsWinPathRemote(const char*) { return false; }

bool vpIsPathNameSep(const char*, const char* p) { return p != nullptr && *p == '/'; }

char* vpExtractSubdir(char* dst, const char* dirName) {
    return dst == nullptr ? nullptr : WriteText(dst, LastComponent(TextOf(dirName)));
}

char* vpSeparatePathName(char* path, char* dirOut) {
    if (path == nullptr) {
        if (dirOut != nullptr) *dirOut = '\0';
        return nullptr;
    }
    int separator = -1;
    if (!hk_is_7bit(path)) {
        separator = vpath_pathname_index(path);
    } else if (const char* last = std::strrchr(path, '/')) {
        separator = static_cast<int>(last - path);
    }
    if (separator < 0) {
        if (dirOut != nullptr && dirOut != path) *dirOut = '\0';
        return path;
    }
    const auto dirLength = static_cast<size_t>(separator == 0 ? 1 : separator);
    if (dirOut != nullptr) WriteText(dirOut, {path, dirLength});
    return path + separator + 1;
}
