// Finding the child that a listing names again, for all entries of one listing.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "base/memory.h"
#include "dir/file_names.h"
#include "dir/item.h"

// A second listing mostly names the children in the order of the first, so the matcher follows that
// order with a cursor. Once an entry does not match, it finds the others through an index by name
// that it makes then: O(children) for the whole listing. Where two children may have one name, the
// cursor could take the second for the first, so there the index finds them all.
template <class Item>
class ChildMatcher {
  public:
    // New children are found once they were added here.
    ChildMatcher(const HkVector<Item*>& children, bool mayHoldTwins)
        : children_(children), count_(children.size()), mayHoldTwins_(mayHoldTwins) {}

    // The first child with exactly this name (without the mark of a special directory), or null.
    // The bytes of `name` live as long as the matcher.
    Item* find(std::string_view name) {
        if (mayHoldTwins_) return findByIndex(name);
        // A name listed twice is the first child again.
        if (at_ > 0 && name == lastFound_ && children_[at_ - 1]->has(PathItemInfo::kLinked)) {
            return children_[at_ - 1];
        }
        while (at_ < count_ && !children_[at_]->has(PathItemInfo::kLinked)) ++at_;
        if (at_ < count_ && Names(*children_[at_], name)) {
            lastFound_ = name;
            return children_[at_++];
        }
        return findByIndex(name);
    }

    // Takes in a child that was made because no other had its name.
    void add(const Item& child) {
        if (!indexed_) makeIndex();
        index(child, children_.size() - 1);
    }

  private:
    // Whether a child that is still there has this name.
    static bool Names(const Item& child, std::string_view name) {
        return child.has(PathItemInfo::kLinked) && HasName(child, name);
    }

    Item* findByIndex(std::string_view name) {
        if (!indexed_) makeIndex();
        const size_t place = indexed(name);
        if (place < count_) {
            at_ = place + 1;
            lastFound_ = name;
        }
        return place != kNone ? children_[place] : nullptr;
    }

    // The place of the child of that name in the index, or kNone.
    size_t indexed(std::string_view name) const {
        const auto found = index_.equal_range(std::hash<std::string_view>()(name));
        const auto entry = std::find_if(found.first, found.second, [&](const auto& candidate) {
            return Names(*children_[candidate.second], name);
        });
        return entry != found.second ? entry->second : kNone;
    }

    void makeIndex() {
        indexed_ = true;
        index_.reserve(count_);
        for (size_t i = 0; i < count_; ++i) {
            if (children_[i]->has(PathItemInfo::kLinked)) index(*children_[i], i);
        }
    }

    void index(const Item& child, size_t place) {
        name_ = child.name();
        const char* const extension = child.isFile() ? child.getExtension() : nullptr;
        if (extension != nullptr) name_.append(".").append(extension);
        if (mayHoldTwins_ && indexed(name_) != kNone) return;
        index_.emplace(std::hash<std::string_view>()(name_), place);
    }

    static constexpr size_t kNone = static_cast<size_t>(-1);

    const HkVector<Item*>& children_;
    size_t count_;
    bool mayHoldTwins_;
    size_t at_ = 0;               // behind the child that was found last
    std::string_view lastFound_;  // its name
    bool indexed_ = false;
    HkString name_;
    std::unordered_multimap<size_t, size_t, std::hash<size_t>, std::equal_to<>,
                            HkAllocator<std::pair<const size_t, size_t>>>
        index_;
};
