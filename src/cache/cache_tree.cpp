#include "cache/cache_tree.h"

#include <cstring>
#include <limits>
#include <utility>

#include <vpath/pathname.h>

#include "cache/cache_format.h"

namespace {

constexpr size_t kBlock = size_t{256} * 1024;
constexpr size_t kLarge = kBlock / 4;  // gets a block of its own

}  // namespace

char* TextArena::allocate(size_t size) {
    if (size > left_) {
        const bool alone = size > kLarge;
        blocks_.emplace_back();  // first: it may throw
        blocks_.back().reset(static_cast<char*>(AllocateOrFail(alone ? size : kBlock)));
        if (alone) return blocks_.back().get();
        free_ = blocks_.back().get();
        left_ = kBlock;
    }
    left_ -= size;
    return std::exchange(free_, free_ + size);
}

const char* TextArena::copy(std::string_view text) {
    char* const to = allocate(text.size() + 1);
    std::memcpy(to, text.data(), text.size());
    to[text.size()] = '\0';
    return to;
}

void FreeCacheTree(CacheTree* tree) { delete tree; }

CacheTreeBuilder::CacheTreeBuilder() : tree_(new CacheTree) { newCacheNode(kCacheRootName); }

void CacheTreeBuilder::newCacheNode(std::string_view name) {
    HkVector<CacheNode>& nodes = tree_->nodes_;
    if (nodes.size() == std::numeric_limits<int32_t>::max()) FailOutOfMemory();
    open_.push_back({names_.size(), kinds_.size()});
    nodes.push_back({tree_->names_.copy(name), "\0", "", 2, 0, innermost_, 0});
    innermost_ = static_cast<uint32_t>(nodes.size() - 1);
}

void CacheTreeBuilder::appendCacheItem(std::string_view name, char kind) {
    if (name.empty()) return;
    char* const to = names_.room(name.size() + 1);
    std::memcpy(to, name.data(), name.size());
    to[name.size()] = '\0';
    names_.commit(name.size() + 1);
    *kinds_.room(1) = kind;
    kinds_.commit(1);
}

bool CacheTreeBuilder::closeCacheNode() {
    CacheNode& node = tree_->nodes_[innermost_];
    node.end = static_cast<uint32_t>(tree_->nodes_.size());
    const OpenNode begin = open_.back();
    open_.pop_back();
    const std::string_view kinds = kinds_.from(begin.kinds);
    if (!kinds.empty()) {
        const std::string_view names = names_.from(begin.names);
        node.contents = tree_->items_.copy(names);
        node.contentsLength = names.size() + 1;
        node.kinds = tree_->items_.copy(kinds);
        node.kindsCount = kinds.size();
    }
    names_.truncate(begin.names);
    kinds_.truncate(begin.kinds);
    if (open_.empty()) return false;
    innermost_ = node.parent;
    appendCacheItem(vpSeparatePathName(const_cast<char*>(node.name), nullptr), kCacheDirectory);
    return true;
}

CacheTreePtr CacheTreeBuilder::take() {
    tree_->searchEnds_.reserve(tree_->nodes_.size());
    for (const CacheNode& node : tree_->nodes_) {
        tree_->searchEnds_.push_back(tree_->nodes_[node.parent].end);
    }
    return std::move(tree_);
}
