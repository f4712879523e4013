#include "dir/refresh.h"

#include <optional>
#include <utility>

#include <vpath/path.h>

#include "base/reporting.h"
#include "dir/directory_merge.h"
#include "dir/directory_reader.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "dir/time_stamps.h"
#include "path/path_mgr.h"

namespace {

using DirRef = ItemRef<PathAllDirItemInfo>;

bool EndsFrozen(const PathAllDirItemInfo& directory) {
    const PathDirItemInfo& top = *directory.topDir();
    return top.owner->freezeAllAdded || top.underToolboxRoot;
}

bool SkipsFrozen(int type) { return type == 0 || type == vpRefreshIfChanged; }

// What a refresh does with one directory.
enum class Verdict { kSkipWithAllBeneath, kLeave, kReread };

Verdict Decide(PathAllDirItemInfo& directory, int type) {
    if (directory.loadState == PathAllDirItemInfo::kChanged) return Verdict::kReread;
    const bool frozen = directory.loadState == PathAllDirItemInfo::kFrozen;
    if (SkipsFrozen(type)) {
        if (frozen) return Verdict::kSkipWithAllBeneath;
        if (directory.loadState == PathAllDirItemInfo::kNeverRead) return Verdict::kReread;
        return CompareStamp(directory) ? Verdict::kReread : Verdict::kLeave;
    }
    switch (type) {
        case vpRefreshUnlessFrozen:
            return frozen ? Verdict::kLeave : Verdict::kReread;
        case vpRefreshAlways:
            return Verdict::kReread;
        default:
            return Verdict::kLeave;
    }
}

// A re-read, with the announcement that the host may have asked for.
void RereadAndTell(PathAllDirItemInfo& directory) {
    const bool staysFrozen = directory.loadState == PathAllDirItemInfo::kFrozen;
    const uint32_t life = directory.life;
    directory.loadState = PathAllDirItemInfo::kChanged;
    RereadDirectory(directory, EndsFrozen(directory));
    const PathMgr* const path = directory.path();
    if (path == nullptr || directory.life != life) return;
    if (staysFrozen) directory.loadState = PathAllDirItemInfo::kFrozen;
    if (path->reloadMessages) ReportInfo("%s reloaded.", directory.baseName());
}

bool IsAlive(const PathAllDirItemInfo& directory) {
    return directory.has(PathItemInfo::kLinked) && directory.path() != nullptr;
}

// Puts the special directories of `directory` on the stack so that they come off it in the order
// package directories, class directories, private directory.
void PushChildren(const PathAllDirItemInfo& directory, HkVector<DirRef>& stack) {
    if (directory.privateDir != nullptr) stack.emplace_back(directory.privateDir);
    for (auto child = directory.classDirs.rbegin(); child != directory.classDirs.rend(); ++child) {
        stack.emplace_back(*child);
    }
    for (auto child = directory.packageDirs.rbegin(); child != directory.packageDirs.rend();
         ++child) {
        stack.emplace_back(*child);
    }
}

// Refreshes one directory; false when what lies beneath it is to be left alone too. `known` is what
// was decided of it when the host was asked already.
bool RefreshOne(PathAllDirItemInfo& directory, int type, std::optional<Verdict> known,
                bool& anyReread) {
    if (directory.hasDirFlag(PathAllDirItemInfo::kReading)) {
        directory.setDirFlag(PathAllDirItemInfo::kToBeReadAgain);
        return false;
    }
    switch (known ? *known : Decide(directory, type)) {
        case Verdict::kSkipWithAllBeneath:
            return false;
        case Verdict::kLeave:
            return true;
        case Verdict::kReread:
            break;
    }
    // The test asked the host, who may have done anything meanwhile.
    if (!IsAlive(directory) || directory.hasDirFlag(PathAllDirItemInfo::kReading)) return true;
    RereadAndTell(directory);
    anyReread = true;
    return true;
}

// `at`, or the first directory after it with which a refresh has anything to do: frozen ones, which
// may be most of a path, are passed over in the list. Each walk leaves in a directory where the one
// lay that it met kAhead later, so that the next walk can ask for that ahead of its turn: a list
// alone tells no more than where the next one is. The hint may be out of date.
PathDirItemInfo* SkipFrozen(const PathOrder& directories, PathDirItemInfo* at, int type) {
    constexpr size_t kAhead = 6;
    if (!SkipsFrozen(type)) return at;
    PathDirItemInfo* behind = at;
    for (size_t passed = 0;
         at != nullptr && at->isFrozen() && !at->hasDirFlag(PathAllDirItemInfo::kReading);
         ++passed) {
        __builtin_prefetch(at->ahead);
        if (passed >= kAhead) {
            behind->ahead = &at->nextOnPath;
            behind = directories.nextAfter(*behind);
        }
        at = directories.nextAfter(*at);
    }
    return at;
}

bool HoldsNoDirectory(const PathAllDirItemInfo& directory) {
    return directory.packageDirs.empty() && directory.classDirs.empty() &&
           directory.privateDir == nullptr;
}

// A directory that a refresh has to ask the host about, and that holds none to go on with.
bool IsLeafToTest(const PathDirItemInfo& directory, int type) {
    return SkipsFrozen(type) && directory.dirFlags == 0 &&
           (directory.loadState == PathAllDirItemInfo::kRead ||
            directory.loadState == PathAllDirItemInfo::kToBeTested) &&
           HoldsNoDirectory(directory);
}

// Brings a directory into the caches while the host is asked about the one before it.
void Prefetch(const PathDirItemInfo& directory) {
    constexpr size_t kLine = 64;
    const auto* const bytes = reinterpret_cast<const char*>(&directory);
    for (size_t at = 0; at <= sizeof directory; at += kLine) __builtin_prefetch(bytes + at);
}

// Visits the directory and, preorder, the special directories beneath it as they are once their
// parent was visited; `visit` says whether to go beneath. Visits may call into the host.
template <class Visit>
void VisitTree(PathAllDirItemInfo& directory, Visit visit) {
    if (!IsAlive(directory)) return;
    const vpPath whileVisiting(directory.path());
    HkVector<DirRef> stack;
    DirRef at(&directory);
    while (true) {
        if (IsAlive(*at) && visit(*at) && IsAlive(*at)) PushChildren(*at, stack);
        if (stack.empty()) return;
        at = std::move(stack.back());
        stack.pop_back();
    }
}

// `known` as RefreshOne takes it, of the directory itself.
bool RefreshTree(PathAllDirItemInfo& directory, int type, std::optional<Verdict> known) {
    bool anyReread = false;
    VisitTree(directory, [&](PathAllDirItemInfo& at) {
        return RefreshOne(at, type, std::exchange(known, std::nullopt), anyReread);
    });
    return anyReread;
}

}  // namespace

