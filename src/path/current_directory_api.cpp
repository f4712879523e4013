// The exported calls on the current directory.
#include <algorithm>
#include <cstring>
#include <utility>

#include <vpath/path.h>

#include "base/guard.h"
#include "dir/path_dir_item.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"

namespace {

// Empties the current directory's item at once; it is read again, as empty, when it is refreshed.
void HideCurrent(PathMgr& path) {
    path.hideCwd = true;
    PathDirItemInfo* const current = path.contents.directories.current();
    if (current == nullptr) return;
    current->clearContents();
    current->loadState = PathAllDirItemInfo::kChanged;
}

// The next refresh is to read the current directory as it is.
void ShowCurrent(PathMgr& path) {
    const bool wasHidden = std::exchange(path.hideCwd, false);
    PathDirItemInfo* const current = path.contents.directories.current();
    if (!wasHidden || current == nullptr) return;
    current->setDirFlag(PathAllDirItemInfo::kToBeReadAgain);  // should it just be being read
    current->loadState = PathAllDirItemInfo::kChanged;
}

}  // namespace

const char* vpSetCWDName(vpPath path, const char* name) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return nullptr;
    if (name == nullptr) return "No directory specified";
    return Guarded<const char*>("Failed to change current directory",
                                [&] { return live->contents.setCurrent(name); });
}

vpDir vpGetCWD(vpPath path) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return {};
    PathDirItemInfo* const current = live->contents.directories.current();
    return current != nullptr ? vpDir(current) : NullDirOf(live);
}

char* vpGetCWDName(vpPath path, char* buf, unsigned int size) {
    PathMgr* const live = LivePath(path);
    const PathDirItemInfo* const current =
        live != nullptr ? live->contents.directories.current() : nullptr;
    if (current == nullptr || buf == nullptr || size == 0) return nullptr;
    const size_t length = std::min<size_t>(current->fullNameLength, size - 1);
    std::memcpy(buf, current->fullName(), length);
    buf[length] = '\0';
    return buf;
}

void vpHideCWD(vpPath path, bool hide) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return;
    Guarded([&] { hide ? HideCurrent(*live) : ShowCurrent(*live); });
}

bool vpIsCWDOnPath(vpPath path) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return false;
    const PathDirItemInfo* const current = live->contents.directories.current();
    return current != nullptr && Guarded(false, [&] {
               return live->contents.findAdded(current->fullNameView()) != nullptr;
           });
}

bool vpIsPathDirAlsoCWD(const vpDir& dir) {
    PathAllDirItemInfo* const live = LiveRealDir(dir);
    if (live == nullptr || live->kind() != vpDirTypePath) return false;
    const auto& added = static_cast<const PathDirItemInfo&>(*live);
    return added.owner->contents.isCurrent(added.fullNameView());
}
