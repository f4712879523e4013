// Writing a cache file.
#pragma once

class PathMgr;

// Writes the frozen directories of the path that lie under its root, with all that they hold, to a
// new file. A directory with a name that the format cannot carry is left out whole, so that it is
// asked of the file system. False when there is no root, or when the file could not be written
// whole; what was written then stays.
bool WriteCacheFile(PathMgr& path, const char* fileName);
