// The name table of a path: a chained hash table from lower-cased names to name records, which are
// its nodes.
//
// Bucket counts are quasi-primes given by the host utility library; an insertion that takes the
// load above 95 % grows the table to a load midway, geometrically, between 20 % and 95 %. Removal
// never resizes.
//
// Beside the buckets stands one byte for each, a bit for each eighth of the hashes in its chain: of
// the names that are not in the table seven in eight are told from that, which fits in the caches
// where the records do not.
#pragma once

#include <cstdint>
#include <string_view>

#include <hostkit/hostkit.h>

#include "base/memory.h"

class FoldedName;
class PathNameInfo;

class NameTable {
  public:
    struct Interned {
        PathNameInfo* record;
        uint32_t spellingIndex;
    };

    NameTable();
    ~NameTable();
    NameTable(const NameTable&) = delete;
    NameTable& operator=(const NameTable&) = delete;

    // The record of a name in any case, or null. One hash, one short chain.
    PathNameInfo* lookup(std::string_view name) const;
    PathNameInfo* lookup(const FoldedName& name) const;

    // The record of `name`, made if there is none, and the index of this exact spelling in it.
    Interned intern(std::string_view name);

    void remove(PathNameInfo& record);

    // Ask the processor for a bucket, and for the first record of a bucket that is there.
    void prefetchBucket(uint32_t hash) const {
        const uint32_t index = hash % bucketCount_;
        __builtin_prefetch(&buckets_[index]);
        __builtin_prefetch(&eighths_.get()[index]);
    }
    void prefetchRecord(uint32_t hash) const { __builtin_prefetch(buckets_[hash % bucketCount_]); }

    uint32_t size() const { return entryCount_; }
    uint32_t bucketCount() const { return bucketCount_; }
    PathNameInfo* bucket(uint32_t index) const { return buckets_[index]; }

  private:
    static constexpr uint32_t kMinimumBuckets = 109;
    static constexpr uint32_t kInitialGrowThreshold = 103;
    static constexpr float kLeastLoad = 0.2F;
    static constexpr float kGreatestLoad = 0.95F;

    // The bit of a hash in its bucket's byte.
    static uint8_t eighth(uint32_t hash) { return static_cast<uint8_t>(1U << (hash >> 29)); }

    PathNameInfo** allocateBuckets(uint32_t count);
    static HkBlock<uint8_t> allocateEighths(uint32_t count);
    void insert(PathNameInfo& record);
    void resize();

    hkMemoryContext* context_;
    HkBlock<uint8_t> eighths_;  // of each bucket
    PathNameInfo** buckets_;
    uint32_t bucketCount_ = kMinimumBuckets;
    uint32_t entryCount_ = 0;
    uint32_t shrinkThreshold_ = 0;
    uint32_t growThreshold_ = kInitialGrowThreshold;
};
