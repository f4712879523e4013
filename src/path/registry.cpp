#include "path/registry.h"

#include <memory>
#include <string_view>
#include <unordered_map>

#include <vpath/path.h>

#include "base/guard.h"
#include "base/reporting.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"

namespace {

struct HashPathName {
    size_t operator()(std::string_view name) const { return hk_hash_string(0, name.data()); }
};

// Keys lie in the paths themselves. There is no registry while there is no path, so that a host
// that removed its paths gets all memory back.
struct Registry : HkAllocated {
    std::unordered_map<std::string_view, PathMgr*, HashPathName, std::equal_to<>,
                       HkAllocator<std::pair<const std::string_view, PathMgr*>>>
        paths;
};
Registry* registry = nullptr;

const char* currentPathname = nullptr;

const char* NameOrEmpty(const char* name) { return name != nullptr ? name : ""; }

void DropEmptyRegistry() {
    if (!registry->paths.empty()) return;
    delete registry;
    registry = nullptr;
}

void Register(PathMgr& path) {
    if (registry == nullptr) registry = new Registry;
    try {
        registry->paths[path.name.get()] = &path;
    } catch (...) {
        DropEmptyRegistry();
        throw;
    }
}

void Unregister(const PathMgr& path) {
    if (registry == nullptr) return;
    const auto entry = registry->paths.find(path.name.get());
    if (entry != registry->paths.end() && entry->second == &path) registry->paths.erase(entry);
    DropEmptyRegistry();
}

vpPath CreatePath(const char* name, const char* preFrozen, vpCaseSensitivity caseRule,
                  bool suppressChangeNotify) {
    if (!DefaultIOFunctionsComplete()) {
        ReportError("Cannot construct a Path until all default I/O functions have been set");
        return {};
    }
    if (FindPath(name) != nullptr) {
        ReportError("Duplicate path name %s specified, cannot construct path", NameOrEmpty(name));
        return {};
    }
    std::unique_ptr<PathMgr> made(
        new PathMgr({NameOrEmpty(name), preFrozen, caseRule != vpCaseInsensitive,
                     suppressChangeNotify, registry == nullptr}));
    Register(*made);
    PathMgr* const path = made.release();
    const vpPath handle(path);
    // A callback that throws leaves a path whose current-directory slot is empty or read in part.
    Guarded([path] { path->contents.setCurrent(nullptr); });
    return path->valid ? handle : vpPath();
}

}  // namespace

PathMgr* FindPath(const char* name) {
    if (registry == nullptr) return nullptr;
    const auto entry = registry->paths.find(NameOrEmpty(name));
    return entry != registry->paths.end() ? entry->second : nullptr;
}

HkVector<PathMgr*> RegisteredPaths() {
    HkVector<PathMgr*> all;
    if (registry == nullptr) return all;
    all.reserve(registry->paths.size());
    for (const auto& entry : registry->paths) all.push_back(entry.second);
    return all;
}

void RemovePath(PathMgr& path) {
    if (!path.valid || path.removing) return;
    const vpPath whileRemoving(&path);
    path.removing = true;
    // The path goes whatever a listener does.
    Guarded([&path] { path.raiseEvent(vpEventPathRemoved); });
    path.valid = false;
    Unregister(path);
    path.name.reset();
    path.preFrozenRoot.reset();
    path.empty();
}

vpPath vpCreatePath(int unused, const char* name) {
    return vpCreatePathWithPreFrozen(unused, name, "", vpCaseDefault, false);
}

vpPath vpCreatePathWithPreFrozen(int, const char* name, const char* preFrozen,
                                 vpCaseSensitivity caseRule, bool suppressChangeNotify) {
    return Guarded(vpPath(),
                   [&] { return CreatePath(name, preFrozen, caseRule, suppressChangeNotify); });
}

vpPath vpLookupPath(const char* name) { return FindPath(name); }

const char* vpLookupPathname(vpPath path) {
    const PathMgr* const live = LivePath(path);
    return live != nullptr ? live->name.get() : nullptr;
}

void vpRemovePath(vpPath path) {
    if (PathMgr* const live = LivePath(path)) Guarded([live] { RemovePath(*live); });
}

bool vpTerminate() {
    if (registry == nullptr) return true;
    Guarded([] {
        // Listeners may remove and create paths of their own; those that exist now go.
        HkVector<vpPath> all;
        for (PathMgr* path : RegisteredPaths()) all.emplace_back(path);
        for (const vpPath& path : all) RemovePath(*path.get());
    });
    return false;
}

void vpSetCaseSensitivity(vpPath path, bool caseSensitive) {
    if (PathMgr* const live = LivePath(path)) live->caseSensitive = caseSensitive;
}

bool vpGetPathCaseSensitivity(vpPath path) {
    const PathMgr* const live = LivePath(path);
    return live != nullptr && live->caseSensitive;
}

const char* vpGetCurrentPathname() { return currentPathname; }
void vpSetCurrentPathname(const char* name) { currentPathname = name; }
void vpSetDefaultPathname(const char* name) { currentPathname = name; }
bool vpCurrentPathExists() { return currentPathname != nullptr; }
