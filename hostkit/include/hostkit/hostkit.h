// hostkit: the utility calls that libvpath takes from its host.
//
// Memory, console, current directory, name folding, hashing and timing. libhostkit.so is the
// bundled implementation; a program that defines any of these functions itself replaces that one
// for everybody, the library included. Two groups belong together and are replaced as a whole:
// hkMalloc, hkRealloc and hkFree; hk_mem_calloc, hk_mem_free and hkGetMemoryContext.
//
// Strings are NUL-ended bytes; names of more than 7 bits are UTF-8, in which a byte that is no part
// of a valid character counts as a character of its own. Unless a function says otherwise, null
// strings are not allowed, nothing is kept after the call, and the cost is linear in what is read.
// Only the timing calls keep state; they are for one thread at a time.
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

// Marks what the bundled library exports.
#define HK_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------------------------
// Memory. Sizes are bytes. A failed call answers NULL; every block goes back through hkFree.

HK_EXPORT void* hkMalloc(size_t size);                // contents undefined
HK_EXPORT void* hkCalloc(size_t count, size_t size);  // zeroed; NULL on overflow
HK_EXPORT void* hkRealloc(void* block, size_t size);  // on failure `block` stays valid
HK_EXPORT void hkFree(void* block);                   // NULL is allowed
HK_EXPORT char* hkStrdup(const char* s);              // NULL gives NULL

// A context stands for one heap. The bundled library has a single one, never NULL and never freed,
// whose blocks come from hkCalloc and go to hkFree.
typedef struct hkMemoryContext hkMemoryContext;
HK_EXPORT hkMemoryContext* hkGetMemoryContext(void);
HK_EXPORT void* hk_mem_calloc(hkMemoryContext* context, size_t count, size_t size);
HK_EXPORT void hk_mem_free(hkMemoryContext* context, void* block);

// Returns when `block` is not NULL; otherwise says on stderr that memory is exhausted and aborts
// the process.
HK_EXPORT void hkOutOfMemoryCheck(const void* block);

// ---------------------------------------------------------------------------------------------
// Console and process

// printf to the console (standard output). Answers the characters written, or a negative number.
HK_EXPORT int hkPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The process's current directory in `buffer` of `size` bytes, NUL included; `buffer`, or NULL when
// the directory is gone, the name does not fit or `buffer` is NULL.
HK_EXPORT char* hkGetcwd(char* buffer, size_t size);

// ---------------------------------------------------------------------------------------------
// Strings and names

HK_EXPORT size_t hkStrlen(const char* s);  // bytes without the NUL; NULL gives 0

// Folds 'A'-'Z' in place, whatever the locale; every other byte stays. Answers `s`; NULL is
// allowed.
HK_EXPORT char* hkLowerCase(char* s);

// Removes the automounter's prefix, a leading "/tmp_mnt" that is followed by '/', in place. Answers
// `name`; NULL gives NULL.
HK_EXPORT char* hkFixAutoMountPrefix(char* name);

// Start of the character that ends just before `p`, which lies in the string beginning at `start`.
// Answers `start` when `p` is there already. Constant cost.
HK_EXPORT const char* hkMultiBytePrevChar(const char* start, const char* p);

HK_EXPORT bool hk_is_7bit(const char* s);           // no byte above 127; NULL gives true
HK_EXPORT int vpath_pathname_index(const char* s);  // last '/' of a multi-byte name; -1: none, NULL

// ---------------------------------------------------------------------------------------------
// Hashing

// 32 well mixed bits of a string, for hash tables of one process: the value may differ between
// machines and versions. NULL hashes to 0, and so does "" with seed 0.
HK_EXPORT uint32_t hk_hash_string(uint32_t seed, const char* s);

// Bucket counts. A quasi-prime has no prime factor below 17 (1 is one, 0 is not). A `direction` of
// 0 or more answers the smallest that is not below `target`, a negative one the largest that is not
// above it; at the ends of the range, where there is none, the nearest one. `context` is not used.
// Constant cost: quasi-primes are never more than 22 apart.
HK_EXPORT uint32_t hk_hash_next_quasiprime(hkMemoryContext* context, uint32_t target,
                                           int direction);

// ---------------------------------------------------------------------------------------------
// Timing

// Local time of day.
typedef struct {
    int hours;       // 0 to 23
    int minutes;     // 0 to 59
    double seconds;  // with a fraction
} hkWallClockTime;
HK_EXPORT void hkWallClock(hkWallClockTime* out);

// Nanoseconds of a clock that never goes back, from an arbitrary origin; 0 when `on` is 0, for
// callers whose timing is switched off.
typedef uint64_t hkTick;
HK_EXPORT hkTick hkPERFtic(int on);

// Records the span from `start` to `end` under `label` (NULL is the empty label; 31 bytes are kept)
// at the present depth. The latest 64 spans are kept.
HK_EXPORT void hkMarkTime(const char* label, hkTick start, hkTick end);

// How deeply the spans that follow are nested in others. Never below 0.
HK_EXPORT void hkIncrementTicDepth(void);
HK_EXPORT void hkDecrementTicDepth(void);

// A recorded span.
typedef struct {
    char label[32];  // with its NUL
    hkTick start;    // as given
    hkTick end;      // as given
    int depth;       // at which it was recorded; 0: not nested
} hkMarkedTime;

// Copies the latest recorded spans, at most `capacity`, the newest first; answers how many.
HK_EXPORT size_t hkGetMarkedTimes(hkMarkedTime* out, size_t capacity);

#ifdef __cplusplus
}
#endif
