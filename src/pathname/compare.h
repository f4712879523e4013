// Comparing names: every comparison in the library goes through here, under the case rule of the
// path. Case is that of ASCII, whatever the locale.
#pragma once

#include <cstring>
#include <string_view>

inline unsigned char FoldedByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

// Less than, equal to or greater than 0, over at most the first `n` bytes. A null name compares as
// the empty name.
inline int CompareNamePrefix(const char* a, const char* b, unsigned n, bool caseSensitive) {
    if (a == nullptr) a = "";
    if (b == nullptr) b = "";
    if (caseSensitive) return std::strncmp(a, b, n);
    for (; n > 0; --n, ++a, ++b) {
        const int difference = FoldedByte(*a) - FoldedByte(*b);
        if (difference != 0 || *a == '\0') return difference;
    }
    return 0;
}

inline int CompareNames(const char* a, const char* b, bool caseSensitive) {
    if (a == nullptr) a = "";
    if (b == nullptr) b = "";
    if (caseSensitive) return std::strcmp(a, b);
    for (;; ++a, ++b) {
        const int difference = FoldedByte(*a) - FoldedByte(*b);
        if (difference != 0 || *a == '\0') return difference;
    }
}

// Whether two names, which hold no NUL, are the same.
inline bool SameName(std::string_view a, std::string_view b, bool caseSensitive) {
    return a.size() == b.size() &&
           CompareNamePrefix(a.data(), b.data(), static_cast<unsigned>(a.size()), caseSensitive) ==
               0;
}
