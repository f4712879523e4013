// A counted reference to an item: whoever keeps one across a call into the host, or across calls of
// the host, holds it through this.
#pragma once

#include <utility>

template <class Item>
class ItemRef {
  public:
    ItemRef() = default;
    explicit ItemRef(Item* item) : item_(item) { acquire(); }
    ItemRef(const ItemRef& other) : item_(other.item_) { acquire(); }
    ItemRef(ItemRef&& other) noexcept : item_(std::exchange(other.item_, nullptr)) {}
    ~ItemRef() { drop(); }
    ItemRef& operator=(ItemRef other) noexcept {
        std::swap(item_, other.item_);
        return *this;
    }
    void reset(Item* item = nullptr) { *this = ItemRef(item); }

    Item* get() const { return item_; }
    Item* operator->() const { return item_; }
    Item& operator*() const { return *item_; }
    explicit operator bool() const { return item_ != nullptr; }

  private:
    void acquire() {
        if (item_ != nullptr) ++item_->refCount;
    }
    void drop() {
        if (item_ == nullptr) return;
        --item_->refCount;
        item_->release();
    }

    Item* item_ = nullptr;
};
