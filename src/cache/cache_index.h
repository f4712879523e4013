// The nodes of a cache tree by name, under one case rule.
//
// A search of the tree goes through the nodes in preorder, from where it starts to the end of its
// range, and takes the first of the name. Node numbers are preorder numbers: the index keeps those
// of equal names in ascending order, so that the first one in a range is found by bisection, and
// how many nodes the search would have compared follows from the numbers alone.
#pragma once

#include <cstdint>
#include <span>

#include "cache/cache_tree.h"

class CacheIndex {
  public:
    // Cost: the nodes.
    CacheIndex(const CacheTree& tree, bool caseSensitive);

    // The numbers of the nodes called `name`, ascending; empty when there is none.
    std::span<const uint32_t> find(const char* name) const;

  private:
    struct Slot {
        const char* name = nullptr;  // null: free
        uint32_t hash = 0;
        uint32_t group = 0;  // place in `groups_`
    };

    uint32_t hashOf(const char* name) const;
    size_t slotOf(const char* name, uint32_t hash) const;  // the name's, or a free one

    bool caseSensitive_;
    HkVector<Slot> slots_;       // open addressing, at most three quarters full
    HkVector<uint32_t> groups_;  // for each name the count of its nodes, then their numbers
};

// What a search of the tree finds, and the comparisons of names that it takes.
struct CacheSearch {
    static constexpr uint32_t kNotFound = 0xFFFFFFFF;
    uint32_t number;
    uint64_t compares;
};

// The search that starts at node `from`, for a name that stands at `numbers`. Cost: bisection.
CacheSearch SearchFrom(const CacheTree& tree, std::span<const uint32_t> numbers, uint32_t from);
