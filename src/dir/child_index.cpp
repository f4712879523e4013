#include "dir/child_index.h"

#include <algorithm>
#include <tuple>

#include "dir/dir_item.h"

namespace {

struct ByRecord {
    using Entry = ChildIndex::Entry;
    bool operator()(const Entry& entry, const PathNameInfo* record) const {
        return std::less<>()(entry.record, record);
    }
    bool operator()(const PathNameInfo* record, const Entry& entry) const {
        return std::less<>()(record, entry.record);
    }
    bool operator()(const Entry& a, const Entry& b) const {
        return std::tie(a.record, a.list, a.index) < std::tie(b.record, b.list, b.index);
    }
};

}  // namespace

size_t ChildCount(const PathAllDirItemInfo& directory, ChildList list) {
    switch (list) {
        case ChildList::kFiles:
            return directory.files.size();
        case ChildList::kPackages:
            return directory.packageDirs.size();
        case ChildList::kClasses:
            return directory.classDirs.size();
        case ChildList::kPrivate:
            return directory.privateDir != nullptr ? 1 : 0;
        case ChildList::kSubDirs:
            return directory.subDirs.size();
    }
    return 0;
}

PathItemInfo* ChildAt(const PathAllDirItemInfo& directory, ChildList list, size_t index) {
    switch (list) {
        case ChildList::kFiles:
            return directory.files[index];
        case ChildList::kPackages:
            return directory.packageDirs[index];
        case ChildList::kClasses:
            return directory.classDirs[index];
        case ChildList::kPrivate:
            return directory.privateDir;
        case ChildList::kSubDirs:
            return directory.subDirs[index];
    }
    return nullptr;
}

std::span<const ChildIndex::Entry> ChildIndex::find(const PathAllDirItemInfo& directory,
                                                    const PathNameInfo* record) {
    if (entries_ == nullptr) build(directory);
    const Entry* const end = entries_.get() + count_;
    const auto [from, to] = std::equal_range<const Entry*>(entries_.get(), end, record, ByRecord());
    return {from, to};
}

void ChildIndex::drop() {
    entries_.reset();
    count_ = 0;
}

void ChildIndex::build(const PathAllDirItemInfo& directory) {
    size_t total = 0;
    for (uint8_t list = 0; list < kChildLists; ++list) {
        total += ChildCount(directory, static_cast<ChildList>(list));
    }
    entries_.reset(static_cast<Entry*>(AllocateOrFail(total * sizeof(Entry))));
    count_ = 0;
    for (uint8_t l = 0; l < kChildLists; ++l) {
        const auto list = static_cast<ChildList>(l);
        for (size_t i = 0; i < ChildCount(directory, list); ++i) {
            entries_.get()[count_++] = {ChildAt(directory, list, i)->nameRecord,
                                        static_cast<uint32_t>(i), list};
        }
    }
    std::sort(entries_.get(), entries_.get() + count_, ByRecord());
}
