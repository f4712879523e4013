// The three allocator calls proper. They stand apart from the calls built on them, which must reach
// a program's own replacement and so may not see these definitions to inline.
#include <cstdlib>

#include <hostkit/hostkit.h>

void* hkMalloc(size_t size) { return std::malloc(size == 0 ? 1 : size); }

void* hkRealloc(void* block, size_t size) { return std::realloc(block, size == 0 ? 1 : size); }

void hkFree(void* block) { std::free(block); }