bool RefreshDirectory(PathAllDirItemInfo& directory, int type) {
    return RefreshTree(directory, type, std::nullopt);
}

void RefreshAllDirectories(PathMgr& path, int type) {
    const PathOrder& directories = path.contents.directories;
    ItemRef<PathDirItemInfo> at(SkipFrozen(directories, directories.first(), type));
    while (at && path.valid) {
        if (at->nextOnPath != nullptr) Prefetch(*at->nextOnPath);
        // Most directories of most paths are leaves that have not changed: no walk for those,
        // unless the host has put something into them while it was asked.
        std::optional<Verdict> known;
        if (IsLeafToTest(*at, type)) known = CompareStamp(*at) ? Verdict::kReread : Verdict::kLeave;
        if (known != Verdict::kLeave || !HoldsNoDirectory(*at)) RefreshTree(*at, type, known);
        at.reset(SkipFrozen(directories, directories.nextAfter(*at), type));
    }
}

void FreezeDirectory(PathAllDirItemInfo& directory) {
    VisitTree(directory, [](PathAllDirItemInfo& at) {
        if (at.isFrozen()) return true;
        bool anyReread = false;
        if (at.loadState != PathAllDirItemInfo::kRead)
            RefreshOne(at, vpRefreshIfChanged, std::nullopt, anyReread);
        at.changeCount = 1;
        at.stampMode = kStampModeHeld;
        at.loadState = PathAllDirItemInfo::kFrozen;
        return true;
    });
}

void UnfreezeDirectory(PathAllDirItemInfo& directory) {
    VisitTree(directory, [](PathAllDirItemInfo& at) {
        if (!at.isFrozen()) return true;
        at.loadState = PathAllDirItemInfo::kToBeTested;
        ReadStampAfterLoad(at);
        return true;
    });
}

void RevalidateRelativeDirectory(PathDirItemInfo& directory) {
    if (directory.hasDirFlag(PathAllDirItemInfo::kReading)) {
        // What it holds so far is another directory's: the next refresh reads all of it.
        for (PathAllDirItemInfo* at = &directory; at != nullptr; at = NextInTree(*at, directory)) {
            at->markChanged();
            at->setDirFlag(PathAllDirItemInfo::kToBeReadAgain);
            if (at->isFrozen()) at->loadState = PathAllDirItemInfo::kChanged;
        }
        return;
    }
    if (directory.loadState == PathAllDirItemInfo::kNeverRead) return;
    const DirRef hold(&directory);
    const vpPath whileRevalidating(directory.owner);
    directory.changeCount = 1;
    directory.stampMode = kStampModeHeld;
    if (directory.owner->isDirectory(directory.fullName()) && IsAlive(directory)) {
        ReadStampAfterLoad(directory);
    }
    if (!IsAlive(directory)) return;
    directory.clearDirFlag(PathAllDirItemInfo::kChangedWithNewStamp);
    directory.stampMode = kStampModeLoaded;
    HkVector<DirRef> frozen;
    for (PathAllDirItemInfo* at = &directory; at != nullptr; at = NextInTree(*at, directory)) {
        if (at->isFrozen()) frozen.emplace_back(at);
        at->loadState = PathAllDirItemInfo::kChanged;
    }
    RefreshDirectory(directory, vpRefreshIfChanged);
    for (const DirRef& at : frozen) {
        if (IsAlive(*at)) at->loadState = PathAllDirItemInfo::kFrozen;
    }
}
