// What is made of hkMalloc and hkFree, by whomever these are defined.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <hostkit/hostkit.h>

void* hkCalloc(size_t count, size_t size) {
    size_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes)) return nullptr;
    void* block = hkMalloc(bytes);
    return block == nullptr ? nullptr : std::memset(block, 0, bytes);
}

char* hkStrdup(const char* s) {
    if (s == nullptr) return nullptr;
    const size_t bytes = std::strlen(s) + 1;
    void* block = hkMalloc(bytes);
    return block == nullptr ? nullptr : static_cast<char*>(std::memcpy(block, s, bytes));
}

void hkOutOfMemoryCheck(const void* block) {
    if (block != nullptr) return;
    std::fputs("Out of memory\n", stderr);
    std::abort();
}
