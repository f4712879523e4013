// The exported walks over class and package directories. Each call takes the last answer and finds
// the next in O(1): a special directory knows its place among its siblings.
#include <vpath/search.h>

#include "base/guard.h"
#include "dir/name_record.h"
#include "dir/path_dir_item.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"

namespace {

// The directory of `list` after `previous`; the first one when `previous` is the parent itself.
template <class Dir>
Dir* NextAmong(const HkVector<Dir*>& list, const PathAllDirItemInfo& parent,
               const PathAllDirItemInfo* previous, int kind) {
    size_t index = 0;
    if (previous != &parent) {
        if (previous == nullptr || previous->parent != &parent || previous->dirKind != kind) {
            return nullptr;
        }
        index = size_t{previous->siblingIndex} + 1;
    }
    return index < list.size() ? list[index] : nullptr;
}

// The first class directory of `from` or of a directory after it on the path.
PathClassDirItemInfo* FirstClassFrom(const PathOrder& order, const PathDirItemInfo* from) {
    while (from != nullptr && from->classDirs.empty()) from = order.nextAfter(*from);
    return from != nullptr ? from->classDirs.front() : nullptr;
}

PathClassDirItemInfo* NextClass(const PathMgr& path, const PathAllDirItemInfo& dir) {
    const PathOrder& order = path.contents.directories;
    if (dir.dirKind != vpDirTypeClass) {
        const bool fromStart = dir.dirKind == vpDirTypeNone;
        return FirstClassFrom(order, fromStart ? order.first() : order.firstAdded());
    }
    const PathAllDirItemInfo& parent = *dir.parent;
    PathClassDirItemInfo* const sibling = NextAmong(parent.classDirs, parent, &dir, vpDirTypeClass);
    return sibling != nullptr ? sibling : FirstClassFrom(order, order.nextAfter(*dir.topDir()));
}

// The first class directory called `className` at `candidate` or after it in its name list.
PathItemInfo* FirstOfClass(const PathMgr& path, PathItemInfo* candidate, const char* className) {
    while (candidate != nullptr &&
           (!candidate->has(PathItemInfo::kInPathDirectory) ||
            CompareNames(candidate->name().data(), className, path.caseSensitive) != 0)) {
        candidate = candidate->next;
    }
    return candidate;
}

PathItemInfo* NextOfClass(PathMgr& path, const PathAllDirItemInfo& dir, const char* className) {
    if (dir.dirKind == vpDirTypeClass) {
        // Reading the list puts it in order.
        dir.nameRecord->list(dir.category())->first(path.orderEpoch());
        return FirstOfClass(path, dir.next, className);
    }
    if (className == nullptr) return nullptr;
    PathNameInfo* const record = path.nameTable.lookup(className);
    NameList* const list =
        record != nullptr ? record->list(NameCategory::kClassInPathDir) : nullptr;
    PathItemInfo* candidate = list != nullptr ? list->first(path.orderEpoch()) : nullptr;
    const PathDirItemInfo* const current = path.contents.directories.current();
    if (candidate != nullptr && candidate->parent == current && (&dir == current || path.hideCwd)) {
        candidate = candidate->next;
    }
    return FirstOfClass(path, candidate, className);
}

// Answers what `find` finds from a live directory, the null directory of its path otherwise.
template <class Find>
vpDir AnswerFrom(const vpDir& dir, Find find) {
    PathAllDirItemInfo* const live = LiveDir(dir);
    if (live == nullptr) return NullDirBeside(dir);
    return Guarded(NullDirOf(live->path()), [&] {
        PathItemInfo* const found = find(*live);
        return found != nullptr ? vpDir(found->asDirectory()) : NullDirOf(live->path());
    });
}

}  // namespace

vpDir vpGetMethodDirs(vpDir dir, vpDir previous) {
    return AnswerFrom(dir, [&](const PathAllDirItemInfo& parent) {
        return NextAmong(parent.classDirs, parent, previous.get(), vpDirTypeClass);
    });
}

vpDir vpGetPackageDirs(vpDir dir, vpDir previous) {
    return AnswerFrom(dir, [&](const PathAllDirItemInfo& parent) {
        return NextAmong(parent.packageDirs, parent, previous.get(), vpDirTypePackage);
    });
}

vpDir vpGetNextMethodDir(vpDir dir) {
    return AnswerFrom(dir,
                      [](const PathAllDirItemInfo& from) { return NextClass(*from.path(), from); });
}

vpDir vpGetNextMethodClassDir(vpDir dir, const char* className) {
    return AnswerFrom(dir, [&](const PathAllDirItemInfo& from) {
        return NextOfClass(*from.path(), from, className);
    });
}
