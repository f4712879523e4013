#include "path/current_directory.h"

#include <cstring>
#include <memory>

#include <vpath/pathname.h>

#include "base/guard.h"
#include "dir/directory_reader.h"
#include "dir/path_dir_item.h"
#include "dir/refresh.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "pathname/normalize.h"
#include "pathname/normalized_name.h"

namespace {

constexpr const char* kFailed = "Failed to change current directory";

const char* RefusalOf(vpDirAccessibility accessibility) {
    switch (accessibility) {
        case vpDirAccessible:
            return nullptr;
        case vpDirPermissionDenied:
            return "Directory permission denied";
        case vpDirNonexistent:
            return "Name is nonexistent or not a directory";
        default:
            return "Directory access failure";
    }
}

// Whether nothing is left of a name when it is normalised: it is empty, or two and more slashes.
bool IsNoName(const char* name) {
    const size_t slashes = std::strspn(name, "/");
    return name[slashes] == '\0' && slashes != 1;
}

// The process's directory at the beginning of a change, restored unless the change is kept. A path
// that does not own the process's directory never moves it.
class ProcessDirectory {
  public:
    explicit ProcessDirectory(const PathMgr& path)
        : changeDir_(path.ownsProcessCwd ? path.io.changeDir : nullptr),
          remembered_(hkGetcwd(buffer_, sizeof buffer_) != nullptr) {}
    ~ProcessDirectory() {
        if (!kept_ && remembered_ && changeDir_ != nullptr) {
            Guarded([this] { changeDir_(buffer_); });
        }
    }
    ProcessDirectory(const ProcessDirectory&) = delete;
    ProcessDirectory& operator=(const ProcessDirectory&) = delete;

    void keep() { kept_ = true; }

  private:
    char buffer_[kLongestDirName + 1];
    vpChangeDirFcn changeDir_;
    bool remembered_;
    bool kept_ = false;
};

}  // namespace

const char* DynamicPathInfo::setCurrent(const char* name) {
    ProcessDirectory process(path_);
    char presentDirectory[kLongestDirName + 1];
    if (name == nullptr) {
        if (hkGetcwd(presentDirectory, sizeof presentDirectory) == nullptr) return kFailed;
        name = presentDirectory;
    } else {
        if (IsNoName(name)) {
            process.keep();
            return kFailed;
        }
        if (hkStrlen(name) > size_t{kLongestDirName}) {
            process.keep();
            return "Directory name too long";
        }
        if (path_.ownsProcessCwd) {
            if (path_.io.changeDir(name) != 0) {
                const char* const refusal = RefusalOf(path_.accessibility(name));
                return refusal != nullptr ? refusal : kFailed;
            }
            if (hkGetcwd(presentDirectory, sizeof presentDirectory) == nullptr) return kFailed;
            name = presentDirectory;
        }
    }
    int length = 0;
    char* text = nullptr;
    const char* const failure = vpNormalizeDirName(name, false, 0, &length, &text);
    const NormalizedName normalized(text);
    if (failure != nullptr || length == 0) return kFailed;
    if (const char* const refusal = RefusalOf(path_.accessibility(text))) return refusal;
    if (!path_.valid) return nullptr;
    path_.raiseEvent(vpEventCWDChangeBegin);
    process.keep();
    if (!path_.valid) return nullptr;
    return replaceCurrent(text) ? nullptr : kFailed;
}

bool DynamicPathInfo::replaceCurrent(const char* fullName) {
    PathDirItemInfo* const old = directories.current();
    const bool frozen = path_.freezeAllAdded || (old != nullptr && old->underToolboxRoot);
    std::unique_ptr<PathDirItemInfo> made(PathDirItemInfo::Create(path_, fullName));
    directories.setCurrent(made.get());
    try {
        made->enterPath(PathDirItemInfo::Slot::kCurrent);
    } catch (...) {
        directories.setCurrent(old);
        throw;
    }
    PathDirItemInfo& current = *made.release();
    current.set(PathItemInfo::kOwned);
    const ItemRef<PathDirItemInfo> hold(&current);
    if (old != nullptr) {
        old->leavePath();
        old->owner = nullptr;
        old->disown();
    }
    // The change is made: whatever a callback throws from here on, the rest of it follows.
    bool whole = Attempt([&] { ReadDirectory(current, frozen); });
    whole &= Attempt([&] {
        if (current.onPath()) path_.raiseEvent(vpEventDirAdded, &current);
    });
    whole &= revalidateRelative();
    whole &= Attempt([&] { path_.raiseEvent(vpEventCWDChangeEnd); });
    return whole;
}

bool DynamicPathInfo::revalidateRelative() {
    if (relativeDirs_ == 0) return true;
    bool whole = true;
    ItemRef<PathDirItemInfo> at(directories.firstAdded());
    while (at && path_.valid) {
        if (at->isRelative()) whole &= Attempt([&] { RevalidateRelativeDirectory(*at); });
        at.reset(directories.nextAfter(*at));
    }
    return whole;
}

void DynamicPathInfo::clear() {
    if (PathDirItemInfo* const current = directories.current()) {
        directories.setCurrent(nullptr);
        current->leavePath();
        current->owner = nullptr;
        current->disown();
    }
    known_.clear();
    directories = PathOrder();
}
