#include <cstring>
#include <string>

#include <boost/filesystem.hpp>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>

namespace {

// The normal form writes a name that ended in '/' or "/." as "name/.".
std::string WithoutFinalDot(std::string name) {
    if (name.ends_with("/.")) name.pop_back();
    while (name.size() > 1 && name.back() == '/') name.pop_back();
    return name;
}

char* CompleteName(char* dst, const char* name, size_t dstSize) noexcept {
    try {
        const boost::filesystem::path complete = boost::filesystem::absolute(name);
        const std::string full = WithoutFinalDot(complete.lexically_normal().string());
        if (full.size() >= dstSize || !boost::filesystem::exists(full)) return nullptr;
        std::memcpy(dst, full.c_str(), full.size() + 1);
        return dst;
    } catch (...) {
        return nullptr;
    }
}

}  // namespace

char* vpFullPath(char* dst, const char* name, size_t dstSize) {
    if (dst == nullptr || name == nullptr || *name == '\0') return nullptr;
    if (vpIsAbsolutePath(name)) return std::strncpy(dst, name, dstSize);
    return hkFixAutoMountPrefix(CompleteName(dst, name, dstSize));
}
