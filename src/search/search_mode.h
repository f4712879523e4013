// What a call of a search asks for, as masks over the places where matches can stand.
#pragma once

#include <cstdint>

#include "dir/child_index.h"
#include "dir/item.h"

struct SearchMode {
    uint32_t categories;  // bit i admits NameCategory i: for iterators over the path
    uint32_t lists;       // bit i admits ChildList i: for iterators over one directory

    bool admits(NameCategory category) const {
        return ((categories >> static_cast<unsigned>(category)) & 1U) != 0;
    }
    bool admits(ChildList list) const { return ((lists >> static_cast<unsigned>(list)) & 1U) != 0; }
};

template <class... Places>
constexpr uint32_t MaskOf(Places... places) {
    return ((1U << static_cast<unsigned>(places)) | ...);
}

inline constexpr SearchMode kFindFiles{
    MaskOf(NameCategory::kFileInPathDir, NameCategory::kFileInPrivateDir,
           NameCategory::kFileElsewhere),
    MaskOf(ChildList::kFiles)};
inline constexpr SearchMode kFindDirs{
    MaskOf(NameCategory::kPrivateDir, NameCategory::kPackageInPathDir,
           NameCategory::kClassInPathDir, NameCategory::kPackageElsewhere,
           NameCategory::kClassElsewhere, NameCategory::kPathDir),
    MaskOf(ChildList::kPackages, ChildList::kClasses, ChildList::kPrivate, ChildList::kSubDirs)};
// Files are not answered, but gone past.
inline constexpr SearchMode kFindSubDirs{
    MaskOf(NameCategory::kFileInPathDir, NameCategory::kFileInPrivateDir,
           NameCategory::kFileElsewhere, NameCategory::kSubDirInPathDir,
           NameCategory::kSubDirElsewhere),
    MaskOf(ChildList::kSubDirs)};
inline constexpr SearchMode kFindFilesAndSubDirs{
    MaskOf(NameCategory::kFileInPathDir, NameCategory::kSubDirInPathDir,
           NameCategory::kSubDirElsewhere),
    MaskOf(ChildList::kFiles, ChildList::kSubDirs)};

enum class SearchScope : uint8_t {
    kAll = 1,       // every directory of the path, all places where a name may stand
    kVisible = 2,   // what is visible from one directory
    kMethod = 3,    // class directories across the path
    kPrivate = 4,   // the private directory of one directory
    kDir = 5,       // one directory
    kPathOnly = 6,  // as kAll, less what the current directory holds
};
