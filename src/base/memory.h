// Memory of the library: everything it keeps comes from the host utility library's allocator, so
// that a host which brings its own accounts for every byte.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <hostkit/hostkit.h>

// Reports "Cannot allocate memory" and hands over to the host utility library's fatal check.
void ReportOutOfMemory();

// The same; when the check returns, throws std::bad_alloc.
[[noreturn]] void FailOutOfMemory();

// hkMalloc that never answers null: running out of memory is fatal.
void* AllocateOrFail(size_t size);

// A copy of `text` (not null) from hkMalloc; the owner frees it with hkFree.
char* DuplicateText(std::string_view text);

// Base of every class that lives on the heap: its objects come from hkMalloc.
struct HkAllocated {
    static void* operator new(size_t size) { return AllocateOrFail(size); }
    static void* operator new(size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) noexcept { hkFree(block); }
    static void operator delete(void*, void*) noexcept {}
};

template <class T>
struct HkAllocator {
    using value_type = T;
    HkAllocator() = default;
    template <class U>
    HkAllocator(const HkAllocator<U>&) noexcept {}  // NOLINT(google-explicit-constructor)

    T* allocate(size_t count) {
        if (count > static_cast<size_t>(-1) / sizeof(T)) FailOutOfMemory();
        return static_cast<T*>(AllocateOrFail(count * sizeof(T)));
    }
    void deallocate(T* block, size_t) noexcept { hkFree(block); }

    template <class U>
    bool operator==(const HkAllocator<U>&) const noexcept {
        return true;
    }
};

template <class T>
using HkVector = std::vector<T, HkAllocator<T>>;
using HkString = std::basic_string<char, std::char_traits<char>, HkAllocator<char>>;

struct HkFreeDeleter {
    void operator()(void* block) const noexcept { hkFree(block); }
};
// Owner of one block that hkFree releases: listing buffers, duplicated strings.
template <class T>
using HkBlock = std::unique_ptr<T, HkFreeDeleter>;
