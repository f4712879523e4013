#include "dir/directory_merge.h"

#include <algorithm>
#include <utility>

#include <vpath/path.h>

#include "dir/child_matcher.h"
#include "dir/directory_reader.h"
#include "dir/path_dir_item.h"
#include "dir/time_stamps.h"
#include "path/path_mgr.h"

namespace {

// Calls `act` with the list of each kind of child but the private directory.
template <class Act>
void ForEachList(PathAllDirItemInfo& directory, Act act) {
    act(directory.files, ChildList::kFiles);
    act(directory.packageDirs, ChildList::kPackages);
    act(directory.classDirs, ChildList::kClasses);
    act(directory.subDirs, ChildList::kSubDirs);
}

void MarkChildrenStale(PathAllDirItemInfo& directory) {
    ForEachList(directory, [](auto& list, ChildList) {
        for (auto* child : list) child->set(PathItemInfo::kStale);
    });
    if (directory.privateDir != nullptr) directory.privateDir->set(PathItemInfo::kStale);
}

class Merge {
  public:
    Merge(PathAllDirItemInfo& directory, bool frozen)
        : directory_(directory),
          frozen_(frozen),
          files_(directory.files, mayHoldTwins()),
          packageDirs_(directory.packageDirs, mayHoldTwins()),
          classDirs_(directory.classDirs, mayHoldTwins()),
          subDirs_(directory.subDirs, mayHoldTwins()) {}

    void take(const ListingEntry& entry) {
        if (PathItemInfo* const known = find(entry)) {
            known->clear(PathItemInfo::kStale);
            return;
        }
        PathItemInfo* const made = MakeChild(directory_, entry);
        PathAllDirItemInfo* const special = made != nullptr ? made->asDirectory() : nullptr;
        // Should memory run out before it is read, a refresh of any type is to read it.
        if (special != nullptr) special->loadState = PathAllDirItemInfo::kChanged;
        if (made != nullptr) remember(*made, entry.kind);
        if (special != nullptr) {
            special->loadState = PathAllDirItemInfo::kNeverRead;
            readNew(*special);
        }
    }

  private:
    bool mayHoldTwins() const { return directory_.hasDirFlag(PathAllDirItemInfo::kMayHoldTwins); }

    PathItemInfo* find(const ListingEntry& entry) {
        switch (entry.kind) {
            case EntryKind::kFile: {
                PathFileItemInfo* const file = files_.find(entry.name);
                if (file != nullptr && directory_.dirKind != vpDirTypePrivate) {
                    file->classdefState = PathFileItemInfo::kUnknown;
                }
                return file;
            }
            case EntryKind::kPlainSubDir:
                return subDirs_.find(entry.name);
            case EntryKind::kPrivateDir:
                return directory_.privateDir;
            case EntryKind::kClassDir:
                return classDirs_.find(entry.bareName());
            case EntryKind::kPackageDir:
                break;
        }
        return packageDirs_.find(entry.bareName());
    }

    // A listing that names it again means the same child.
    void remember(const PathItemInfo& made, EntryKind kind) {
        switch (kind) {
            case EntryKind::kFile:
                files_.add(static_cast<const PathFileItemInfo&>(made));
                break;
            case EntryKind::kPlainSubDir:
                subDirs_.add(static_cast<const PathSubDirItemInfo&>(made));
                break;
            case EntryKind::kPrivateDir:
                break;
            case EntryKind::kClassDir:
                classDirs_.add(static_cast<const PathClassDirItemInfo&>(made));
                break;
            case EntryKind::kPackageDir:
                packageDirs_.add(static_cast<const PathPackageDirItemInfo&>(made));
                break;
        }
    }

    void readNew(PathAllDirItemInfo& special) const {
        const ItemRef<PathAllDirItemInfo> hold(&special);
        ReadDirectory(special, frozen_);
        PathMgr* const path = special.path();
        if (path != nullptr && !path->suppressChangeNotify) {
            path->raiseEvent(vpEventDirAdded, &special);
        }
    }

    PathAllDirItemInfo& directory_;
    bool frozen_;
    ChildMatcher<PathFileItemInfo> files_;
    ChildMatcher<PathPackageDirItemInfo> packageDirs_;
    ChildMatcher<PathClassDirItemInfo> classDirs_;
    ChildMatcher<PathSubDirItemInfo> subDirs_;
};

bool IsGone(const PathItemInfo& child) {
    return child.has(PathItemInfo::kStale) || !child.has(PathItemInfo::kLinked);
}

void LetGo(PathItemInfo& child) {
    if (PathAllDirItemInfo* const special = child.asDirectory()) {
        special->clearContents();
        special->detach();
    } else {
        child.unlinkFromName();
        child.parent = nullptr;
    }
    child.disown();
}

void Renumber(PathItemInfo&, size_t) {}
void Renumber(PathClassDirItemInfo& child, size_t index) {
    child.siblingIndex = static_cast<uint32_t>(index);
}
void Renumber(PathPackageDirItemInfo& child, size_t index) {
    child.siblingIndex = static_cast<uint32_t>(index);
}

// Lets the children go that the listing did not name; the others keep their order.
void DropStaleChildren(PathAllDirItemInfo& directory) {
    CursorList& cursors = directory.path()->cursors;
    ForEachList(directory, [&](auto& list, ChildList which) {
        const auto isGone = [](const auto* child) { return IsGone(*child); };
        if (std::none_of(list.begin(), list.end(), isGone)) return;
        cursors.childrenRemoved(directory, which, [&list](size_t i) { return IsGone(*list[i]); });
        size_t kept = 0;
        for (size_t i = 0; i < list.size(); ++i) {
            auto* const child = list[i];
            if (IsGone(*child)) {
                LetGo(*child);
            } else {
                Renumber(*child, kept);
                list[kept++] = child;
            }
        }
        list.resize(kept);
    });
    if (directory.privateDir != nullptr && IsGone(*directory.privateDir)) {
        PathPrivateDirItemInfo* const gone = std::exchange(directory.privateDir, nullptr);
        LetGo(*gone);
    }
    directory.childIndex.drop();
}

// Takes the fresh listing in; false when the directory was cleared under way.
bool MergeListing(PathAllDirItemInfo& directory, const ReadInProgress& read, bool frozen) {
    MarkChildrenStale(directory);
    ListingReader listing(*directory.path(), directory);
    Merge merge(directory, frozen);
    ListingEntry entry;
    while (read.current() && listing.next(entry)) {
        if (!read.current()) return false;
        merge.take(entry);
    }
    return read.current();
}

}  // namespace

void RereadDirectory(PathAllDirItemInfo& directory, bool frozen) {
    if (directory.path() == nullptr) return;
    const vpPath whileReading(directory.path());
    ReadInProgress read(directory);
    try {
        if (!directory.hasDirFlag(PathAllDirItemInfo::kChangedWithNewStamp)) {
            const uint8_t loadState = directory.loadState;
            CompareStamp(directory);
            if (!read.current()) return;
            directory.loadState = loadState;
        }
        directory.clearDirFlag(PathAllDirItemInfo::kChangedWithNewStamp);
        directory.clear(PathItemInfo::kStale);
        if (!MergeListing(directory, read, frozen)) return;
        DropStaleChildren(directory);
        directory.clearDirFlag(PathAllDirItemInfo::kMayHoldTwins);
        PathMgr* const path = directory.path();
        if (!path->suppressChangeNotify) path->raiseEvent(vpEventDirReread, &directory);
    } catch (...) {
        read.breakOff();
        throw;
    }
    read.finish(frozen ? PathAllDirItemInfo::kFrozen : PathAllDirItemInfo::kRead);
}
