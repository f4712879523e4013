#include <bit>
#include <cstring>
#include <string_view>

#include <hostkit/hostkit.h>

#include "words.h"

namespace {

constexpr std::string_view kAutoMountPrefix = "/tmp_mnt";

bool IsBetween(char c, unsigned low, unsigned high) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= low && byte <= high;
}

// Whether the `length` (2 to 4) bytes at `s` are exactly one character. The second byte's range
// leaves out overlong forms, surrogates and what lies above U+10FFFF.
bool IsMultiByteChar(const char* s, int length) {
    const auto lead = static_cast<unsigned char>(s[0]);
    unsigned low = 0x80;
    unsigned high = 0xBF;
    switch (length) {
        case 2:
            if (lead < 0xC2 || lead > 0xDF) return false;
            break;
        case 3:
            if (lead < 0xE0 || lead > 0xEF) return false;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
            break;
        default:
            if (lead < 0xF0 || lead > 0xF4) return false;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
            break;
    }
    if (!IsBetween(s[1], low, high)) return false;
    for (int i = 2; i < length; ++i) {
        if (!IsBetween(s[i], 0x80, 0xBF)) return false;
    }
    return true;
}

// Lower-cases the ASCII letters of a word.
uint64_t LowerCased(uint64_t word) {
    const uint64_t low7 = word & InEachByte(0x7F);
    const uint64_t aboveZ = low7 + InEachByte(0x7F - 'Z');
    const uint64_t fromA = low7 + InEachByte(0x80 - 'A');
    const uint64_t upper = (fromA ^ aboveZ) & ~word & InEachByte(0x80);
    return word | upper >> 2;
}

}  // namespace

size_t hkStrlen(const char* s) { return s == nullptr ? 0 : std::strlen(s); }

HOSTKIT_READS_WHOLE_WORDS char* hkLowerCase(char* s) {
    if (s == nullptr) return nullptr;
    char* p = s;
    for (; !IsWordAligned(p); ++p) {
        if (*p == '\0') return s;
        if (IsBetween(*p, 'A', 'Z')) *p = static_cast<char>(*p + ('a' - 'A'));
    }
    for (;; p += kWordSize) {
        Word& word = *reinterpret_cast<Word*>(p);
        const uint64_t lower = LowerCased(word);
        const uint64_t end = FirstNul(word);
        if (end != 0) {
            // What stands behind the NUL is not ours to write, not even as it is.
            uint64_t changed = (word ^ lower) & BytesBefore(end);
            for (; changed != 0; changed &= changed - 1) {
                p[std::countr_zero(changed) / 8] ^= 'a' - 'A';
            }
            return s;
        }
        word = lower;
    }
}

char* hkFixAutoMountPrefix(char* name) {
    if (name == nullptr) return nullptr;
    const size_t skipped = kAutoMountPrefix.size();
    if (std::strncmp(name, kAutoMountPrefix.data(), skipped) == 0 && name[skipped] == '/') {
        std::memmove(name, name + skipped, std::strlen(name + skipped) + 1);
    }
    return name;
}

const char* hkMultiBytePrevChar(const char* start, const char* p) {
    if (p <= start) return start;
    // Valid characters never overlap, so looking back finds the same ones as reading forward.
    for (int length = 2; length <= 4 && p - start >= length; ++length) {
        if (IsMultiByteChar(p - length, length)) return p - length;
    }
    return p - 1;
}

bool hk_is_7bit(const char* s) {
    if (s == nullptr) return true;
    constexpr uint64_t kHighBits = 0x8080808080808080U;
    uint64_t seen = 0;
    size_t left = std::strlen(s);
    for (; left >= sizeof seen; left -= sizeof seen, s += sizeof seen) {
        uint64_t word;
        std::memcpy(&word, s, sizeof word);
        seen |= word;
    }
    for (; left > 0; --left, ++s) seen |= static_cast<unsigned char>(*s);
    return (seen & kHighBits) == 0;
}

int vpath_pathname_index(const char* s) {
    // No multi-byte UTF-8 character contains the byte '/', so the last such byte is a separator.
    const char* separator = s == nullptr ? nullptr : std::strrchr(s, '/');
    return separator == nullptr ? -1 : static_cast<int>(separator - s);
}
