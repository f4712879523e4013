#include "search/name_iterators.h"

#include <vpath/path.h>

#include "dir/full_name.h"
#include "dir/name_record.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"

namespace {

using enum NameCategory;

// In which order the lists come. A plain name is looked for among the files of the path before
// anything that lies deeper; a visible name reaches nothing that lies deeper; a method name nothing
// else.
constexpr NameCategory kOrderAll[] = {
    kFileInPathDir,    kFileElsewhere,  kFileInPrivateDir, kSubDirInPathDir,
    kPackageInPathDir, kClassInPathDir, kSubDirElsewhere,  kPackageElsewhere,
    kClassElsewhere,   kPathDir,        kPrivateDir,
};
constexpr NameCategory kOrderVisible[] = {
    kFileInPathDir, kPathDir, kSubDirInPathDir, kPackageInPathDir, kClassInPathDir,
};
constexpr NameCategory kOrderMethod[] = {kFileElsewhere, kClassInPathDir};

std::span<const NameCategory> OrderOf(SearchScope scope) {
    switch (scope) {
        case SearchScope::kVisible:
            return kOrderVisible;
        case SearchScope::kMethod:
            return kOrderMethod;
        default:
            return kOrderAll;
    }
}

bool IsNamed(const PathItemInfo& item, const NameQuery& query) {
    return SameName(item.name(), query.base, query.caseSensitive);
}

}  // namespace

bool ConfirmCandidate(PathMgr& path, PathItemInfo& item) {
    if (!item.isFile() || item.has(PathItemInfo::kKindConfirmed)) return true;
    const ItemRef<PathItemInfo> hold(&item);
    const bool isDirectory = path.isDirectory(FullName(item).text());
    if (!item.has(PathItemInfo::kLinked)) return false;  // the callback let it go
    if (!isDirectory) {
        item.set(PathItemInfo::kKindConfirmed);
        return true;
    }
    item.unlinkFromName();
    item.parent->markChanged();
    return false;
}

NameCategory FirstPlaceOf(SearchScope scope) { return OrderOf(scope).front(); }

bool IsClassName(PathNameInfo& record) {
    const auto holdsAny = [&record](NameCategory category) {
        const NameList* const list = record.list(category);
        return list != nullptr && !list->empty();
    };
    return holdsAny(kClassInPathDir) || holdsAny(kClassElsewhere);
}

GeneralNameIterator::GeneralNameIterator(const NameQuery& query)
    : query_(query), remaining_(OrderOf(query.scope)), cursor_(query.path, query.record) {
    cursor_.start(remaining_.front());
}

PathItemInfo* GeneralNameIterator::next(const SearchMode& mode) {
    while (!remaining_.empty()) {
        PathItemInfo* const item = mode.admits(remaining_.front()) ? cursor_.next() : nullptr;
        if (item == nullptr) {
            remaining_ = remaining_.subspan(1);
            if (!remaining_.empty()) cursor_.start(remaining_.front());
        } else if (matches(*item) && ConfirmCandidate(query_.path, *item)) {
            return item;
        }
    }
    return nullptr;
}

bool GeneralNameIterator::matches(const PathItemInfo& item) const {
    if (!IsNamed(item, query_)) return false;
    return query_.scope != SearchScope::kPathOnly || item.holder().kind() != vpDirTypeCurrent;
}

ConstructorIterator::ConstructorIterator(const NameQuery& query)
    : query_(query), cursor_(query.path, query.record) {
    cursor_.start(kFileElsewhere);
}

PathItemInfo* ConstructorIterator::next(const SearchMode& mode) {
    // Most names are methods of many classes and no class themselves: those are done at once.
    if (!mode.admits(kFileElsewhere) || !IsClassName(query_.record)) return nullptr;
    while (PathItemInfo* const item = cursor_.next()) {
        if (matches(*item) && ConfirmCandidate(query_.path, *item)) return item;
    }
    return nullptr;
}

bool ConstructorIterator::matches(const PathItemInfo& item) const {
    return item.parent->dirKind == vpDirTypeClass && item.parent->nameRecord == &query_.record &&
           IsNamed(item, query_) && IsNamed(*item.parent, query_);
}

DirectoryNameIterator::DirectoryNameIterator(const NameQuery& query, PathAllDirItemInfo& directory)
    : query_(query), cursor_(query.path) {
    cursor_.start(directory, static_cast<ChildList>(list_));
}

PathItemInfo* DirectoryNameIterator::next(const SearchMode& mode) {
    while (list_ < kChildLists) {
        const auto list = static_cast<ChildList>(list_);
        PathItemInfo* const item = mode.admits(list) ? cursor_.next(&query_.record) : nullptr;
        if (item == nullptr) {
            if (++list_ < kChildLists) {
                cursor_.start(*cursor_.directory(), static_cast<ChildList>(list_));
            }
        } else if (IsNamed(*item, query_) && ConfirmCandidate(query_.path, *item)) {
            return item;
        }
    }
    return nullptr;
}
