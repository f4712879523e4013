#include "dir/child_index.h"

#include <algorithm>
#include <functional>
#include <tuple>

#include "dir/dir_item.h"

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
            break;
    }
    return directory.subDirs.size();
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
            break;
    }
    return directory.subDirs[index];
}

size_t ChildIndex::next(const PathAllDirItemInfo& directory, const PathNameInfo* record,
                        ChildList list, size_t from) {
    absorb(directory);
    const Entry wanted{record, static_cast<uint32_t>(from), list};
    // Recent children of a list stand behind all others.
    const Entry* found = Find(entries_, wanted);
    if (found == nullptr) found = Find(recent_, wanted);
    return found != nullptr ? found->place : kNone;
}

void ChildIndex::drop() { *this = ChildIndex(); }

bool ChildIndex::Before(const Entry& a, const Entry& b) {
    if (a.record != b.record) return std::less<>()(a.record, b.record);
    return std::tie(a.list, a.place) < std::tie(b.list, b.place);
}

// The first entry that is not before `from`, when it is of the same record and list.
const ChildIndex::Entry* ChildIndex::Find(const HkVector<Entry>& entries, const Entry& from) {
    const auto at = std::lower_bound(entries.begin(), entries.end(), from, Before);
    if (at == entries.end() || at->record != from.record || at->list != from.list) return nullptr;
    return &*at;
}

void ChildIndex::absorb(const PathAllDirItemInfo& directory) {
    size_t added = 0;
    for (uint8_t l = 0; l < kChildLists; ++l) {
        added += ChildCount(directory, static_cast<ChildList>(l)) - covered_[l];
    }
    if (added == 0) return;
    const bool merges = entries_.empty() || recent_.size() + added > kMostRecent;
    HkVector<Entry>& into = merges ? entries_ : recent_;
    const auto known = static_cast<ptrdiff_t>(into.size());
    if (merges) {
        into.reserve(into.size() + added + recent_.size());
        into.insert(into.end(), recent_.begin(), recent_.end());
        recent_.clear();
    }
    for (uint8_t l = 0; l < kChildLists; ++l) {
        const auto list = static_cast<ChildList>(l);
        for (; covered_[l] < ChildCount(directory, list); ++covered_[l]) {
            into.push_back({ChildAt(directory, list, covered_[l])->nameRecord,
                            static_cast<uint32_t>(covered_[l]), list});
        }
    }
    std::sort(into.begin() + known, into.end(), Before);
    std::inplace_merge(into.begin(), into.begin() + known, into.end(), Before);
}
