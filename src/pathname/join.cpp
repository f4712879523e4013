#include "pathname/join.h"

#include <cstring>

#include <vpath/pathname.h>

#include "pathname/text.h"

namespace {

constexpr size_t kLongestCombinedName = 4352;

char* AppendTo(char* dir, size_t dirLength, std::string_view name) {
    const Joint joint = JointOf({dir, dirLength}, name);
    char* end = dir + dirLength;
    if (joint.separator) *end++ = '/';
    WriteText(end, joint.tail);
    return dir;
}

bool StandsOnItsOwn(std::string_view rel) {
    return rel.starts_with('/') || rel.starts_with('~') || rel.starts_with("./") ||
           rel.starts_with("../");
}

}  // namespace

char* vpConcatPathName(char* dir, const char* name) {
    return dir == nullptr ? nullptr : AppendTo(dir, std::strlen(dir), TextOf(name));
}

char* vpConcatPathSubdir(char* dir, const char* subdir) { return vpConcatPathName(dir, subdir); }

char* vpCombinePathName(char* dst, const char* dir, const char* name) {
    if (dst == nullptr) return nullptr;
    const std::string_view start = TextOf(dir);
    return AppendTo(WriteText(dst, start), start.size(), TextOf(name));
}

bool vpCombineDirectory(char* dst, const char* base, const char* rel) {
    if (dst == nullptr || base == nullptr || rel == nullptr) return false;
    const std::string_view start(base);
    const std::string_view end(rel);
    if (StandsOnItsOwn(end)) {
        if (end.size() > kLongestCombinedName) return false;
        WriteText(dst, end);
        return true;
    }
    if (start.size() + end.size() + 1 > kLongestCombinedName) return false;
    WriteText(dst, start);
    dst[start.size()] = '/';
    WriteText(dst + start.size() + 1, end);
    return true;
}
