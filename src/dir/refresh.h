// Refreshing directories, and the marks and states that decide what a refresh does.
#pragma once

class PathAllDirItemInfo;
class PathDirItemInfo;
class PathMgr;

// Refreshes a directory and, preorder, the special directories beneath it, as the type says (see
// vpDirRefreshType). True when any was read again. A frozen directory stays frozen.
bool RefreshDirectory(PathAllDirItemInfo& directory, int type);

void RefreshAllDirectories(PathMgr& path, int type);

// Freezing and unfreezing a directory and everything beneath it. The current directory cannot be
// frozen.
void FreezeDirectory(PathAllDirItemInfo& directory);
void UnfreezeDirectory(PathAllDirItemInfo& directory);

// After the current directory changed, a relative directory is another one: it and everything
// beneath it is read again.
void RevalidateRelativeDirectory(PathDirItemInfo& directory);
