// The exported calls that add, remove, replace and find the directories of a path.
#include <vpath/path.h>

#include "base/guard.h"
#include "dir/file_names.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/find_directory.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "pathname/components.h"
#include "pathname/normalize.h"
#include "pathname/normalized_name.h"
#include "pathname/path_list.h"

namespace {

// A name from outside as it is added; null when nothing can be added under it.
NormalizedName NormalizeForAdding(const char* name) {
    char* text = nullptr;
    if (name == nullptr || *name == '\0') return nullptr;
    const int length = NormalizeDirNameOrReport(name, true, &text);
    NormalizedName normalized(text);
    if (length == 0) normalized.reset();
    return normalized;
}

// Adds one directory; the null directory when it was not. A throwing callback is such a failure, so
// that the other directories of a list are still added.
vpDir AddOne(PathMgr& path, const char* name, vpDirAddLocn where) {
    return Guarded(NullDirOf(&path), [&] {
        const NormalizedName normalized = NormalizeForAdding(name);
        PathDirItemInfo* const added =
            normalized != nullptr
                ? path.contents.addDir(normalized.get(), where == vpAddAtBeginning)
                : nullptr;
        return added != nullptr ? vpDir(added) : NullDirOf(&path);
    });
}

// Calls `take` with each element of a path string, an empty one included; stops at one that is too
// long, which is reported, or when `take` answers false. False when an element was too long.
template <class Take>
bool ForEachElement(const char* list, Take take) {
    HkString element;
    while (list != nullptr && *list != '\0') {
        const char* const next = NextPathListEntry(list);
        if (next == nullptr) return false;
        size_t length = static_cast<size_t>(next - list);
        if (length > 0 && (next[-1] == ':' || next[-1] == ';')) --length;
        element.assign(list, length);
        if (!take(element.c_str())) return true;
        list = next;
    }
    return true;
}

// Chooses, from what became of the elements in the order written, the directory that comes first on
// the path.
class FirstOnPath {
  public:
    FirstOnPath(PathMgr& path, vpDirAddLocn where)
        : atBeginning_(where == vpAddAtBeginning), chosen_(NullDirOf(&path)) {}
    void take(const vpDir& dir) {
        if (atBeginning_ || !any_) chosen_ = dir;
        any_ = true;
    }
    const vpDir& chosen() const { return chosen_; }

  private:
    bool atBeginning_;
    bool any_ = false;
    vpDir chosen_;
};

// Replacement of the directories of a path. The kept ones move to the back one by one, so that path
// order is right whenever a callback looks.
class Replacement {
  public:
    explicit Replacement(PathMgr& path) : path_(path), order_(path.contents.directories) {
        ForAdded([](PathDirItemInfo& directory) {
            directory.setDirFlag(PathAllDirItemInfo::kToBeReplaced);
        });
    }

    // Takes the next element of the new path; false when the path has gone.
    bool take(const char* element) {
        if (*element == '\0') return true;
        allPlaced_ &= Guarded(false, [&] { return place(element); });
        return path_.valid;
    }

    // Takes off what the new path does not name; with `keepUnmet`, nothing.
    bool finish(bool keepUnmet) {
        if (keptInOrder_ && undisturbed() && allMet()) order_.forgetMoves();
        ItemRef<PathDirItemInfo> at(order_.firstAdded());
        while (at) {
            ItemRef<PathDirItemInfo> const next(order_.nextAfter(*at));
            const bool unmet = at->hasDirFlag(PathAllDirItemInfo::kToBeReplaced);
            at->clearDirFlag(PathAllDirItemInfo::kToBeReplaced);
            if (unmet && !keepUnmet) path_.contents.removeDir(*at);
            at = next;
        }
        return allPlaced_;
    }

  private:
    template <class Act>
    void ForAdded(Act act) {
        for (auto* at = order_.firstAdded(); at != nullptr; at = at->nextOnPath) act(*at);
    }

    bool place(const char* element) {
        const NormalizedName normalized = NormalizeForAdding(element);
        if (normalized == nullptr) return false;
        PathDirItemInfo* const known = path_.contents.findAdded(normalized.get());
        if (known != nullptr && known->hasDirFlag(PathAllDirItemInfo::kToBeReplaced)) {
            keep(*known);
            return true;
        }
        PathDirItemInfo* const added = path_.contents.addDir(normalized.get(), false);
        if (added != nullptr) added->clearDirFlag(PathAllDirItemInfo::kToBeReplaced);
        return added != nullptr || known != nullptr;
    }

    void keep(PathDirItemInfo& directory) {
        keptInOrder_ &= directory.order > lastKeptOrder_;
        lastKeptOrder_ = directory.order;
        directory.clearDirFlag(PathAllDirItemInfo::kToBeReplaced);
        if (order_.moveToBack(directory)) ++moves_;
    }

    // Whether nobody put a name list in order, and no directory but the kept ones came to the back
    // or the front, while this was going on. A list that a callback read before the first move has
    // what was added by then behind what is kept.
    bool undisturbed() const {
        const PathOrder::Stamp now = order_.stamp();
        return !before_.moved && now.epoch == before_.epoch &&
               now.entries == before_.entries + moves_;
    }

    bool allMet() {
        bool met = true;
        ForAdded([&met](const PathDirItemInfo& directory) {
            met &= !directory.hasDirFlag(PathAllDirItemInfo::kToBeReplaced);
        });
        return met;
    }

