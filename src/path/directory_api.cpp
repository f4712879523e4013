// The exported calls that read a directory through its handle.
#include <vpath/path.h>
#include <vpath/pathname.h>

#include <cstring>

#include "base/guard.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "pathname/components.h"
#include "pathname/text.h"

namespace {

// The special directory behind a handle, null for any other.
PathAllDirItemInfo* LiveSpecialDir(const vpDir& dir) {
    PathAllDirItemInfo* const live = LiveRealDir(dir);
    return live != nullptr && live->dirKind != vpDirTypePath ? live : nullptr;
}

}  // namespace

bool vpIsDirHandleValid(const vpDir& dir) { return LiveDir(dir) != nullptr; }

vpPath vpGetPathOfDir(const vpDir& dir) {
    const PathAllDirItemInfo* const target = dir.get();
    return target != nullptr ? vpPath(target->path()) : vpPath();
}

bool vpIsSameDir(vpDir a, vpDir b) { return a.get() == b.get(); }

char* vpGetDirName(const vpDir& dir, char* buf) {
    if (buf == nullptr) return nullptr;
    const PathAllDirItemInfo* const target = dir.get();
    if (target == nullptr) return WriteText(buf, {});
    WriteFullName(*target, buf);
    return buf;
}

int vpGetDirNameLen(const vpDir& dir) {
    return dir.get() != nullptr ? static_cast<int>(FullNameLength(*dir.get())) : 0;
}

char* vpConcatDirName(const vpDir& dir, const char* sub, char* buf) {
    if (vpGetDirName(dir, buf) == nullptr) return nullptr;
    return vpConcatPathSubdir(buf, sub);
}

const char* vpGetBaseDirName(const vpDir& dir) {
    return dir.get() != nullptr ? dir.get()->baseName() : nullptr;
}

int vpGetDirType(const vpDir& dir) { return dir.get() != nullptr ? dir.get()->kind() : 0; }

vpDir vpGetPathDir(const vpDir& dir) {
    const PathAllDirItemInfo* const target = dir.get();
    return target != nullptr ? vpDir(target->topDir()) : vpDir();
}

bool vpIsAbsoluteDir(const vpDir& dir) {
    const PathAllDirItemInfo* const target = dir.get();
    const PathDirItemInfo* const top = target != nullptr ? target->topDir() : nullptr;
    return top == nullptr || !top->isRelative();
}

vpDir vpGetPrivateDir(const vpDir& dir) {
    const PathAllDirItemInfo* const live = LiveDir(dir);
    const bool hasPrivate = live != nullptr && live->privateDir != nullptr;
    return hasPrivate ? vpDir(live->privateDir) : NullDirBeside(dir);
}

vpDir vpGetParentDir(const vpDir& dir) {
    const PathAllDirItemInfo* const special = LiveSpecialDir(dir);
    return special != nullptr ? vpDir(special->parent) : NullDirBeside(dir);
}

bool vpIsPrivateDirName(const char* name) { return IsPrivateName(LastComponent(TextOf(name))); }
