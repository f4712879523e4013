#include "dir/name_prefetch.h"

#include <cstring>
#include <string_view>

#include "dir/name_table.h"
#include "pathname/folded_name.h"

namespace {

// Names of which table and records fit into the caches are found sooner than prefetched.
constexpr uint32_t kNamesInCaches = 1 << 13;

// The name under which most entries are kept: files are, and most entries are files.
std::string_view BaseOf(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

}  // namespace

NamePrefetch::NamePrefetch(const NameTable& table, const char* names)
    : table_(&table), ahead_(table.size() > kNamesInCaches ? names : "") {
    for (size_t i = 0; i < kFar; ++i) advance();
}

void NamePrefetch::advance() {
    if (*ahead_ != '\0') {
        const std::string_view name(ahead_);
        ahead_ += name.size() + 1;
        const uint32_t hash = FoldedName(BaseOf(name)).hash();
        table_->prefetchBucket(hash);
        hashes_[buckets_++ % kFar] = hash;
        if (buckets_ <= kFar - kNear) return;
    }
    if (records_ < buckets_) table_->prefetchRecord(hashes_[records_++ % kFar]);
}