    PathMgr& path_;
    PathOrder& order_;
    int64_t lastKeptOrder_ = PathDirItemInfo::kOrderOfCurrent;
    PathOrder::Stamp before_ = order_.stamp();
    uint32_t moves_ = 0;
    bool keptInOrder_ = true;
    bool allPlaced_ = true;
};

bool ReplacePath(PathMgr& path, const char* list) {
    Guarded([&path] { path.raiseEvent(vpEventReplaceBegin); });
    if (!path.valid) return false;
    Replacement replacement(path);
    const bool whole =
        ForEachElement(list, [&](const char* element) { return replacement.take(element); });
    if (!path.valid) return false;
    const bool allPlaced = replacement.finish(!whole);
    Guarded([&path] { path.raiseEvent(vpEventReplaceEnd); });
    return whole && allPlaced;
}

// Whether an entry of `parent` under that name, whose kind the host has not told, is a directory.
bool AskForDirectory(PathMgr& path, PathAllDirItemInfo& parent, std::string_view name) {
    // The callback may change the directory: every file is looked at as the list then stands.
    for (size_t i = 0; i < parent.files.size(); ++i) {
        const ItemRef<PathFileItemInfo> file(parent.files[i]);
        if (!file->has(PathItemInfo::kLinked) || file->has(PathItemInfo::kKindConfirmed)) continue;
        if (!MatchesFileQuery(*file, name, path.caseSensitive)) continue;
        if (path.isDirectory(FullName(*file).text())) return true;
    }
    return false;
}

}  // namespace

vpDir vpAddDir(vpPath path, const char* name, vpDirAddLocn where) {
    PathMgr* const live = AssertLive(path);
    return live != nullptr ? AddOne(*live, name, where) : vpDir();
}

vpDir vpAddDirsString(vpPath path, const char* list, vpDirAddLocn where) {
    PathMgr* const live = AssertLive(path);
    if (live == nullptr) return {};
    return Guarded(NullDirOf(live), [&] {
        FirstOnPath first(*live, where);
        ForEachElement(list, [&](const char* element) {
            first.take(AddOne(*live, element, where));
            return live->valid;
        });
        return first.chosen();
    });
}

vpDir vpAddDirsArray(vpPath path, const char** names, int count, vpDirAddLocn where) {
    PathMgr* const live = AssertLive(path);
    if (live == nullptr) return {};
    FirstOnPath first(*live, where);
    for (int i = 0; names != nullptr && i < count && live->valid; ++i) {
        first.take(AddOne(*live, names[i], where));
    }
    return first.chosen();
}

void vpRemoveDir(vpDir dir) {
    PathAllDirItemInfo* const live = LiveRealDir(dir);
    if (live == nullptr || live->kind() != vpDirTypePath) return;
    Guarded([live] { live->path()->contents.removeDir(static_cast<PathDirItemInfo&>(*live)); });
}

bool vpReplacePath(vpPath path, const char* list) {
    PathMgr* const live = AssertLive(path);
    return live != nullptr && Guarded(false, [&] { return ReplacePath(*live, list); });
}

int vpGetNumPathDirs(vpPath path) {
    const PathMgr* const live = AssertLive(path);
    return live != nullptr ? static_cast<int>(live->contents.directories.count()) : 0;
}

vpDir vpFindDirFullName(vpPath path, const char* name) {
    PathMgr* const live = AssertLive(path);
    if (live == nullptr) return {};
    return Guarded(NullDirOf(live), [&] {
        PathAllDirItemInfo* const found = FindDirectoryByName(*live, name);
        return found != nullptr ? vpDir(found) : NullDirOf(live);
    });
}

vpDir vpGetNullDir(vpPath path) { return NullDirOf(AssertLive(path)); }

bool vpCheckIsDir(vpPath path, const char* name) {
    PathMgr* const live = AssertLive(path);
    if (live == nullptr || name == nullptr) return false;
    return Guarded(false, [&] {
        const std::string_view whole(name);
        PathDirItemInfo* const parent = live->contents.findOnPath(DirectoryPart(whole));
        const vpDir hold(parent);
        return parent != nullptr &&
               AskForDirectory(*live, *parent, whole.substr(whole.rfind('/') + 1));
    });
}

bool vpSetFreezeAllAddedDirectories(vpPath path, bool) {
    AssertLive(path);
    return false;
}

vpDir vpGetNextPathDir(vpDir dir) {
    PathAllDirItemInfo* const live = LiveDir(dir);
    if (live == nullptr) return NullDirBeside(dir);
    PathMgr* const path = live->path();
    const PathOrder& order = path->contents.directories;
    PathDirItemInfo* next = nullptr;
    if (live->dirKind == vpDirTypeNone) {
        next = order.first();
    } else if (live->dirKind == vpDirTypePath) {
        next = order.nextAfter(static_cast<PathDirItemInfo&>(*live));
    }
    return next != nullptr ? vpDir(next) : NullDirOf(path);
}

vpDir vpSelectDirFirstOnPath(vpDir a, vpDir b) {
    const PathAllDirItemInfo* const first = LiveRealDir(a);
    const PathAllDirItemInfo* const second = LiveRealDir(b);
    // What stands on no path comes before everything that does.
    if (first == nullptr) return a;
    return second == nullptr || first->topDir()->order > second->topDir()->order ? b : a;
}

void vpDeleteNonExistentDirectories(vpPath path) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return;
    Guarded([live] {
        const PathOrder& order = live->contents.directories;
        ItemRef<PathDirItemInfo> at(order.firstAdded());
        while (at && live->valid) {
            const bool stays = live->isDirectory(at->fullName());
            if (!live->valid) return;
            ItemRef<PathDirItemInfo> const next(order.nextAfter(*at));
            if (!stays && at->onPath()) live->contents.removeDir(*at);
            at = next;
        }
    });
}
