/* The utility calls, brought by the host itself: all that the library takes from one. Linked into
   the program, or made a libhostkit.so.1 that the linker finds first, they take the place of the
   bundled ones. This host counts blocks and marks what is printed as the library's. */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <hostkit/hostkit.h>

#include "blocks.h"

long blocks_taken;
long blocks_given_back;

/* Memory. Each of these calls counts: a host replaces the group as a whole. */
static void* taken(void* block) {
    if (block != NULL) ++blocks_taken;
    return block;
}
void* hkMalloc(size_t size) { return taken(malloc(size == 0 ? 1 : size)); }
void* hkCalloc(size_t count, size_t size) { return taken(calloc(count == 0 ? 1 : count, size)); }
void* hkRealloc(void* block, size_t size) {
    void* moved = realloc(block, size == 0 ? 1 : size);
    return block == NULL ? taken(moved) : moved;
}
void hkFree(void* block) {
    if (block != NULL) ++blocks_given_back;
    free(block);
}
char* hkStrdup(const char* s) {
    if (s == NULL) return NULL;
    const size_t size = strlen(s) + 1;
    char* copy = hkMalloc(size);
    return copy == NULL ? NULL : memcpy(copy, s, size);
}
hkMemoryContext* hkGetMemoryContext(void) {
    static char heap;
    return (hkMemoryContext*)&heap;
}
void* hk_mem_calloc(hkMemoryContext* context, size_t count, size_t size) {
    (void)context;
    return hkCalloc(count, size);
}
void hk_mem_free(hkMemoryContext* context, void* block) {
    (void)context;
    hkFree(block);
}
void hkOutOfMemoryCheck(const void* block) {
    if (block == NULL) abort();
}

/* Console and process. */
int hkPrintf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fputs("library says: ", stdout);
    int written = vprintf(format, arguments);
    va_end(arguments);
    return written;
}
char* hkGetcwd(char* buffer, size_t size) { return buffer == NULL ? NULL : getcwd(buffer, size); }

/* Strings. This host knows one-byte characters alone. */
size_t hkStrlen(const char* s) { return s == NULL ? 0 : strlen(s); }
char* hkLowerCase(char* s) {
    for (char* p = s; p != NULL && *p != '\0'; ++p) {
        if (*p >= 'A' && *p <= 'Z') *p = (char)(*p + ('a' - 'A'));
    }
    return s;
}
char* hkFixAutoMountPrefix(char* name) { return name; }
const char* hkMultiBytePrevChar(const char* start, const char* p) { return p > start ? p - 1 : p; }
bool hk_is_7bit(const char* s) {
    for (; s != NULL && *s != '\0'; ++s) {
        if ((unsigned char)*s > 127) return false;
    }
    return true;
}
int vpath_pathname_index(const char* s) {
    const char* slash = s == NULL ? NULL : strrchr(s, '/');
    return slash == NULL ? -1 : (int)(slash - s);
}

/* Hashing. */
uint32_t hk_hash_string(uint32_t seed, const char* s) {
    if (s == NULL) return 0;
    uint32_t hash = seed ^ 2166136261U;
    for (; *s != '\0'; ++s) hash = (hash ^ (unsigned char)*s) * 16777619U;
    return hash;
}
uint32_t hk_hash_next_quasiprime(hkMemoryContext* context, uint32_t target, int direction) {
    (void)context;
    const uint32_t step = direction < 0 ? (uint32_t)-1 : 1;
    if (target == 0) return 1;
    while (target % 2 == 0 || target % 3 == 0 || target % 5 == 0 || target % 7 == 0 ||
           target % 11 == 0 || target % 13 == 0) {
        target += step;
    }
    return target;
}

/* Timing: nothing is measured here. */
void hkWallClock(hkWallClockTime* out) { memset(out, 0, sizeof *out); }
hkTick hkPERFtic(int on) { return on != 0 ? (hkTick)clock() : 0; }
void hkMarkTime(const char* label, hkTick start, hkTick end) {
    (void)label;
    (void)start;
    (void)end;
}
void hkIncrementTicDepth(void) {}
void hkDecrementTicDepth(void) {}
