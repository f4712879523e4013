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
    const bool marked = IsMark(component.front());
    return marked ? component.size() > 1 : IsPrivateName(component);
}

// Without the separators at the end of a name that is not the root.
std::string_view WithoutFinalSlashes(std::string_view name) {
    while (name.size() > 1 && name.back() == '/') name.remove_suffix(1);
    return name;
}

// Calls `take` with each way to cut `fullName` in front of a special component, so that `base` may
// be the name of a directory of the path and `below` special directories beneath it; longest base
// first.
template <class Take>
void ForEachCut(std::string_view fullName, Take take) {
    std::string_view base = fullName;
    while (true) {
        const size_t slash = base.rfind('/');
        if (slash == std::string_view::npos || !IsSpecialComponent(base.substr(slash + 1))) return;
        base = WithoutFinalSlashes(fullName.substr(0, slash + 1));
        take(base, fullName.substr(base == "/" ? 1 : base.size() + 1));
    }
}

using Directories = HkVector<PathAllDirItemInfo*>;

// Adds the special directories in `parent` that `component` names under the path's case rule.
void AddMatches(PathMgr& path, PathAllDirItemInfo& parent, std::string_view component,
                Directories& matches) {
    const bool marked = IsMark(component.front());
    const std::string_view name = marked ? component.substr(1) : component;
    const auto addIfNamed = [&](PathAllDirItemInfo* directory) {
        if (SameName(directory->baseName(), name, path.caseSensitive)) matches.push_back(directory);
    };
    if (!marked) {
        if (parent.privateDir != nullptr) addIfNamed(parent.privateDir);
        return;
    }
    const PathNameInfo* const record = path.nameTable.lookup(name);
    if (record == nullptr) return;
    const ChildList list = component.front() == '@' ? ChildList::kClasses : ChildList::kPackages;
    ChildIndex& index = parent.childIndex;
    for (size_t at = index.next(parent, record, list, 0); at != ChildIndex::kNone;
         at = index.next(parent, record, list, at + 1)) {
        addIfNamed(ChildAt(parent, list, at)->asDirectory());
    }
}

// How far special components lead from a directory of the path.
struct Reached {
    PathAllDirItemInfo* directory = nullptr;
    size_t remaining = static_cast<size_t>(-1);  // bytes of the name that lead nowhere
};

// Follows `below` from `base`. Under a case-blind rule more than one directory may match on the
// way: all are followed.
Reached Descend(PathMgr& path, PathAllDirItemInfo& base, std::string_view below) {
    Directories level{&base};
    while (!below.empty()) {
        const size_t end = std::min(below.find('/'), below.size());
        if (end == 0) break;  // a doubled separator: no name that is known has one there
        Directories next;
        for (PathAllDirItemInfo* directory : level) {
            AddMatches(path, *directory, below.substr(0, end), next);
        }
        if (next.empty()) break;
        level = std::move(next);
        below.remove_prefix(std::min(end + 1, below.size()));
    }
    return {level.front(), below.size()};
}

// The directory that special components at the end of `fullName` lead nearest to. Of two as near,
// the one earlier on the path.
Reached FollowSpecial(PathMgr& path, std::string_view fullName) {
    Reached best;
    const auto consider = [&](PathDirItemInfo* base, std::string_view below) {
        if (base == nullptr) return;
        const Reached reached = Descend(path, *base, below);
        const bool nearer = best.directory == nullptr || reached.remaining < best.remaining;
        const bool earlier = best.directory != nullptr && reached.remaining == best.remaining &&
                             reached.directory->topDir()->order < best.directory->topDir()->order;
        if (nearer || earlier) best = reached;
    };
    ForEachCut(fullName, [&](std::string_view base, std::string_view below) {
        const bool inCurrent = path.contents.isCurrent(base);
        consider(inCurrent ? path.contents.directories.current() : nullptr, below);
        consider(path.contents.findAdded(base), below);
    });
    return best;
}

}  // namespace

PathAllDirItemInfo* FindDirectory(PathMgr& path, std::string_view fullName) {
    if (fullName.empty()) return nullptr;
    const Reached special = FollowSpecial(path, fullName);
    return special.remaining == 0 ? special.directory : path.contents.findOnPath(fullName);
}

PathAllDirItemInfo* FindDirectoryAbove(PathMgr& path, std::string_view fullName) {
    const Reached nearest = FollowSpecial(path, fullName);
    if (nearest.directory == nullptr) return nullptr;
    const std::string_view known = fullName.substr(0, fullName.size() - nearest.remaining);
    std::string_view above = fullName;
    while (above.size() > known.size()) {
        const std::string_view component = LastComponent(above);
        const bool marked = IsMark(component.front());
        if (!marked && !SameName(component, "private", path.caseSensitive)) return nullptr;
        above = WithoutFinalSlashes(DirectoryPart(above));
    }
    // Of two that are as near, the one that its own name finds.
    return FindDirectory(path, above);
}

PathAllDirItemInfo* FindDirectoryByName(PathMgr& path, const char* name) {
    if (name == nullptr || *name == '\0') return nullptr;
    char* text = nullptr;
    const int length = NormalizeDirNameOrReport(name, false, &text);
    const NormalizedName normalized(text);
    return FindDirectory(path, {text, static_cast<size_t>(length)});
}

PathAllDirItemInfo* FindDirectoryOfFile(PathMgr& path, const char* fileName) {
    return FindDirectoryByName(path, HkString(DirectoryPart(TextOf(fileName))).c_str());
}

PathAllDirItemInfo* FindDirectoryOfFileSilently(PathMgr& path, const char* fileName) {
    const HkString name(DirectoryPart(TextOf(fileName)));
    char* text = nullptr;
    vpNormalizeDirName(name.c_str(), false, 0, nullptr, &text);
    const NormalizedName normalized(text);
    return FindDirectory(path, TextOf(text));
}
