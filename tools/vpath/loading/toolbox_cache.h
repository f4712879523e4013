// A cache file of what lies under an installation's toolbox folder, as the options name it, and
// paths that answer from it.
#pragma once

#include <string>
#include <string_view>

#include <vpath/path.h>

// The full names that go with --root. Names on a path lie in the toolbox by their text alone: a
// link elsewhere that leads there does not count, nor does a relative name.
struct Toolbox {
    std::string root;  // as vpUseToolboxCache takes it: empty for "/"
    std::string dir;   // the toolbox folder

    // The name of what lies in the toolbox folder, beneath it; empty for all other names.
    std::string_view nameIn(std::string_view fullName) const;
};

// Relative names are taken from the process's current directory. Throws CommandError when there is
// no such directory.
Toolbox ToolboxOf(const std::string& root);

// The full name of a file that may not exist yet.
std::string FullNameOfCacheFile(const std::string& fileName);

// Puts the path into cache mode. `said` is what the user called the file. Throws CommandError with
// the reason when the file cannot be used.
void UseCache(const vpPath& path, const std::string& said, const std::string& fileName,
              const Toolbox& toolbox);

struct CacheStatistics {
    int requests = 0;  // look-ups of directories
    int hits = 0;      // each is the answer to one callback, which the host was not asked
    int comparisons = 0;
};

// Takes the path out of cache mode; what the look-ups since UseCache have cost.
CacheStatistics RevertFromCache(const vpPath& path);
