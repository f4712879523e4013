// Cache mode: what the process knows of the toolbox path cache, and the callbacks that answer from
// it.
//
// One cache per process, whatever path uses it. A path in cache mode has the cached callbacks in
// place of the host's; each answers from the tree when it can and asks the host's process-wide
// callback otherwise.
#pragma once

#include <memory>
#include <optional>

#include <vpath/path.h>

#include "cache/cache_index.h"
#include "cache/cache_tree.h"

// A tree in use, and what look-ups in it need. The indexes are made when their case rule is first
// asked for: the rule is the asking path's, and may change.
class LoadedCache : public HkAllocated {
  public:
    LoadedCache(CacheTreePtr tree, HkString prefix)
        : tree_(std::move(tree)), prefix_(std::move(prefix)) {}

    const CacheTree& tree() const { return *tree_; }
    const HkString& prefix() const { return prefix_; }
    const CacheIndex& index(bool caseSensitive);

  private:
    CacheTreePtr tree_;
    HkString prefix_;  // what the names of directories in the cache begin with
    std::optional<CacheIndex> indexes_[2];
};

struct CacheMode {
    bool disabled = false;  // for good
    bool traceOn = false;   // every look-up is told
    bool statusOn = false;  // loads and statistics are told
    bool verbose = false;   // misses are told

    std::shared_ptr<LoadedCache> loaded;        // null outside cache mode
    uint32_t lastHit = CacheSearch::kNotFound;  // the node that the last look-up found

    // Since the last load was asked for.
    uint64_t dirLookupRequests = 0;
    uint64_t dirLookupHits = 0;
    uint64_t compares = 0;

    bool tellsStatus() const { return traceOn || statusOn; }
};

extern CacheMode cacheMode;

// A count for a %d: the largest int when it is larger.
int Printable(uint64_t count);

// Puts the cached callbacks in place of the path's own.
void InstallCachedCallbacks(const vpPath& path);
