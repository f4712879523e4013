#include "path/known_directories.h"

#include "dir/path_dir_item.h"
#include "pathname/compare.h"
#include "pathname/folded_name.h"

PathDirItemInfo* KnownDirectories::find(std::string_view fullName, bool caseSensitive) const {
    const auto [from, to] = byHash_.equal_range(FoldedName(fullName).hash());
    PathDirItemInfo* removed = nullptr;
    for (auto entry = from; entry != to; ++entry) {
        PathDirItemInfo* const directory = entry->second;
        if (!SameName(directory->fullNameView(), fullName, caseSensitive)) continue;
        if (directory->onPath()) return directory;
        removed = directory;
    }
    return removed;
}

void KnownDirectories::insert(PathDirItemInfo& directory) {
    byHash_.emplace(directory.foldedNameHash, &directory);
    directory.set(PathItemInfo::kOwned);
}

void KnownDirectories::clear() {
    for (const auto& entry : byHash_) {
        entry.second->leavePath();
        entry.second->owner = nullptr;
        entry.second->disown();
    }
    byHash_.clear();
}
