#include "dir/name_table.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "dir/name_record.h"
#include "pathname/folded_name.h"

namespace {

// Square root of kLeastLoad * kGreatestLoad in single precision: the load after a resize.
constexpr double kLoadAfterResize = 0.4358898916192187;

}  // namespace

NameTable::NameTable()
    : context_(hkGetMemoryContext()),
      eighths_(allocateEighths(kMinimumBuckets)),
      buckets_(allocateBuckets(kMinimumBuckets)) {}

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
    const uint32_t index = hash % bucketCount_;
    if ((eighths_.get()[index] & eighth(hash)) == 0) return nullptr;
    for (PathNameInfo* record = buckets_[index]; record != nullptr; record = record->nextInChain) {
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
    const uint32_t index = record.hash % bucketCount_;
    record.nextInChain = buckets_[index];
    buckets_[index] = &record;
    eighths_.get()[index] |= eighth(record.hash);
    if (++entryCount_ > growThreshold_) resize();
}

void NameTable::remove(PathNameInfo& record) {
    const uint32_t index = record.hash % bucketCount_;
    PathNameInfo** link = &buckets_[index];
    while (*link != &record) link = &(*link)->nextInChain;
    *link = record.nextInChain;
    if (buckets_[index] == nullptr) eighths_.get()[index] = 0;  // else others may have the same
    record.table = nullptr;
    --entryCount_;
}

PathNameInfo** NameTable::allocateBuckets(uint32_t count) {
    void* const block = hk_mem_calloc(context_, count, sizeof(PathNameInfo*));
    if (block == nullptr) FailOutOfMemory();
    return static_cast<PathNameInfo**>(block);
}

HkBlock<uint8_t> NameTable::allocateEighths(uint32_t count) {
    HkBlock<uint8_t> eighths(static_cast<uint8_t*>(AllocateOrFail(count)));
    std::memset(eighths.get(), 0, count);
    return eighths;
}

void NameTable::resize() {
    const auto midway = static_cast<uint32_t>(std::lround(entryCount_ / kLoadAfterResize));
    const uint32_t target = std::max(midway, kMinimumBuckets);
    const int direction = entryCount_ < shrinkThreshold_ ? -1 : 1;
    const uint32_t newCount = hk_hash_next_quasiprime(context_, target, direction);
    if (newCount == bucketCount_) return;
    HkBlock<uint8_t> newEighths = allocateEighths(newCount);
    PathNameInfo** const newBuckets = allocateBuckets(newCount);
    // Records and new buckets lie at random places: asked for ahead of their turn they do not keep
    // the growing of a large table waiting.
    constexpr uint32_t kFar = 16;
    constexpr uint32_t kNear = 8;
    for (uint32_t i = 0; i < bucketCount_; ++i) {
        if (i + kFar < bucketCount_) {
            __builtin_prefetch(buckets_[i + kFar]);
            const PathNameInfo* const soon = buckets_[i + kNear];
            if (soon != nullptr) __builtin_prefetch(&newBuckets[soon->hash % newCount], 1);
        }
        for (PathNameInfo* record = buckets_[i]; record != nullptr;) {
            PathNameInfo* const next = record->nextInChain;
            const uint32_t index = record->hash % newCount;
            record->nextInChain = newBuckets[index];
            newBuckets[index] = record;
            newEighths.get()[index] |= eighth(record->hash);
            record = next;
        }
    }
    hk_mem_free(context_, buckets_);
    buckets_ = newBuckets;
    eighths_ = std::move(newEighths);
    bucketCount_ = newCount;
    const auto buckets = static_cast<float>(newCount);
    shrinkThreshold_ =
        newCount != kMinimumBuckets ? static_cast<uint32_t>(buckets * kLeastLoad) : 0;
    growThreshold_ = static_cast<uint32_t>(buckets * kGreatestLoad);
}
