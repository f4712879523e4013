// What stands behind a handle that the host hands in.
#pragma once

#include <vpath/path.h>

class PathMgr;

// The live path of a handle, or null, quietly.
PathMgr* LivePath(const vpPath& path);

// The same, but a dead or null handle prints "asserted here\n".
PathMgr* AssertLive(const vpPath& path);

// The directory of a handle when it is alive (the null directory included), or null.
PathAllDirItemInfo* LiveDir(const vpDir& dir);

// The same, but the null directory counts as none.
PathAllDirItemInfo* LiveRealDir(const vpDir& dir);

// The path's null directory in a handle; a null handle for null.
vpDir NullDirOf(PathMgr* path);
// The null directory of the path that `dir` is, or was, a directory of; a null handle when the path
// is gone.
vpDir NullDirBeside(const vpDir& dir);
