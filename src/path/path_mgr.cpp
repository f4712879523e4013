#include "path/path_mgr.h"

#include "dir/path_dir_item.h"

PathMgr::PathMgr(const Settings& settings)
    : caseSensitive(settings.caseSensitive),
      ownsProcessCwd(settings.ownsProcessCwd),
      suppressChangeNotify(settings.suppressChangeNotify),
      contents(*this),
      io(DefaultIOFunctions()),
      name(DuplicateText(settings.name)) {
    if (settings.preFrozenRoot != nullptr) {
        preFrozenRoot.reset(DuplicateText(settings.preFrozenRoot));
    }
    nullDir = NullDirItemInfo::Create(*this);
}

PathMgr::~PathMgr() { empty(); }

void PathMgr::drop() {
    if (dying || --refCount != 0 || valid) return;
    dying = true;
    delete this;
}

void PathMgr::empty() {
    contents.clear();
    if (NullDirItemInfo* const last = std::exchange(nullDir, nullptr)) {
        last->unlinkFromName();
        last->owner = nullptr;
        last->disown();
    }
}

void PathMgr::raiseEvent(vpEventType event, PathAllDirItemInfo* dir) {
    if (!valid) return;
    const vpPath whileTelling(this);
    // Listeners that register meanwhile wait for the next event; the vector never shrinks.
    const size_t end = listeners.size();
    for (size_t i = 0; i < end && valid; ++i) {
        if (listeners[i] != nullptr) listeners[i](event, vpDir(dir != nullptr ? dir : nullDir));
    }
}

char* PathMgr::listDirectory(const char* fullName, unsigned int** words) {
    return io.listing(vpPath(this), fullName, words);
}

vpDirAccessibility PathMgr::accessibility(const char* fullName) {
    return io.accessibility(vpPath(this), fullName);
}

bool PathMgr::isDirectory(const char* fullName) { return io.isDirectory(vpPath(this), fullName); }

int64_t PathMgr::modificationTime(const char* fullName) {
    return io.timeStamp(vpPath(this), fullName);
}
