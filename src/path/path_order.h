// The order of a path: the current directory, then the added directories. A doubly linked list with
// order numbers, so that adding and removing at any place is O(1) and two directories are compared
// without counting.
#pragma once

#include <cstddef>
#include <cstdint>

class PathDirItemInfo;

class PathOrder {
  public:
    PathDirItemInfo* current() const { return current_; }   // null when the slot is empty
    PathDirItemInfo* firstAdded() const { return first_; }  // null when there is none
    PathDirItemInfo* first() const { return current_ != nullptr ? current_ : first_; }

    // The directory after `directory`; after one that has left, the one that then followed.
    PathDirItemInfo* nextAfter(const PathDirItemInfo& directory) const;

    // Number of directories, the current-directory slot included, empty or not.
    size_t count() const { return added_ + 1; }

    // Advances when directories that stay have changed places since it was last asked.
    uint32_t epoch() {
        if (moved_) {
            moved_ = false;
            ++epoch_;
        }
        return epoch_;
    }

    void setCurrent(PathDirItemInfo* directory);  // links nothing else
    void pushFront(PathDirItemInfo& directory);
    void pushBack(PathDirItemInfo& directory);
    void remove(PathDirItemInfo& directory);
    bool moveToBack(PathDirItemInfo& directory);  // false when it stands there

    // A sequence of moves that ends in the old order is none: the caller, who knows that it was one
    // and that nobody else moved or added anything or read an order in between, takes back what it
    // caused.
    struct Stamp {
        uint32_t epoch;
        uint32_t entries;
        bool moved;
    };
    Stamp stamp() const { return {epoch_, entries_, moved_}; }
    void forgetMoves() { moved_ = false; }

  private:
    PathDirItemInfo* current_ = nullptr;
    PathDirItemInfo* first_ = nullptr;
    PathDirItemInfo* last_ = nullptr;
    size_t added_ = 0;
    uint32_t epoch_ = 0;
    uint32_t entries_ = 0;  // directories that came, moves to the back included
    bool moved_ = false;
};
