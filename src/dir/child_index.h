// The children of one directory by name: made when a search first asks the directory for a name,
// and kept in step as children are added. A look-up costs two binary searches.
#pragma once

#include <cstddef>
#include <cstdint>

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
    static constexpr size_t kNone = static_cast<size_t>(-1);

    // The place, `from` or later, of the next child of that list under `record`; kNone at the end.
    size_t next(const PathAllDirItemInfo& directory, const PathNameInfo* record, ChildList list,
                size_t from);

    // Children have gone or moved: the index is made anew when next asked.
    void drop();

  private:
    struct Entry {
        const PathNameInfo* record;  // compared, never followed: it may be gone
        uint32_t place;
        ChildList list;
    };
    // Children added after a large index was made are kept apart, up to so many: merging each at
    // once would make a directory that is looked into while it is read cost the square of its
    // children.
    static constexpr size_t kMostRecent = 1024;

    static bool Before(const Entry& a, const Entry& b);
    static const Entry* Find(const HkVector<Entry>& entries, const Entry& from);
    void absorb(const PathAllDirItemInfo& directory);

    HkVector<Entry> entries_;  // sorted, as is recent_
    HkVector<Entry> recent_;
    size_t covered_[kChildLists] = {};  // how many children of each list are in the index
};
