// Strings eight bytes at a time.
//
// A word at an aligned place never crosses a page, so that one may be read whole though its string
// ends in its midst. Address checkers know of no such right: who reads words takes their leave by
// HOSTKIT_READS_WHOLE_WORDS.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#define HOSTKIT_READS_WHOLE_WORDS __attribute__((no_sanitize("address")))

using Word [[gnu::may_alias]] = uint64_t;
inline constexpr size_t kWordSize = sizeof(Word);

inline bool IsWordAligned(const char* p) { return reinterpret_cast<uintptr_t>(p) % kWordSize == 0; }

constexpr uint64_t InEachByte(uint64_t byte) { return byte * 0x0101010101010101U; }

// Marks the first NUL of a word, and none before it, by the highest bit of its byte; 0 without one.
constexpr uint64_t FirstNul(uint64_t word) {
    const uint64_t marks = (word - InEachByte(1)) & ~word & InEachByte(0x80);
    return marks == 0 ? 0 : uint64_t{1} << std::countr_zero(marks);
}

// All bits of the bytes before the marked one.
constexpr uint64_t BytesBefore(uint64_t mark) { return (mark >> 7) - 1; }
