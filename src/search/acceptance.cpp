#include "search/acceptance.h"

#include <vpath/path.h>

#include "dir/path_dir_item.h"
#include "pathname/components.h"
#include "search/search_name.h"

namespace {

bool IsSame(char a, char b, bool caseSensitive) {
    return caseSensitive ? a == b : FoldedByte(a) == FoldedByte(b);
}

}  // namespace

bool IsWithinReach(const PathAllDirItemInfo& holder, int separatorCount) {
    const PathAllDirItemInfo* at = &holder;
    int depth = 0;
    const auto stepUp = [&] {
        at = at->parent;
        ++depth;
    };
    while (at != nullptr && (at->kind() == vpDirTypeNone || at->kind() > vpDirTypePackage)) {
        stepUp();
    }
    if (at != nullptr && at->kind() == vpDirTypePackage) {
        while (at != nullptr && at->kind() != vpDirTypeCurrent && at->kind() != vpDirTypePath) {
            stepUp();
        }
    }
    return depth <= separatorCount;
}

bool CarriesMark(std::string_view fullName, const SearchName& name) {
    if (name.mark() == '\0') return true;
    if (fullName.size() < name.baseLength() + 2)
        return false;  // the mark is not the first character
    return fullName[fullName.size() - name.baseLength() - 1] == name.mark();
}

bool LiesInDirectoryPart(std::string_view fullName, const SearchName& name, bool caseSensitive) {
    if (name.directory() == nullptr || *name.directory() == '\0') return true;
    std::string_view wanted = name.directory();
    std::string_view directory = DirectoryPart(fullName);
    while (!wanted.empty()) {
        if (directory.empty()) return false;
        const bool skipsMark = IsMark(directory.back()) && !IsMark(wanted.back());
        if (!skipsMark) {
            if (!IsSame(directory.back(), wanted.back(), caseSensitive)) return false;
            wanted.remove_suffix(1);
        }
        directory.remove_suffix(1);
    }
    if (!directory.empty() && IsMark(directory.back())) directory.remove_suffix(1);
    return directory.empty() || directory.back() == '/';
}
