#include "search/scope_iterator.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <vpath/path.h>

#include "dir/path_dir_item.h"
#include "path/path_mgr.h"

namespace {

constexpr ChildList kBeneath[] = {ChildList::kPackages, ChildList::kClasses, ChildList::kPrivate};

bool HoldsDirectories(const PathAllDirItemInfo& directory) {
    return std::any_of(std::begin(kBeneath), std::end(kBeneath),
                       [&](ChildList list) { return ChildCount(directory, list) != 0; });
}

}  // namespace

ScopeIterator::Level::Level(PathMgr& path, PathAllDirItemInfo& directory) : cursor(path) {
    cursor.start(directory, kBeneath[list]);
}

PathAllDirItemInfo* ScopeIterator::Level::next() {
    while (true) {
        if (PathItemInfo* const child = cursor.next()) return child->asDirectory();
        if (++list == std::size(kBeneath)) return nullptr;
        cursor.start(*cursor.directory(), kBeneath[list]);
    }
}

ScopeIterator::ScopeIterator(PathMgr& path, SearchScope scope, PathAllDirItemInfo& start)
    : path_(path), scope_(scope), walksPath_(false), cursor_(path) {
    switch (scope) {
        case SearchScope::kDir:
            enter(start.dirKind != vpDirTypeNone ? &start : nullptr);
            break;
        case SearchScope::kPrivate:
            enter(start.privateDir);
            break;
        case SearchScope::kVisible:  // its own private directory, then the path
            enter(start.privateDir);
            if (!at_) nextDirectory();
            break;
        default:
            nextDirectory();
            break;
    }
}

PathItemInfo* ScopeIterator::next(const SearchMode& mode) {
    while (at_ && path_.valid) {
        if (list_ == kChildLists) {
            nextDirectory();
            continue;
        }
        const auto list = static_cast<ChildList>(list_);
        PathItemInfo* const item = mode.admits(list) && takesList(list) ? cursor_.next() : nullptr;
        if (item == nullptr) {
            if (++list_ < kChildLists) cursor_.start(*at_, static_cast<ChildList>(list_));
        } else if (ConfirmCandidate(path_, *item)) {
            return item;
        }
    }
    return nullptr;
}

void ScopeIterator::enter(PathAllDirItemInfo* directory) {
    at_.reset(directory);
    list_ = 0;
    if (directory != nullptr) cursor_.start(*directory, static_cast<ChildList>(list_));
}

// Moves on to the next directory of the scope; false, and at the end, when there is none.
bool ScopeIterator::nextDirectory() {
    do {
        enter(following());
    } while (at_ && !takesDirectory(*at_));
    return static_cast<bool>(at_);
}

PathAllDirItemInfo* ScopeIterator::following() {
    if (scope_ == SearchScope::kDir || scope_ == SearchScope::kPrivate) return nullptr;
    const PathOrder& order = path_.contents.directories;
    if (!walksPath_) {
        walksPath_ = true;
        top_.reset(order.first());
        return top_.get();
    }
    const ItemRef<PathAllDirItemInfo> left = std::exchange(at_, {});  // memory may run out: the end
    const bool goesBeneath = scope_ != SearchScope::kVisible;
    if (goesBeneath && left && HoldsDirectories(*left)) {
        levels_.push_back(std::make_unique<Level>(path_, *left));
    }
    for (; !levels_.empty(); levels_.pop_back()) {
        if (PathAllDirItemInfo* const beneath = levels_.back()->next()) return beneath;
    }
    top_.reset(order.nextAfter(*top_));
    return top_.get();
}

bool ScopeIterator::takesDirectory(const PathAllDirItemInfo& directory) const {
    switch (scope_) {
        case SearchScope::kPathOnly:
            return directory.kind() != vpDirTypeCurrent;
        // The class directories, and of the others the class directories that they hold.
        case SearchScope::kMethod:
            return directory.dirKind != vpDirTypePrivate;
        default:
            return true;
    }
}

bool ScopeIterator::takesList(ChildList list) const {
    if (scope_ == SearchScope::kVisible && walksPath_) return list != ChildList::kPrivate;
    if (scope_ != SearchScope::kMethod) return true;
    return at_->dirKind == vpDirTypeClass ? list == ChildList::kFiles : list == ChildList::kClasses;
}
