#include <cstring>
#include <string>

#include <boost/filesystem.hpp>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>

namespace {

// Without "." and without the names that ".." takes back; lexically_normal() keeps ".a/..".
std::string NormalForm(const boost::filesystem::path& complete) {
    boost::filesystem::path normal = complete.root_path();
    for (const boost::filesystem::path& component : complete.relative_path()) {
        if (component == ".") continue;
        if (component == ".." && normal.has_relative_path() && normal.filename() != "..") {
            normal.remove_filename();
        } else {
            normal /= component;
        }
    }
    return normal.string();
}

char* CompleteName(char* dst, const char* name, size_t dstSize) noexcept {
    try {
        const std::string full = NormalForm(boost::filesystem::absolute(name));
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
