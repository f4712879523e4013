// Finding the directory of a full name among all that a path knows.
#pragma once

#include <string_view>

class PathAllDirItemInfo;
class PathMgr;

// The directory of a normalised full name, or null. A special last component ("private", "@...",
// "+...") is looked for among the special directories first, in path order; then, and for every
// other name, among the added directories and last the current one.
PathAllDirItemInfo* FindDirectory(PathMgr& path, std::string_view fullName);

// The nearest known directory above an unknown special one, or null; "private" counts under the
// path's case rule here.
PathAllDirItemInfo* FindDirectoryAbove(PathMgr& path, std::string_view fullName);

// FindDirectory for a name from outside, which is normalised first; a name that cannot be is
// reported.
PathAllDirItemInfo* FindDirectoryByName(PathMgr& path, const char* name);

// The directory that the directory part of a file name says, or null.
PathAllDirItemInfo* FindDirectoryOfFile(PathMgr& path, const char* fileName);

// The same, without a report.
PathAllDirItemInfo* FindDirectoryOfFileSilently(PathMgr& path, const char* fileName);
