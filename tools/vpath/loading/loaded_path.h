// A path as the options describe it, and what loading it took.
#pragma once

#include <cstddef>
#include <string>

#include <vpath/path.h>

#include "loading/host_calls.h"
#include "options/path_options.h"

struct LoadedPath {
    vpPath path;
    double loadSeconds;
    size_t loadedBytes;    // of heap memory, more after the load than before
    CallCounts loadCalls;  // the callbacks that the load made
    bool fromCache;        // the path is in cache mode
};

// Goes to the path's current directory, then creates the path and adds the sources to it. What the
// path refuses is said on standard error and left out. Directories whose full names begin with
// `frozen`, which may be null, are frozen. Throws CommandError when a directory or file that an
// option names cannot be used. To be called once in a process.
LoadedPath LoadPath(const PathOptions& options, const char* frozen);

// Adds a directory and those below it as --recursive does; after LoadPath. Throws CommandError when
// it cannot be used.
void AddTree(const vpPath& path, const std::string& dirName, bool ignoreCase);

// One more path, of the directories of a list, in the same current directory; after LoadPath. For
// the rest the options apply. To be removed by the caller if it is not to last.
vpPath LoadOtherPath(const std::string& list, const PathOptions& options);
