#include <bit>
#include <cstring>
#include <limits>
#include <numeric>

#include <hostkit/hostkit.h>

#include "words.h"

namespace {

constexpr uint64_t kMultiplier = 0x9FB21C651E98DF25U;  // odd, bits evenly spread

uint64_t Mixed(uint64_t state, uint64_t word) {
    state = (state ^ word) * kMultiplier;
    return state ^ (state >> 32);
}

bool IsQuasiPrime(uint32_t n) {
    constexpr uint32_t kSmallPrimes = 2 * 3 * 5 * 7 * 11 * 13;
    return std::gcd(n, kSmallPrimes) == 1;
}

constexpr uint32_t kSmallest = 1;
constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max() - 2;  // 9241 * 464773

}  // namespace

// A string counts as its words, the last one filled up with zeros, and its length.
HOSTKIT_READS_WHOLE_WORDS uint32_t hk_hash_string(uint32_t seed, const char* s) {
    if (s == nullptr) return 0;
    uint64_t state = seed;
    const char* p = s;
    size_t rest = IsWordAligned(s) ? 0 : std::strlen(s);
    for (; rest >= kWordSize; rest -= kWordSize, p += kWordSize) {
        uint64_t word;
        std::memcpy(&word, p, kWordSize);
        state = Mixed(state, word);
    }
    uint64_t last = 0;
    if (IsWordAligned(s)) {
        uint64_t end = 0;
        for (;; p += kWordSize) {
            last = *reinterpret_cast<const Word*>(p);
            if ((end = FirstNul(last)) != 0) break;
            state = Mixed(state, last);
        }
        last &= BytesBefore(end);
        rest = static_cast<size_t>(std::countr_zero(end)) / 8;
    } else {
        std::memcpy(&last, p, rest);
    }
    if (rest != 0) state = Mixed(state, last);
    const auto length = static_cast<size_t>(p - s) + rest;
    state = Mixed(state, length);  // last: beside the text it would stand for a change of letters
    return static_cast<uint32_t>(state ^ (state >> 29));
}

uint32_t hk_hash_next_quasiprime(hkMemoryContext*, uint32_t target, int direction) {
    if (target <= kSmallest) return kSmallest;
    if (target >= kLargest) return kLargest;
    const uint32_t step = direction < 0 ? static_cast<uint32_t>(-1) : 1;
    while (!IsQuasiPrime(target)) target += step;
    return target;
}
