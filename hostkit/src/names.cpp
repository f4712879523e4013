#include <cstring>
#include <string_view>

#include <hostkit/hostkit.h>

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

}  // namespace

size_t hkStrlen(const char* s) { return s == nullptr ? 0 : std::strlen(s); }

char* hkLowerCase(char* s) {
    if (s == nullptr) return nullptr;
    for (char* p = s; *p != '\0'; ++p) {
        if (*p >= 'A' && *p <= 'Z') *p = static_cast<char>(*p + ('a' - 'A'));
    }
    return s;
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
