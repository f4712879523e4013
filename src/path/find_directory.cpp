#include "path/find_directory.h"

#include <algorithm>

#include <vpath/path.h>

#include "dir/name_record.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"
#include "pathname/normalize.h"
#include "pathname/normalized_name.h"
#include "pathname/text.h"

namespace {

bool IsSpecialComponent(std::string_view component) {
    if (component.empty()) return false;
    const bool marked = component.front() == '@' || component.front() == '+';
    return marked ? component.size() > 1 : IsPrivateName(component);
}

// A full name taken apart at its special components, from the end: each prefix in front of one may
// be the name of a directory of the path, with special directories below it.
struct Split {
    std::string_view base;   // without a final '/'
    std::string_view below;  // special components, separated by '/'
};

// Moves the last component of split.base to split.below; false when it is not special.
bool SplitOne(Split& split, std::string_view fullName) {
    const size_t slash = split.base.rfind('/');
    if (slash == std::string_view::npos || slash + 1 == split.base.size()) return false;
    if (!IsSpecialComponent(split.base.substr(slash + 1))) return false;
    split.below = fullName.substr(slash + 1);
    split.base = fullName.substr(0, slash == 0 ? 1 : slash);
    return true;
}

using Directories = HkVector<PathAllDirItemInfo*>;

// Adds the special directories in `parent` that `component` names under the path's case rule.
void AddMatches(PathMgr& path, PathAllDirItemInfo& parent, std::string_view component,
                Directories& matches) {
    const bool marked = component.front() == '@' || component.front() == '+';
    const std::string_view name = marked ? component.substr(1) : component;
    const auto isNamed = [&](const PathAllDirItemInfo& directory) {
        return SameName(directory.baseName(), name, path.caseSensitive);
    };
    if (!marked) {
        if (parent.privateDir != nullptr && isNamed(*parent.privateDir)) {
            matches.push_back(parent.privateDir);
        }
        return;
    }
    const PathNameInfo* const record = path.nameTable.lookup(name);
    if (record == nullptr) return;
    const ChildList wanted = component.front() == '@' ? ChildList::kClasses : ChildList::kPackages;
    for (const ChildIndex::Entry& entry : parent.childIndex.find(parent, record)) {
        if (entry.list != wanted) continue;
        PathAllDirItemInfo* const child = ChildAt(parent, entry.list, entry.index)->asDirectory();
        if (isNamed(*child)) matches.push_back(child);
    }
}

// The directory that the special components `below` lead to from `base`, or null. Under a
// case-blind rule more than one may match on the way: all are followed.
PathAllDirItemInfo* Descend(PathMgr& path, PathAllDirItemInfo& base, std::string_view below) {
    Directories level{&base};
    while (!below.empty() && !level.empty()) {
        const size_t end = std::min(below.find('/'), below.size());
        const std::string_view component = below.substr(0, end);
        below.remove_prefix(std::min(end + 1, below.size()));
        Directories next;
        for (PathAllDirItemInfo* directory : level) AddMatches(path, *directory, component, next);
        level = std::move(next);
    }
    return level.empty() ? nullptr : level.front();
}

PathAllDirItemInfo* FindSpecial(PathMgr& path, std::string_view fullName) {
    PathDirItemInfo* const current = path.contents.directories.current();
    PathAllDirItemInfo* best = nullptr;
    Split split{fullName, {}};
    while (SplitOne(split, fullName)) {
        if (path.contents.isCurrent(split.base)) {
            if (PathAllDirItemInfo* const found = Descend(path, *current, split.below)) {
                return found;  // nothing comes before the current directory
            }
        }
        PathDirItemInfo* const added = path.contents.findAdded(split.base);
        PathAllDirItemInfo* const found =
            added != nullptr ? Descend(path, *added, split.below) : nullptr;
        if (found != nullptr &&
            (best == nullptr || found->topDir()->order < best->topDir()->order)) {
            best = found;
        }
    }
    return best;
}

}  // namespace

PathAllDirItemInfo* FindDirectory(PathMgr& path, std::string_view fullName) {
    if (fullName.empty()) return nullptr;
    if (PathAllDirItemInfo* const special = FindSpecial(path, fullName)) return special;
    return path.contents.findOnPath(fullName);
}

PathAllDirItemInfo* FindDirectoryByName(PathMgr& path, const char* name) {
    if (name == nullptr || *name == '\0') return nullptr;
    char* text = nullptr;
    const int length = NormalizeDirNameOrReport(name, false, &text);
    const NormalizedName normalized(text);
    if (length == 0) return nullptr;
    return FindDirectory(path, {text, static_cast<size_t>(length)});
}

PathAllDirItemInfo* FindDirectoryOfFile(PathMgr& path, const char* fileName) {
    return FindDirectoryByName(path, HkString(DirectoryPart(TextOf(fileName))).c_str());
}
