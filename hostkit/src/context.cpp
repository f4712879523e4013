#include <hostkit/hostkit.h>

struct hkMemoryContext {};

hkMemoryContext* hkGetMemoryContext(void) {
    static hkMemoryContext heap;
    return &heap;
}

void* hk_mem_calloc(hkMemoryContext*, size_t count, size_t size) { return hkCalloc(count, size); }

void hk_mem_free(hkMemoryContext*, void* block) { hkFree(block); }
