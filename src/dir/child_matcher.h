// Finding the child that a listing names again, for all entries of one listing.
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "base/memory.h"
#include "dir/file_names.h"
#include "dir/item.h"

// A second listing mostly names the children in the order of the first, so the matcher follows that
// order with a cursor. Once an entry does not match, it finds the others through an index by name
// that it makes then: O(children) for the whole listing.
template <class Item>
class ChildMatcher {
  public:
    // `children` may be appended to while the matcher is in use; those are not looked at.
    explicit ChildMatcher(const HkVector<Item*>& children)
        : children_(children), count_(children.size()) {}

    // The first child with exactly this name (without the mark of a special directory), or null.
    Item* find(std::string_view name) {
        // A name listed twice is the first child again.
        if (at_ > 0 && Names(*children_[at_ - 1], name)) return children_[at_ - 1];
        while (at_ < count_ && !children_[at_]->has(PathItemInfo::kLinked)) ++at_;
        if (at_ < count_ && Names(*children_[at_], name)) return children_[at_++];
        if (!indexed_) makeIndex();
        const auto found = index_.equal_range(std::hash<std::string_view>()(name));
        Item* first = nullptr;
        size_t firstPlace = count_;
        for (auto entry = found.first; entry != found.second; ++entry) {
            Item* const child = children_[entry->second];
            if (entry->second < firstPlace && Names(*child, name)) {
                first = child;
                firstPlace = entry->second;
            }
        }
        if (first != nullptr) at_ = firstPlace + 1;
        return first;
    }

  private:
    // Whether a child that is still there has this name.
    static bool Names(const Item& child, std::string_view name) {
        return child.has(PathItemInfo::kLinked) && HasName(child, name);
    }

    void makeIndex() {
        indexed_ = true;
        index_.reserve(count_);
        HkString name;
        for (size_t i = 0; i < count_; ++i) {
            const Item& child = *children_[i];
            if (!child.has(PathItemInfo::kLinked)) continue;
            name = child.name();
            const char* const extension = child.isFile() ? child.getExtension() : nullptr;
            if (extension != nullptr) name.append(".").append(extension);
            index_.emplace(std::hash<std::string_view>()(name), i);
        }
    }

    const HkVector<Item*>& children_;
    size_t count_;
    size_t at_ = 0;
    bool indexed_ = false;
    std::unordered_multimap<size_t, size_t, std::hash<size_t>, std::equal_to<>,
                            HkAllocator<std::pair<const size_t, size_t>>>
        index_;
};
