// The last component of a name, and what it says about a directory.
#pragma once

#include <string_view>

#include "pathname/compare.h"

// The text after the last '/', one trailing '/' ignored. Borrowed from `dirName`.
inline std::string_view LastComponent(std::string_view dirName) {
    if (!dirName.empty() && dirName.back() == '/') dirName.remove_suffix(1);
    return dirName.substr(dirName.rfind('/') + 1);  // npos + 1 is 0
}

// The directory part of a file name, as vpSeparatePathName writes it: "/" for "/f", empty for "f".
inline std::string_view DirectoryPart(std::string_view fileName) {
    const size_t slash = fileName.rfind('/');
    if (slash == std::string_view::npos) return {};
    return fileName.substr(0, slash == 0 ? 1 : slash);
}

// Whether a component that begins so may be that of a class ('@') or package ('+') directory.
constexpr bool IsMark(char first) { return first == '@' || first == '+'; }

// Whether a component is the name of a private directory, "private" in any case.
inline bool IsPrivateName(std::string_view lastComponent) {
    constexpr std::string_view kPrivate = "private";
    return lastComponent.size() == kPrivate.size() &&
           CompareNamePrefix(lastComponent.data(), kPrivate.data(), kPrivate.size(), false) == 0;
}
