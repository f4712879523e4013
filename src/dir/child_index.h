// The children of one directory by name: made when a search first asks the directory for a name,
// dropped when the directory's lists change. A look-up costs a binary search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/memory.h"

class PathAllDirItemInfo;
class PathItemInfo;
class PathNameInfo;

// The lists of a directory in the order in which searches go through them; the numbers are the bits
// of the list masks of searches.
enum class ChildList : uint8_t {
    kFiles = 0,
    kPackages = 1,
    kClasses = 2,
    kPrivate = 3,
    kSubDirs = 4
};
inline constexpr uint8_t kChildLists = 5;

// How many children a list has, and the one at a place.
size_t ChildCount(const PathAllDirItemInfo& directory, ChildList list);
PathItemInfo* ChildAt(const PathAllDirItemInfo& directory, ChildList list, size_t index);

class ChildIndex {
  public:
    struct Entry {
        const PathNameInfo* record;  // compared, never followed: it may be gone
        uint32_t index;
        ChildList list;
    };

    // The children of `directory` under `record`, list by list, each in listing order.
    std::span<const Entry> find(const PathAllDirItemInfo& directory, const PathNameInfo* record);

    void drop();

  private:
    void build(const PathAllDirItemInfo& directory);

    HkBlock<Entry> entries_;
    size_t count_ = 0;
};
