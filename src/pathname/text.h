// Reading and writing the NUL-ended strings of callers.
#pragma once

#include <cstring>
#include <string_view>

// A null name is the empty name.
inline std::string_view TextOf(const char* name) {
    return name == nullptr ? std::string_view() : std::string_view(name);
}

// Writes `text` and a NUL; `text` may lie in the same buffer.
inline char* WriteText(char* dst, std::string_view text) {
    if (!text.empty()) std::memmove(dst, text.data(), text.size());
    dst[text.size()] = '\0';
    return dst;
}
