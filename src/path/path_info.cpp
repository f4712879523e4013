#include "path/path_info.h"

#include <memory>

#include <vpath/pathname.h>

#include "base/reporting.h"
#include "dir/directory_reader.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"

PathDirItemInfo* PathInfo::known(std::string_view fullName) const {
    return known_.find(fullName, path_.caseSensitive);
}

PathDirItemInfo* PathInfo::findAdded(std::string_view fullName) const {
    PathDirItemInfo* const directory = known(fullName);
    return directory != nullptr && directory->onPath() ? directory : nullptr;
}

PathDirItemInfo* PathInfo::findOnPath(std::string_view fullName) const {
    if (PathDirItemInfo* const added = findAdded(fullName)) return added;
    return isCurrent(fullName) ? directories.current() : nullptr;
}

bool PathInfo::isCurrent(std::string_view fullName) const {
    const PathDirItemInfo* const current = directories.current();
    return current != nullptr && SameName(current->fullNameView(), fullName, path_.caseSensitive);
}

PathDirItemInfo* PathInfo::addDir(const char* fullName, bool atBeginning) {
    const auto onPathAlready = [&] {
        if (findAdded(fullName) == nullptr) return false;
        ReportWarning("Duplicate directory name: %s", fullName);
        return true;
    };
    if (onPathAlready() || !mayBeAdded(fullName)) return nullptr;
    // The accessibility callback may have called back in: everything is looked up anew.
    if (!path_.valid || onPathAlready()) return nullptr;
    PathDirItemInfo* directory = known(fullName);
    const bool isNew = directory == nullptr;
    if (isNew) {
        std::unique_ptr<PathDirItemInfo> made(
            vpIsAbsolutePath(fullName) ? PathDirItemInfo::Create(path_, fullName)
                                       : PathRelativeDirItemInfo::Create(path_, fullName));
        known_.insert(*made);
        directory = made.release();
        if (directory->isRelative()) ++relativeDirs_;
    }
    const ItemRef<PathDirItemInfo> hold(directory);
    // What was under way when it left the path may have written a state since.
    directory->loadState = PathAllDirItemInfo::kNeverRead;
    enter(*directory, atBeginning);
    ReadDirectory(*directory, path_.freezeAllAdded || directory->underToolboxRoot);
    if (isNew && directory->onPath()) path_.raiseEvent(vpEventDirAdded, directory);
    return directory->onPath() ? directory : nullptr;
}

bool PathInfo::mayBeAdded(const char* fullName) {
    const HkString last(LastComponent(fullName));
    const bool markAlone = last == "@" || last == "+";  // an ordinary name
    const char* refusal = nullptr;
    if (!markAlone && vpIsDirNameMethodDirName(last.c_str())) {
        refusal = "Method directories not allowed in VESPRA path: %s";
    } else if (!markAlone && vpIsDirNamePackageDirName(last.c_str())) {
        refusal = "Package directories not allowed in VESPRA path: %s";
    } else if (CompareNames(last.c_str(), "private", path_.caseSensitive) == 0) {
        refusal = "Private directories not allowed in VESPRA path: %s";
    } else {
        switch (path_.accessibility(fullName)) {
            case vpDirAccessible:
                return true;
            case vpDirPermissionDenied:
                refusal = "Directory permission denied: %s";
                break;
            case vpDirNonexistent:
                refusal = "Name is nonexistent or not a directory: %s";
                break;
            default:
                refusal = "Directory access failure: %s";
                break;
        }
    }
    ReportWarning(refusal, fullName);
    return false;
}

void PathInfo::enter(PathDirItemInfo& directory, bool atBeginning) {
    // The order number comes first: the name lists are ordered by it.
    if (atBeginning) {
        directories.pushFront(directory);
    } else {
        directories.pushBack(directory);
    }
    try {
        directory.enterPath(PathDirItemInfo::Slot::kOnPath);
    } catch (...) {
        directories.remove(directory);
        throw;
    }
}

void PathInfo::removeDir(PathDirItemInfo& directory) {
    const ItemRef<PathDirItemInfo> hold(&directory);
    directories.remove(directory);
    directory.leavePath();
}
