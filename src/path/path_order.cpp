#include "path/path_order.h"

#include "dir/path_dir_item.h"

PathDirItemInfo* PathOrder::nextAfter(const PathDirItemInfo& directory) const {
    if (directory.slot == PathDirItemInfo::Slot::kCurrent) return first_;
    if (directory.slot == PathDirItemInfo::Slot::kOnPath) return directory.nextOnPath;
    PathDirItemInfo* at = first_;
    while (at != nullptr && at->order <= directory.order) at = at->nextOnPath;
    return at;
}

void PathOrder::setCurrent(PathDirItemInfo* directory) {
    current_ = directory;
    if (directory != nullptr) directory->order = PathDirItemInfo::kOrderOfCurrent;
}

void PathOrder::pushFront(PathDirItemInfo& directory) {
    directory.order = first_ != nullptr ? first_->order - 1 : 0;
    directory.prevOnPath = nullptr;
    directory.nextOnPath = first_;
    (first_ != nullptr ? first_->prevOnPath : last_) = &directory;
    first_ = &directory;
    ++added_;
    ++entries_;
}

void PathOrder::pushBack(PathDirItemInfo& directory) {
    directory.order = last_ != nullptr ? last_->order + 1 : 0;
    directory.nextOnPath = nullptr;
    directory.prevOnPath = last_;
    (last_ != nullptr ? last_->nextOnPath : first_) = &directory;
    last_ = &directory;
    ++added_;
    ++entries_;
}

void PathOrder::remove(PathDirItemInfo& directory) {
    PathDirItemInfo* const next = directory.nextOnPath;
    PathDirItemInfo* const prev = directory.prevOnPath;
    (prev != nullptr ? prev->nextOnPath : first_) = next;
    (next != nullptr ? next->prevOnPath : last_) = prev;
    directory.nextOnPath = nullptr;
    directory.prevOnPath = nullptr;
    --added_;
}

bool PathOrder::moveToBack(PathDirItemInfo& directory) {
    if (&directory == last_) return false;
    remove(directory);
    pushBack(directory);
    moved_ = true;
    return true;
}
