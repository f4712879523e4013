#include "dir/time_stamps.h"

#include <vpath/path.h>

#include "dir/clock.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"

namespace {

int64_t HostTimeOf(PathAllDirItemInfo& directory) {
    if (directory.dirKind == vpDirTypePath) {
        auto& onPath = static_cast<PathDirItemInfo&>(directory);
        return onPath.owner->modificationTime(onPath.fullName());
    }
    const FullName fullName(directory);
    return directory.path()->modificationTime(fullName.text());
}

}  // namespace

void ReadStampAfterLoad(PathAllDirItemInfo& directory) {
    directory.changeCount = 1;
    directory.stampMode = kStampModeLoaded;
    directory.timeStamp = HostTimeOf(directory);
    const int64_t now = CurrentSeconds();
    // The two-second rule: what changes later in the second of the stamp leaves the stamp as it is.
    if (directory.timeStamp >= now - 1) directory.timeStamp = now - 2;
}

bool CompareStamp(PathAllDirItemInfo& directory) {
    const int64_t time = HostTimeOf(directory);
    const bool recording = directory.stampMode <= kStampModeOpen;
    if (time == directory.timeStamp && directory.loadState != PathAllDirItemInfo::kChanged) {
        if (directory.loadState == PathAllDirItemInfo::kToBeTested) {
            directory.loadState = PathAllDirItemInfo::kRead;
        }
        if (recording) ++directory.changeCount;
        return false;
    }
    const int64_t now = CurrentSeconds();
    if (time != directory.timeStamp && (time == now || time == now - 1)) return true;
    ++directory.changeCount;
    if (time != 0 && time != directory.timeStamp) {
        directory.setDirFlag(PathAllDirItemInfo::kChangedWithNewStamp);
        if (recording) directory.timeStamp = time;
    }
    directory.loadState = PathAllDirItemInfo::kChanged;
    return true;
}
