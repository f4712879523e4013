// The directories of a cache file in memory.
//
// A tree of nodes, one for each directory element, beneath a root. The nodes stand in one vector in
// the order of their opening tags, which is preorder: a node's number is its place, the nodes
// beneath it follow it at once, and what lies between two nodes is counted by subtracting. Text
// lies in large blocks, what look-ups touch apart from the rest.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/memory.h"
#include "cache/growing_text.h"

struct CacheNode {
    const char* name;       // relative to the prefix of cache mode
    const char* contents;   // the items' names, each with a NUL, and one more NUL: a listing
    const char* kinds;      // a letter of cache_format.h for each item
    size_t contentsLength;  // all NULs included
    size_t kindsCount;
    uint32_t parent;  // the root's is the root
    uint32_t end;     // the number after the last node beneath this one
};

// Blocks of text that live as long as the arena.
class TextArena {
  public:
    char* allocate(size_t size);
    const char* copy(std::string_view text);

  private:
    HkVector<HkBlock<char>> blocks_;
    char* free_ = nullptr;
    size_t left_ = 0;
};

class CacheTree : public HkAllocated {
  public:
    const HkVector<CacheNode>& nodes() const { return nodes_; }

    // The directories, without the root.
    size_t directoryCount() const { return nodes_.size() - 1; }

    // The number after the last node that a search from `number` visits: it goes through what is
    // beneath the node, then through the node's later siblings and what is beneath those.
    uint32_t searchEnd(uint32_t number) const { return searchEnds_[number]; }

  private:
    friend class CacheTreeBuilder;

    HkVector<CacheNode> nodes_;
    HkVector<uint32_t> searchEnds_;
    TextArena names_;
    TextArena items_;
};

void FreeCacheTree(CacheTree* tree);  // null is allowed

struct FreeCacheTreeDeleter {
    void operator()(CacheTree* tree) const noexcept { FreeCacheTree(tree); }
};
using CacheTreePtr = std::unique_ptr<CacheTree, FreeCacheTreeDeleter>;

// Makes a tree from the elements of a file as they come. While a node is open its items are
// gathered behind those of the open nodes around it, which get none before it is closed.
class CacheTreeBuilder {
  public:
    CacheTreeBuilder();  // with the root open

    void newCacheNode(std::string_view name);  // opens a node in the innermost open one

    // Adds an item to the innermost open node. An item without a name would end the listing early;
    // it is left out.
    void appendCacheItem(std::string_view name, char kind);

    // Closes the innermost open node, which becomes an item of the one around it. False when that
    // was the root.
    bool closeCacheNode();

    CacheTreePtr take();  // once the root is closed

  private:
    struct OpenNode {
        size_t names;  // where its items begin
        size_t kinds;
    };

    CacheTreePtr tree_;
    uint32_t innermost_ = 0;
    HkVector<OpenNode> open_;
    GrowingText names_;
    GrowingText kinds_;
};
