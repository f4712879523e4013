// The contents of a path: its directories in search order.
#pragma once

#include <string_view>

#include "path/known_directories.h"
#include "path/path_order.h"

class PathDirItemInfo;
class PathMgr;

class PathInfo {
  public:
    explicit PathInfo(PathMgr& path) : path_(path) {}
    PathInfo(const PathInfo&) = delete;
    PathInfo& operator=(const PathInfo&) = delete;

    // Adds the directory of a normalised name and reads it; or brings one back that was removed.
    // Null when it is refused or on the path already, with a warning.
    PathDirItemInfo* addDir(const char* fullName, bool atBeginning);

    void removeDir(PathDirItemInfo& directory);

    // The directory of that full name on the path: an added one first, then the current one.
    PathDirItemInfo* findOnPath(std::string_view fullName) const;
    // Whether that is the current directory's full name.
    bool isCurrent(std::string_view fullName) const;
    // An added one alone.
    PathDirItemInfo* findAdded(std::string_view fullName) const;

    PathOrder directories;

  protected:
    PathMgr& path_;
    KnownDirectories known_;
    size_t relativeDirs_ = 0;  // among the known ones

  private:
    PathDirItemInfo* known(std::string_view fullName) const;
    bool mayBeAdded(const char* fullName);
    void enter(PathDirItemInfo& directory, bool atBeginning);
};
