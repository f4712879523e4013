// Full pathnames of items, put together from the item up to the directory of the path by the
// joining rule (pathname/join.h).
#pragma once

#include <cstddef>
#include <string_view>

#include "base/memory.h"

class PathItemInfo;

// Bytes of the full pathname, without the NUL.
size_t FullNameLength(const PathItemInfo& item);

// Writes the full pathname and a NUL where there is room for it; its bytes, without the NUL.
size_t WriteFullName(const PathItemInfo& item, char* to);

// A full pathname in a buffer of its own: on the stack while it is short.
class FullName {
  public:
    explicit FullName(const PathItemInfo& item);
    FullName(const FullName&) = delete;
    FullName& operator=(const FullName&) = delete;

    const char* text() const { return long_ != nullptr ? long_.get() : short_; }
    size_t length() const { return length_; }
    std::string_view view() const { return {text(), length_}; }

  private:
    size_t length_;
    HkBlock<char> long_;
    char short_[512];
};
