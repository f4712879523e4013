#include <cstring>
#include <limits>
#include <numeric>

#include <hostkit/hostkit.h>

namespace {

constexpr uint64_t kMultiplier = 0x9FB21C651E98DF25U;  // odd, bits evenly spread

uint64_t Mixed(uint64_t state, uint64_t word) {
    state = (state ^ word) * kMultiplier;
    return state ^ (state >> 32);
}

template <class Word>
uint64_t WordAt(const char* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

// The last 1 to 8 of `length` bytes at `s`; reads overlap rather than go byte by byte.
uint64_t Tail(const char* s, size_t length) {
    const char* end = s + length;
    if (length >= 8) return WordAt<uint64_t>(end - 8);
    if (length >= 4) return WordAt<uint32_t>(s) | WordAt<uint32_t>(end - 4) << 32;
    return WordAt<uint8_t>(s) | WordAt<uint8_t>(s + length / 2) << 8 |
           WordAt<uint8_t>(end - 1) << 16;
}

bool IsQuasiPrime(uint32_t n) {
    constexpr uint32_t kSmallPrimes = 2 * 3 * 5 * 7 * 11 * 13;
    return std::gcd(n, kSmallPrimes) == 1;
}

constexpr uint32_t kSmallest = 1;
constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max() - 2;  // 9241 * 464773

}  // namespace

uint32_t hk_hash_string(uint32_t seed, const char* s) {
    if (s == nullptr) return 0;
    const size_t length = std::strlen(s);
    uint64_t state = seed;
    if (length > 0) {
        size_t done = 0;
        for (; length - done > 8; done += 8) state = Mixed(state, WordAt<uint64_t>(s + done));
        state = Mixed(state, Tail(s, length));
    }
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
