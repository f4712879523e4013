// Brings the name records of a listing into the caches before they are asked for: in a table that
// has outgrown the caches nearly all of the time of a load is waiting for them, one after another.
#pragma once

#include <cstddef>
#include <cstdint>

class NameTable;

class NamePrefetch {
  public:
    // `names` as a listing callback answers them.
    NamePrefetch(const NameTable& table, const char* names);

    // The reader takes one more name.
    void advance();

  private:
    // A bucket is asked for kFar names ahead, the record that it points at kNear names ahead.
    static constexpr size_t kFar = 8;
    static constexpr size_t kNear = 4;

    const NameTable* table_;
    const char* ahead_;
    size_t buckets_ = 0;  // asked for so far
    size_t records_ = 0;
    uint32_t hashes_[kFar];  // of the names whose buckets were asked for last
};
