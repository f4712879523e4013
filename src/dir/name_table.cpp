#include "dir/name_table.h"

#include <algorithm>
#include <cmath>

#include "base/memory.h"
#include "dir/name_record.h"
#include "pathname/folded_name.h"

namespace {

// Square root of kLeastLoad * kGreatestLoad in single precision: the load after a resize.
constexpr double kLoadAfterResize = 0.4358898916192187;

}  // namespace

NameTable::NameTable()
    : context_(hkGetMemoryContext()), buckets_(allocateBuckets(kMinimumBuckets)) {}

NameTable::~NameTable() {
    for (uint32_t i = 0; i < bucketCount_; ++i) {
        for (PathNameInfo* record = buckets_[i]; record != nullptr;) {
            PathNameInfo* const next = record->nextInChain;
            record->table = nullptr;  // what an open search still pins goes with the search
            ReleaseIfEmpty(*record);
            record = next;
        }
    }
    hk_mem_free(context_, buckets_);
}

PathNameInfo* NameTable::lookup(std::string_view name) const { return lookup(FoldedName(name)); }

PathNameInfo* NameTable::lookup(const FoldedName& name) const {
    const std::string_view key(name.text(), name.length());
    const uint32_t hash = name.hash();
    for (PathNameInfo* record = buckets_[hash % bucketCount_]; record != nullptr;
         record = record->nextInChain) {
        if (record->hash == hash && record->key() == key) return record;
    }
    return nullptr;
}

NameTable::Interned NameTable::intern(std::string_view name) {
    const FoldedName folded(name);
    PathNameInfo* record = lookup(folded);
    if (record != nullptr) return {record, record->internSpelling(name)};
    record = PathNameInfo::Create(*this, folded.hash(), {folded.text(), folded.length()}, name);
    insert(*record);
    return {record, 0};
}

void NameTable::insert(PathNameInfo& record) {
    PathNameInfo*& bucket = buckets_[record.hash % bucketCount_];
    record.nextInChain = bucket;
    bucket = &record;
    if (++entryCount_ > growThreshold_) resize();
}

void NameTable::remove(PathNameInfo& record) {
    PathNameInfo** link = &buckets_[record.hash % bucketCount_];
    while (*link != &record) link = &(*link)->nextInChain;
    *link = record.nextInChain;
    record.table = nullptr;
    --entryCount_;
}

PathNameInfo** NameTable::allocateBuckets(uint32_t count) {
    void* const block = hk_mem_calloc(context_, count, sizeof(PathNameInfo*));
    if (block == nullptr) FailOutOfMemory();
    return static_cast<PathNameInfo**>(block);
}

void NameTable::resize() {
    const auto midway = static_cast<uint32_t>(std::lround(entryCount_ / kLoadAfterResize));
    const uint32_t target = std::max(midway, kMinimumBuckets);
    const int direction = entryCount_ < shrinkThreshold_ ? -1 : 1;
    const uint32_t newCount = hk_hash_next_quasiprime(context_, target, direction);
    if (newCount == bucketCount_) return;
    PathNameInfo** const newBuckets = allocateBuckets(newCount);
    for (uint32_t i = 0; i < bucketCount_; ++i) {
        for (PathNameInfo* record = buckets_[i]; record != nullptr;) {
            PathNameInfo* const next = record->nextInChain;
            PathNameInfo*& bucket = newBuckets[record->hash % newCount];
            record->nextInChain = bucket;
            bucket = record;
            record = next;
        }
    }
    hk_mem_free(context_, buckets_);
    buckets_ = newBuckets;
    bucketCount_ = newCount;
    const auto buckets = static_cast<float>(newCount);
    shrinkThreshold_ =
        newCount != kMinimumBuckets ? static_cast<uint32_t>(buckets * kLeastLoad) : 0;
    growThreshold_ = static_cast<uint32_t>(buckets * kGreatestLoad);
}
