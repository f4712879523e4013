#include <utility>

#include <vpath/path.h>

#include "dir/dir_item.h"
#include "path/path_mgr.h"

const uint16_t VPathConstants::U16_OOPSENTINEL = 0x0040;

// Taking the new target before letting the old one go keeps both alive when they are the same.

vpPath::vpPath() : target_(nullptr) {}

vpPath::vpPath(PathMgr* path) : target_(path != nullptr && path->valid ? path : nullptr) {
    if (target_ != nullptr) target_->acquire();
}

vpPath::vpPath(const vpPath& other) : target_(other.target_) {
    if (target_ != nullptr) target_->acquire();
}

vpPath::~vpPath() {
    if (target_ != nullptr) target_->drop();
}

vpPath& vpPath::operator=(const vpPath& other) {
    if (this != &other) copy(other);
    return *this;
}

vpPath& vpPath::operator=(PathMgr* path) {
    if (path != nullptr) path->acquire();
    PathMgr* const old = std::exchange(target_, path);
    if (old != nullptr) old->drop();
    return *this;
}

void vpPath::copy(const vpPath& other) { *this = other.target_; }

bool vpPath::operator==(const PathMgr* path) const { return target_ == path; }

bool vpPath::operator==(const vpPath& other) const { return target_ == other.target_; }

vpPath::operator const PathMgr*() const { return target_; }

vpDir::vpDir() : target_(nullptr) {}

vpDir::vpDir(PathAllDirItemInfo* dir) : target_(dir) {
    if (target_ != nullptr) ++target_->refCount;
}

vpDir::vpDir(const vpDir& other) : vpDir(other.target_) {}

vpDir::~vpDir() {
    if (target_ == nullptr) return;
    --target_->refCount;
    target_->release();
}

vpDir& vpDir::operator=(const vpDir& other) {
    if (this != &other) copy(other);
    return *this;
}

vpDir& vpDir::operator=(PathAllDirItemInfo* dir) {
    if (dir != nullptr) ++dir->refCount;
    PathAllDirItemInfo* const old = std::exchange(target_, dir);
    if (old != nullptr) {
        --old->refCount;
        old->release();
    }
    return *this;
}

void vpDir::copy(const vpDir& other) { *this = other.target_; }
