// What the library asks of its host, written down and asked again: the part of each operation that
// no library could save.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <vpath/path.h>

struct HostFunctions {
    vpListingFcn list;
    vpAccessibilityFcn accessibility;
    vpPathnameOkFcn isReadable;
    vpIsDirectoryFcn isDirectory;
    vpTimeStampFcn modificationTime;
};

// Makes them the process-wide ones; paths created from here on have them.
void Install(const HostFunctions& functions);

// Calls with their names, in two blocks.
struct HostCalls {
    enum Kind { kList, kAccessibility, kIsReadable, kIsDirectory, kModificationTime };
    struct Call {
        Kind kind;
        size_t name;  // place in `names`
    };
    std::vector<Call> calls;
    std::string names;  // NUL-ended

    void add(Kind kind, const std::string& name);
    size_t count(Kind kind) const;
};

// The calls that `path` makes while `work` runs. Before and after it the path asks `functions`
// alone.
HostCalls Record(const HostFunctions& functions, const vpPath& path,
                 const std::function<void()>& work);

// The same calls made by a loop, listings freed.
void Replay(const HostFunctions& functions, const vpPath& path, const HostCalls& calls);

// A new path that freezes nothing, over `functions`.
vpPath NewPath(const HostFunctions& functions);
