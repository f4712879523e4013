// Bytes that are appended at the end and taken away from there; room is never cleared.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "base/memory.h"

class GrowingText {
  public:
    // Room for `count` bytes behind the end, until the next call. What was written there counts
    // once it is committed.
    char* room(size_t count) {
        if (capacity_ - size_ < count) grow(count);
        return data_.get() + size_;
    }
    void commit(size_t count) { size_ += count; }

    void append(std::string_view text) {
        if (!text.empty()) std::memcpy(room(text.size()), text.data(), text.size());
        commit(text.size());
    }
    void truncate(size_t size) { size_ = size; }

    size_t size() const { return size_; }
    std::string_view from(size_t place) const { return {data_.get() + place, size_ - place}; }

  private:
    void grow(size_t count) {
        const size_t capacity = std::max(2 * capacity_, size_ + count);
        auto* const grown = static_cast<char*>(hkRealloc(data_.get(), capacity));
        if (grown == nullptr) FailOutOfMemory();
        static_cast<void>(data_.release());  // the old block is gone
        data_.reset(grown);
        capacity_ = capacity;
    }

    HkBlock<char> data_;
    size_t size_ = 0;
    size_t capacity_ = 0;
};
