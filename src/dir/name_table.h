// The name table of a path: a chained hash table from lower-cased names to name records, which are
// its nodes.
//
// Bucket counts are quasi-primes given by the host utility library; an insertion that takes the
// load above 95 % grows the table to a load midway, geometrically, between 20 % and 95 %. Removal
// never resizes.
#pragma once

#include <cstdint>
#include <string_view>

#include <hostkit/hostkit.h>

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
    void prefetchBucket(uint32_t hash) const { __builtin_prefetch(&buckets_[hash % bucketCount_]); }
    void prefetchRecord(uint32_t hash) const { __builtin_prefetch(buckets_[hash % bucketCount_]); }

    uint32_t size() const { return entryCount_; }
    uint32_t bucketCount() const { return bucketCount_; }
    PathNameInfo* bucket(uint32_t index) const { return buckets_[index]; }

  private:
    static constexpr uint32_t kMinimumBuckets = 109;
    static constexpr uint32_t kInitialGrowThreshold = 103;
    static constexpr float kLeastLoad = 0.2F;
    static constexpr float kGreatestLoad = 0.95F;

    PathNameInfo** allocateBuckets(uint32_t count);
    void insert(PathNameInfo& record);
    void resize();

    hkMemoryContext* context_;
    PathNameInfo** buckets_;
    uint32_t bucketCount_ = kMinimumBuckets;
    uint32_t entryCount_ = 0;
    uint32_t shrinkThreshold_ = 0;
    uint32_t growThreshold_ = kInitialGrowThreshold;
};
