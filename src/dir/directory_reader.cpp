#include "dir/directory_reader.h"

#include <optional>

#include <vpath/path.h>

#include "dir/path_dir_item.h"
#include "dir/time_stamps.h"
#include "path/path_mgr.h"

ReadInProgress::ReadInProgress(PathAllDirItemInfo& directory)
    : directory_(&directory), life_(directory.life) {
    directory.setDirFlag(PathAllDirItemInfo::kReading);
    directory.clearDirFlag(PathAllDirItemInfo::kMarkedWhileReading);
    directory.clearDirFlag(PathAllDirItemInfo::kToBeReadAgain);
}

bool ReadInProgress::current() const {
    return directory_->life == life_ && directory_->top != nullptr &&
           directory_->top->owner != nullptr;
}

void ReadInProgress::finish(uint8_t loadState) {
    if (!current()) return;
    PathAllDirItemInfo& directory = *directory_;
    const bool marked = directory.hasDirFlag(PathAllDirItemInfo::kMarkedWhileReading) &&
                        loadState != PathAllDirItemInfo::kFrozen;
    const bool outOfDate = marked || directory.hasDirFlag(PathAllDirItemInfo::kToBeReadAgain);
    directory.loadState = outOfDate ? uint8_t{PathAllDirItemInfo::kChanged} : loadState;
    directory.clearDirFlag(PathAllDirItemInfo::kReading);
    directory.clearDirFlag(PathAllDirItemInfo::kMarkedWhileReading);
    directory.clearDirFlag(PathAllDirItemInfo::kToBeReadAgain);
}

void ReadInProgress::breakOff() { finish(PathAllDirItemInfo::kChanged); }

namespace {

bool KeepsSubDirs(const PathAllDirItemInfo& directory) {
    return directory.dirKind == vpDirTypePath;
}

bool KeepsSpecialDirs(const PathAllDirItemInfo& directory) {
    return directory.dirKind == vpDirTypePath || directory.dirKind == vpDirTypePackage;
}

// One directory of the depth-first read: the reads above it wait with their listings half used.
struct ReadFrame {
    ReadFrame(PathAllDirItemInfo& directory, bool endFrozen, bool isNested)
        : read(directory), frozen(endFrozen), nested(isNested) {}

    ReadInProgress read;
    std::optional<ListingReader> listing;
    bool frozen;
    bool nested;
};

class DepthFirstRead {
  public:
    void run(PathAllDirItemInfo& directory, bool frozen) {
        try {
            begin(directory, frozen, false);
            while (!frames_.empty()) step();
        } catch (...) {
            for (ReadFrame& frame : frames_) frame.read.breakOff();
            throw;
        }
    }

  private:
    void begin(PathAllDirItemInfo& directory, bool frozen, bool nested) {
        ReadFrame& frame = push(directory, frozen, nested);
        // The stamp comes before the listing: what changes in between shows at the next test.
        ReadStampAfterLoad(directory);
        if (!frame.read.current()) return;
        directory.clearDirFlag(PathAllDirItemInfo::kChangedWithNewStamp);
        ListingReader& listing = frame.listing.emplace(*directory.path(), directory);
        if (!frame.read.current()) return;
        directory.files.reserve(
            listing.countFiles());  // most are never read again: no room to spare
        listing.prefetchNames();
    }

    ReadFrame& push(PathAllDirItemInfo& directory, bool frozen, bool nested) {
        try {
            return frames_.emplace_back(directory, frozen, nested);
        } catch (...) {
            ReadInProgress(directory).breakOff();
            throw;
        }
    }

    void step() {
        ReadFrame& frame = frames_.back();
        ListingEntry entry;
        if (!frame.read.current()) {
            frames_.pop_back();
        } else if (!frame.listing->next(entry)) {
            end();
        } else if (frame.read.current()) {
            PathItemInfo* const child = MakeChild(frame.read.directory(), entry);
            PathAllDirItemInfo* const special = child != nullptr ? child->asDirectory() : nullptr;
            if (special != nullptr) begin(*special, frame.frozen, true);
        }
    }

    void end() {
        ReadFrame done = std::move(frames_.back());
        frames_.pop_back();
        PathAllDirItemInfo& directory = done.read.directory();
        const bool freeze = directory.loadState == PathAllDirItemInfo::kNeverRead && done.frozen;
        done.read.finish(freeze ? PathAllDirItemInfo::kFrozen : PathAllDirItemInfo::kRead);
        done.listing.reset();
        PathMgr* const path = directory.path();
        if (done.nested && path != nullptr && !path->suppressChangeNotify) {
            path->raiseEvent(vpEventDirAdded, &directory);
        }
    }

    HkVector<ReadFrame> frames_;
};

}  // namespace

PathItemInfo* MakeChild(PathAllDirItemInfo& directory, const ListingEntry& entry) {
    switch (entry.kind) {
        case EntryKind::kFile:
            return PathFileItemInfo::Create(directory, entry.name, entry.kindConfirmed,
                                            directory.dirKind == vpDirTypePrivate
                                                ? PathFileItemInfo::kNotClassdef
                                                : entry.classdef);
        case EntryKind::kPlainSubDir:
            if (!KeepsSubDirs(directory)) return nullptr;
            return PathSubDirItemInfo::Create(directory, entry.name, entry.kindConfirmed);
        case EntryKind::kPrivateDir:
            if (directory.dirKind == vpDirTypePrivate) return nullptr;
            return PathPrivateDirItemInfo::Create(directory, entry.name, entry.kindConfirmed);
        case EntryKind::kClassDir:
            if (!KeepsSpecialDirs(directory)) return nullptr;
            return PathClassDirItemInfo::Create(directory, entry.bareName(), entry.kindConfirmed);
        case EntryKind::kPackageDir:
            break;
    }
    if (!KeepsSpecialDirs(directory)) return nullptr;
    return PathPackageDirItemInfo::Create(directory, entry.bareName(), entry.kindConfirmed);
}

void ReadDirectory(PathAllDirItemInfo& directory, bool frozen) {
    PathMgr* const path = directory.path();
    if (path == nullptr) return;
    const vpPath whileReading(path);
    DepthFirstRead().run(directory, frozen);
}
