#include "dir/dir_item.h"

#include <cstring>

#include <vpath/path.h>

#include "base/guard.h"
#include "dir/attach.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"

PathAllDirItemInfo::PathAllDirItemInfo(PathAllDirItemInfo* container, bool kindConfirmed,
                                       int kindOfDir)
    : PathItemInfo(container, kindConfirmed),
      top(container != nullptr ? container->top : nullptr),
      dirKind(static_cast<uint8_t>(kindOfDir)) {}

PathAllDirItemInfo::~PathAllDirItemInfo() = default;

const char* PathAllDirItemInfo::getExtension() const { return std::strrchr(baseName(), '.'); }

bool PathAllDirItemInfo::markChanged() {
    if (dirKind == vpDirTypeNone) return false;
    if (hasDirFlag(kReading)) setDirFlag(kMarkedWhileReading);
    const bool waiting = loadState == kToBeTested;
    if (waiting || loadState == kRead) loadState = kChanged;
    return waiting;
}

const char* PathAllDirItemInfo::baseName() const {
    const PathNameInfo* const record = nameRecord != nullptr ? nameRecord : detachedRecord.get();
    return record != nullptr ? record->spelling(spellingIndex) : "";
}

void PathAllDirItemInfo::adopt(PathFileItemInfo& item) {
    files.push_back(&item);
    item.set(kOwned);
}

void PathAllDirItemInfo::adopt(PathSubDirItemInfo& item) {
    subDirs.push_back(&item);
    item.set(kOwned);
}

void PathAllDirItemInfo::adopt(PathClassDirItemInfo& item) {
    item.siblingIndex = static_cast<uint32_t>(classDirs.size());
    classDirs.push_back(&item);
    item.set(kOwned);
}

void PathAllDirItemInfo::adopt(PathPackageDirItemInfo& item) {
    item.siblingIndex = static_cast<uint32_t>(packageDirs.size());
    packageDirs.push_back(&item);
    item.set(kOwned);
}

void PathAllDirItemInfo::adopt(PathPrivateDirItemInfo& item) {
    if (privateDir != nullptr) {
        PathPrivateDirItemInfo* const old = privateDir;
        old->clearContents();
        old->detach();
        old->disown();
    }
    privateDir = &item;
    item.set(kOwned);
    childIndex.drop();
}

void PathAllDirItemInfo::clearContents() {
    // Walks down to a directory without special children, empties it, and steps back up, so that
    // the tree itself is the stack.
    PathAllDirItemInfo* directory = this;
    while (true) {
        if (PathAllDirItemInfo* const child = directory->lastSpecialChild()) {
            directory = child;
            continue;
        }
        directory->dropLeaves();
        if (directory == this) return;
        directory = directory->parent;
        directory->dropLastSpecialChild();
    }
}

PathAllDirItemInfo* PathAllDirItemInfo::lastSpecialChild() const {
    if (privateDir != nullptr) return privateDir;
    if (!classDirs.empty()) return classDirs.back();
    if (!packageDirs.empty()) return packageDirs.back();
    return nullptr;
}

void PathAllDirItemInfo::dropLastSpecialChild() {
    PathAllDirItemInfo* const child = lastSpecialChild();
    child->detach();
    if (child == privateDir) {
        privateDir = nullptr;
    } else if (!classDirs.empty()) {
        classDirs.pop_back();
    } else {
        packageDirs.pop_back();
    }
    child->disown();
}

void PathAllDirItemInfo::dropLeaves() {
    const auto drop = [](auto& list) {
        for (auto* item : list) {
            item->unlinkFromName();
            item->parent = nullptr;
            item->disown();
        }
        list = {};
    };
    drop(files);
    drop(subDirs);
    childIndex.drop();
    // Cursors count a reference to the directory in which they stand.
    PathMgr* const owner = path();
    if (refCount != 0 && owner != nullptr) owner->cursors.contentsCleared(*this);
    ++life;
    clearDirFlag(kReading);
    clearDirFlag(kMarkedWhileReading);
    clearDirFlag(kToBeReadAgain);
    clearDirFlag(kMayHoldTwins);
}

void PathAllDirItemInfo::detach() {
    if (refCount != 0 && detachedName == nullptr) {
        // Letting go must not fail: where memory runs out, which is reported, the name is lost.
        Guarded([this] { detachedName.reset(DuplicateText(FullName(*this).view())); });
        detachedRecord.reset(nameRecord);
    }
    unlinkFromName();
    parent = nullptr;
    top = nullptr;
}

PathPrivateDirItemInfo* PathPrivateDirItemInfo::Create(PathAllDirItemInfo& directory,
                                                       std::string_view name, bool kindConfirmed) {
    std::unique_ptr<PathPrivateDirItemInfo> made(
        new PathPrivateDirItemInfo(&directory, kindConfirmed, vpDirTypePrivate));
    return Attach(std::move(made), name);
}

PathClassDirItemInfo* PathClassDirItemInfo::Create(PathAllDirItemInfo& directory,
                                                   std::string_view name, bool kindConfirmed) {
    std::unique_ptr<PathClassDirItemInfo> made(
        new PathClassDirItemInfo(&directory, kindConfirmed, vpDirTypeClass));
    return Attach(std::move(made), name);
}

NameCategory PathClassDirItemInfo::category() const {
    return has(kInPathDirectory) ? NameCategory::kClassInPathDir : NameCategory::kClassElsewhere;
}

PathPackageDirItemInfo* PathPackageDirItemInfo::Create(PathAllDirItemInfo& directory,
                                                       std::string_view name, bool kindConfirmed) {
    std::unique_ptr<PathPackageDirItemInfo> made(
        new PathPackageDirItemInfo(&directory, kindConfirmed, vpDirTypePackage));
    return Attach(std::move(made), name);
}

NameCategory PathPackageDirItemInfo::category() const {
    return has(kInPathDirectory) ? NameCategory::kPackageInPathDir
                                 : NameCategory::kPackageElsewhere;
}

PathAllDirItemInfo* NextInTree(PathAllDirItemInfo& directory, const PathAllDirItemInfo& top) {
    if (!directory.packageDirs.empty()) return directory.packageDirs.front();
    if (!directory.classDirs.empty()) return directory.classDirs.front();
    if (directory.privateDir != nullptr) return directory.privateDir;
    for (PathAllDirItemInfo* at = &directory; at != &top; at = at->parent) {
        PathAllDirItemInfo* const parent = at->parent;
        if (parent == nullptr) return nullptr;
        const size_t following = size_t{at->siblingIndex} + 1;
        if (at->dirKind == vpDirTypePackage) {
            if (following < parent->packageDirs.size()) return parent->packageDirs[following];
            if (!parent->classDirs.empty()) return parent->classDirs.front();
        } else if (at->dirKind == vpDirTypeClass && following < parent->classDirs.size()) {
            return parent->classDirs[following];
        }
        if (at->dirKind != vpDirTypePrivate && parent->privateDir != nullptr) {
            return parent->privateDir;
        }
    }
    return nullptr;
}
