// A host in memory: the callbacks of a host whose file system costs next to nothing, so that what
// remains is the library. Each is one hash look-up; a listing is two blocks copied.
#pragma once

#include <string>
#include <vector>

#include <vpath/path.h>

#include "support/generated_tree.h"
#include "support/host_calls.h"

class TreeHost {
  public:
    static const HostFunctions& functions();

    // Directories stay until the process ends; one that is added again is replaced.
    static void add(const GeneratedTree& tree);
    static void addDirectory(const std::string& name, const std::vector<std::string>& entries);

    // The directory's modification time moves by a second. Times are long past, so that they are
    // trusted.
    static void touch(const std::string& directory);

    // What isReadable does besides answering true.
    enum class ReadCost {
        kNothing,
        kAccess,  // an access(2) on the name, as on disk; the answer does not count
    };
    static ReadCost readCost;
};
