#include "vpath_posix/posix_host.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace {

vpDirAccessibility AccessibilityOfErrno() {
    switch (errno) {
        case EACCES:
        case EPERM:
            return vpDirPermissionDenied;
        case ENOENT:
        case ENOTDIR:
        case ENAMETOOLONG:
            return vpDirNonexistent;
        default:
            return vpDirInaccessible;
    }
}

}  // namespace

bool vpInstallPosixHost() {
    return vpSetDefaultIOFcnsNew(vpPosixListDirectory, vpPosixAccessibility, vpPosixIsReadable,
                                 vpPosixIsDirectory, vpPosixModificationTime,
                                 vpPosixChangeDirectory);
}

vpDirAccessibility vpPosixAccessibility(vpPath, const char* dirName) {
    struct stat status;
    if (dirName == nullptr) return vpDirNonexistent;
    if (stat(dirName, &status) != 0) return AccessibilityOfErrno();
    if (!S_ISDIR(status.st_mode)) return vpDirNonexistent;
    return access(dirName, R_OK | X_OK) == 0 ? vpDirAccessible : AccessibilityOfErrno();
}

bool vpPosixIsReadable(const char* name) { return name != nullptr && access(name, R_OK) == 0; }

bool vpPosixIsDirectory(vpPath, const char* name) {
    struct stat status;
    return name != nullptr && stat(name, &status) == 0 && S_ISDIR(status.st_mode);
}

long vpPosixModificationTime(vpPath, const char* name) {
    struct stat status;
    if (name == nullptr || stat(name, &status) != 0) return 0;
    return std::min<long>(status.st_mtime, time(nullptr));
}

int vpPosixChangeDirectory(const char* dirName) {
    if (dirName == nullptr) return -1;
    return chdir(dirName);
}
