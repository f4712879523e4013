// A name as the name tables know it: lower-cased and hashed.
#pragma once

#include <cstdint>
#include <string_view>

#include <hostkit/hostkit.h>

// Lives on the stack for the length of one look-up; names of 128 bytes and more, NUL included, take
// their room from hkMalloc. A null name has an empty text and the hash 0.
class FoldedName {
  public:
    explicit FoldedName(const char* name);
    explicit FoldedName(std::string_view name);  // holds no NUL
    ~FoldedName();
    FoldedName(const FoldedName&) = delete;
    FoldedName& operator=(const FoldedName&) = delete;

    const char* text() const { return text_; }
    size_t length() const { return length_; }
    uint32_t hash() const { return hash_; }

  private:
    static constexpr size_t kInPlace = 128;

    void fold(std::string_view name);

    char* text_ = inPlace_;
    size_t length_ = 0;
    uint32_t hash_ = 0;
    alignas(uint64_t) char inPlace_[kInPlace];  // not cleared: it stands in every look-up's way
};
