#include "pathname/normalize.h"

#include <cstring>
#include <string_view>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>

#include "base/reporting.h"
#include "pathname/tilde.h"

namespace {

std::string_view WithoutTrailing(std::string_view text, const char* unwanted) {
    return text.substr(0, text.find_last_not_of(unwanted) + 1);  // npos + 1 is 0
}

// Answers the length of the directory part. In a multi-byte name only a '/' that is a character of
// its own separates, hence the walk back; most names are spared it.
int ParentLength(const char* name, int length) {
    const char* last = std::strrchr(name, '/');
    if (last == nullptr) return 0;
    if (hk_is_7bit(name)) return static_cast<int>(last + 1 - name);
    for (const char* p = name + length; p > name;) {
        p = hkMultiBytePrevChar(name, p);
        if (*p == '/') return static_cast<int>(p + 1 - name);
    }
    return 0;
}

}  // namespace

const char* vpNormalizeDirName(const char* name, bool stripListSeparators, int, int* outLen,
                               char** outName) {
    if (outLen != nullptr) *outLen = 0;
    if (outName == nullptr) return nullptr;
    *outName = nullptr;
    if (name == nullptr || *name == '\0') return nullptr;

    PasswordScratch scratch;
    TildeParts parts;
    SplitTilde(name, scratch, &parts);
    const size_t homeLength = std::strlen(parts.home);
    const size_t restLength = std::strlen(parts.rest);
    const size_t given = homeLength + restLength;
    if (given > kLongestDirName) return "Directory name too long";

    auto* kept = static_cast<char*>(hkMalloc(given + 2));
    if (kept == nullptr) return "Not enough memory to add directory";
    std::memcpy(kept, parts.home, homeLength);
    std::memcpy(kept + homeLength, parts.rest, restLength);

    std::string_view text(kept, given);
    if (stripListSeparators) text = WithoutTrailing(text, ":;");
    if (text != "/") text = WithoutTrailing(text, "/");
    kept[text.size()] = '\0';
    *outName = kept;
    if (outLen != nullptr) *outLen = static_cast<int>(text.size());
    return nullptr;
}

bool IsNormalizedDirName(std::string_view name) {
    if (name.empty() || name.front() == '~' || name.size() > size_t{kLongestDirName}) return false;
    return name.back() != '/' || name.size() == 1;
}

void vpFreeNormalizedDirName(char* name) { hkFree(name); }

int NormalizeDirNameOrReport(const char* name, bool stripListSeparators, char** outName) {
    int length = 0;
    const char* failure = vpNormalizeDirName(name, stripListSeparators, 0, &length, outName);
    if (failure != nullptr) ReportErrorAbout(failure, name);
    return length;
}

int SplitNormalizedDirName(const char* name, char** outName, int* outLeafLen) {
    *outLeafLen = 0;
    int length = 0;
    const char* failure = vpNormalizeDirName(name, false, 0, &length, outName);
    if (failure != nullptr) {
        ReportWarningAbout(failure, name);
        return -1;
    }
    if (*outName == nullptr) return 0;
    if (length == 0) {
        vpFreeNormalizedDirName(*outName);
        *outName = nullptr;
        return -1;
    }
    const int parentLength = ParentLength(*outName, length);
    *outLeafLen = length - parentLength;
    return parentLength;
}
