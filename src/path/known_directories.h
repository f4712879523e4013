// Every directory that was ever added to a path and not thrown away with it, by full name: one that
// was removed is found and revived (PathInfo::addDir). The current directory is not among them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>

#include "base/memory.h"

class PathDirItemInfo;

class KnownDirectories {
  public:
    KnownDirectories() = default;
    ~KnownDirectories() { clear(); }
    KnownDirectories(const KnownDirectories&) = delete;
    KnownDirectories& operator=(const KnownDirectories&) = delete;

    // The directory of that full name under the case rule, one on the path before one that left it;
    // or null. One hash look-up, however many directories share the last component.
    PathDirItemInfo* find(std::string_view fullName, bool caseSensitive) const;

    void insert(PathDirItemInfo& directory);  // owns it from now on

    // Takes every directory off the path and lets it go.
    void clear();

  private:
    struct Identity {
        size_t operator()(uint32_t hash) const { return hash; }
    };
    // The hash is of the lower-cased name, so that it serves both case rules.
    std::unordered_multimap<uint32_t, PathDirItemInfo*, Identity, std::equal_to<>,
                            HkAllocator<std::pair<const uint32_t, PathDirItemInfo*>>>
        byHash_;
};
