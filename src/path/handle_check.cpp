#include "path/handle_check.h"

#include <hostkit/hostkit.h>

#include "base/guard.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"

PathMgr* LivePath(const vpPath& path) {
    PathMgr* const target = path.get();
    return target != nullptr && target->valid ? target : nullptr;
}

PathMgr* AssertLive(const vpPath& path) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) Guarded([] { hkPrintf("asserted here\n"); });
    return live;
}

PathAllDirItemInfo* LiveDir(const vpDir& dir) {
    PathAllDirItemInfo* const target = dir.get();
    if (target == nullptr || !target->has(PathItemInfo::kLinked)) return nullptr;
    return target->path() != nullptr ? target : nullptr;
}

PathAllDirItemInfo* LiveRealDir(const vpDir& dir) {
    PathAllDirItemInfo* const live = LiveDir(dir);
    return live != nullptr && live->dirKind != vpDirTypeNone ? live : nullptr;
}

vpDir NullDirOf(PathMgr* path) { return path != nullptr ? vpDir(path->nullDir) : vpDir(); }

vpDir NullDirBeside(const vpDir& dir) {
    return dir.get() != nullptr ? NullDirOf(dir.get()->path()) : vpDir();
}
