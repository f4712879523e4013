// The exported calls on time stamps, change marks, freezing and refresh.
#include <string_view>

#include <vpath/path.h>

#include <hostkit/hostkit.h>

#include "base/guard.h"
#include "dir/path_dir_item.h"
#include "dir/refresh.h"
#include "path/find_directory.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "pathname/components.h"
#include "pathname/normalize.h"
#include "pathname/normalized_name.h"
#include "pathname/text.h"

namespace {

constexpr int64_t kNoTime = -1;

// Marks every directory of the path and beneath: what was read gets the state `mark`.
void MarkAll(PathMgr& path, uint8_t mark) {
    const PathOrder& order = path.contents.directories;
    for (PathDirItemInfo* top = order.first(); top != nullptr; top = order.nextAfter(*top)) {
        for (PathAllDirItemInfo* at = top; at != nullptr; at = NextInTree(*at, *top)) {
            if (mark == PathAllDirItemInfo::kChanged) {
                at->markChanged();
            } else if (at->loadState == PathAllDirItemInfo::kRead) {
                at->loadState = mark;
            }
        }
    }
}

struct Marked {
    PathAllDirItemInfo* directory;  // that of the name, null when it is unknown
    bool wasWaiting;
};

// Marks the directory of a full name changed; when it is special and unknown, the nearest known one
// above it, since a new special directory changes what that holds.
Marked MarkChangedByName(PathMgr& path, const char* name) {
    char* text = nullptr;
    const int length = NormalizeDirNameOrReport(name, false, &text);
    const NormalizedName normalized(text);
    const std::string_view fullName(text, static_cast<size_t>(length));
    PathAllDirItemInfo* const named = FindDirectory(path, fullName);
    PathAllDirItemInfo* const known = named != nullptr ? named : FindDirectoryAbove(path, fullName);
    return {named, known != nullptr && known->markChanged()};
}

bool TakeStamp(const PathAllDirItemInfo& directory, const char* fileName, vpTimeStamp_tag& stamp) {
    stamp = {kNoTime, 0};
    if (directory.isFrozen()) return false;
    const uint32_t generation = directory.changeCount;
    const int64_t time = directory.path()->modificationTime(fileName);
    if (time == 0) return false;
    stamp = {time, generation};
    return true;
}

}  // namespace

vpTimeStamp_tag* vpCreateTimeStamp() {
    auto* const stamp = static_cast<vpTimeStamp_tag*>(hkCalloc(1, sizeof(vpTimeStamp_tag)));
    if (stamp != nullptr) *stamp = {kNoTime, 0};
    return stamp;
}

void vpDestroyTimeStamp(vpTimeStamp_tag* stamp) { hkFree(stamp); }

void vpCopyTimeStamp(vpTimeStamp_tag* to, vpTimeStamp_tag* from) {
    if (to != nullptr && from != nullptr) *to = *from;
}

bool vpIsFileTimeStampDifferent(vpTimeStamp_tag* a, vpTimeStamp_tag* b) {
    return a != nullptr && b != nullptr && a->time != b->time;
}

bool vpGetTimeStampFromDir(vpDir dir, const char* fileName, vpTimeStamp_tag* stamp) {
    const PathAllDirItemInfo* const live = LiveDir(dir);
    if (live == nullptr || fileName == nullptr || stamp == nullptr) return false;
    return Guarded(false, [&] { return TakeStamp(*live, fileName, *stamp); });
}

bool vpGetTimeStamp(vpPath path, const char* fileName, vpTimeStamp_tag* stamp) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr || fileName == nullptr) return false;
    return Guarded(false, [&] {
        const vpDir dir(FindDirectoryOfFile(*live, fileName));
        return vpGetTimeStampFromDir(dir, fileName, stamp);
    });
}

bool vpHasFileChanged(vpDir dir, const char* fileName, vpTimeStamp_tag* stamp,
                      vpTimeStampUpdate update) {
    const PathAllDirItemInfo* const live = LiveDir(dir);
    if (live == nullptr || live->isFrozen() || fileName == nullptr || stamp == nullptr)
        return false;
    return Guarded(false, [&] {
        const int64_t time = live->path()->modificationTime(fileName);
        if (time == stamp->time) return false;
        if (update == vpUpdateTimeStamp) stamp->time = time;
        return true;
    });
}

bool vpIsFrozen(vpDir dir) {
    const PathAllDirItemInfo* const live = LiveRealDir(dir);
    return live != nullptr && live->isFrozen();
}

void vpFreeze(vpDir dir) {
    PathAllDirItemInfo* const live = LiveRealDir(dir);
    if (live == nullptr || live->kind() == vpDirTypeCurrent) return;
    Guarded([live] { FreezeDirectory(*live); });
}

void vpUnFreeze(vpDir dir) {
    if (PathAllDirItemInfo* const live = LiveRealDir(dir)) {
        Guarded([live] { UnfreezeDirectory(*live); });
    }
}

bool vpSetDirChanged(vpDir dir) {
    PathAllDirItemInfo* const live = LiveRealDir(dir);
    return live != nullptr && live->markChanged();
}

bool vpSetDirChanged(vpPath path, const char* dirFullName) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr || dirFullName == nullptr) return false;
    return Guarded(false, [&] { return MarkChangedByName(*live, dirFullName).wasWaiting; });
}

vpDir vpSetFullnameChanged(vpPath path, const char* fileFullName) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return {};
    return Guarded(NullDirOf(live), [&] {
        const HkString dirPart(DirectoryPart(TextOf(fileFullName)));
        PathAllDirItemInfo* const named = MarkChangedByName(*live, dirPart.c_str()).directory;
        return named != nullptr ? vpDir(named) : NullDirOf(live);
    });
}

void vpSetAllChanged(vpPath path) {
    PathMgr* const live = AssertLive(path);
    if (live != nullptr) MarkAll(*live, PathAllDirItemInfo::kChanged);
}

void vpChangedUnknownDir(vpPath path) {
    PathMgr* const live = AssertLive(path);
    if (live != nullptr) MarkAll(*live, PathAllDirItemInfo::kToBeTested);
}

void vpRefreshAllDirectories(vpPath path, vpDirRefreshType type) {
    PathMgr* const live = AssertLive(path);
    if (live != nullptr) Guarded([&] { RefreshAllDirectories(*live, type); });
}

void vpRefreshDirectory(vpDir dir, vpDirRefreshType type) {
    if (PathAllDirItemInfo* const live = LiveRealDir(dir)) {
        Guarded([&] { RefreshDirectory(*live, type); });
    }
}

vpRefreshPolicy vpNonNotifiedRemoteCWDRefreshPolicy(vpPath, vpRefreshPolicy) {
    return vpRefreshPolicyDefault;
}

vpRefreshPolicy vpNonNotifiedRemotePathRefreshPolicy(vpPath, vpRefreshPolicy) {
    return vpRefreshPolicyDefault;
}
