// Contents of a path that follow the current directory.
#pragma once

#include "path/path_info.h"

class DynamicPathInfo : public PathInfo {
  public:
    using PathInfo::PathInfo;

    // Makes `name` (null: the process's directory) the path's current directory. Null on success,
    // else a constant text, with everything as it was.
    const char* setCurrent(const char* name);

    // Takes everything off the path and lets it go.
    void clear();

  private:
    // Both answer false when a callback threw.
    bool replaceCurrent(const char* fullName);
    bool revalidateRelative();
};
