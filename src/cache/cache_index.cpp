#include "cache/cache_index.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "pathname/compare.h"
#include "pathname/folded_name.h"

CacheIndex::CacheIndex(const CacheTree& tree, bool caseSensitive)
    : caseSensitive_(caseSensitive),
      slots_(std::bit_ceil(tree.nodes().size() + tree.nodes().size() / 3 + 1)) {
    HkVector<size_t> slotOfNode;
    slotOfNode.reserve(tree.nodes().size());
    for (const CacheNode& node : tree.nodes()) {
        const uint32_t hash = hashOf(node.name);
        slotOfNode.push_back(slotOf(node.name, hash));
        Slot& slot = slots_[slotOfNode.back()];
        slot = {node.name, hash, slot.group + 1};  // at first, how many they are
    }
    uint32_t place = 0;
    for (Slot& slot : slots_) {
        if (slot.name != nullptr) place += std::exchange(slot.group, place) + 1;
    }
    groups_.resize(place);
    for (size_t number = 0; number < slotOfNode.size(); ++number) {
        uint32_t* const group = &groups_[slots_[slotOfNode[number]].group];
        group[++*group] = static_cast<uint32_t>(number);
    }
}

std::span<const uint32_t> CacheIndex::find(const char* name) const {
    const Slot& slot = slots_[slotOf(name, hashOf(name))];
    if (slot.name == nullptr) return {};
    return {&groups_[slot.group] + 1, groups_[slot.group]};
}

uint32_t CacheIndex::hashOf(const char* name) const {
    return caseSensitive_ ? hk_hash_string(0, name) : FoldedName(name).hash();
}

size_t CacheIndex::slotOf(const char* name, uint32_t hash) const {
    const size_t mask = slots_.size() - 1;
    size_t place = hash & mask;
    while (slots_[place].name != nullptr &&
           (slots_[place].hash != hash ||
            CompareNames(slots_[place].name, name, caseSensitive_) != 0)) {
        place = (place + 1) & mask;
    }
    return place;
}

CacheSearch SearchFrom(const CacheTree& tree, std::span<const uint32_t> numbers, uint32_t from) {
    const uint32_t end = tree.searchEnd(from);
    const auto first = std::lower_bound(numbers.begin(), numbers.end(), from);
    if (first == numbers.end() || *first >= end) return {CacheSearch::kNotFound, end - from};
    return {*first, uint64_t{*first - from} + 1};
}
