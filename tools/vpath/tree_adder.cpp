#include "tree_adder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>
#include <vpath_posix/posix_host.h>

#include "exit_status.h"

namespace {

constexpr unsigned int kDirectoryWord = 0x4000;

struct HkFree {
    void operator()(void* block) const { hkFree(block); }
};

std::string Join(const std::string& dir, const std::string& name) {
    return dir == "/" ? dir + name : dir + "/" + name;
}

// The name without links, by which ".." goes.
std::string PhysicalName(const std::string& name) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(name.c_str(), nullptr),
                                                               &std::free);
    return resolved == nullptr ? name : resolved.get();
}

}  // namespace

TreeAdder::TreeAdder(const vpPath& path, bool ignoreCase) : path_(path), ignoreCase_(ignoreCase) {}

void TreeAdder::add(const std::string& root) {
    struct stat status;
    if (stat(root.c_str(), &status) != 0) {
        throw CommandError("--recursive " + root + ": " + std::strerror(errno) +
                           "; name a directory that exists");
    }
    if (!S_ISDIR(status.st_mode)) {
        throw CommandError("--recursive " + root + ": not a directory; add its directory instead");
    }

    above_.clear();
    const std::string physical = PhysicalName(root);
    for (size_t slash = physical.find('/');
         slash != std::string::npos && slash + 1 < physical.size();
         slash = physical.find('/', slash + 1)) {
        if (const auto id = idOf(physical.substr(0, slash + 1))) above_.push_back(*id);
    }

    enter(root);
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.next < level.subdirectories.size()) {
            enter(Join(level.name, level.subdirectories[level.next++]));
        } else {
            levels_.pop_back();
            above_.pop_back();
        }
    }
}

void TreeAdder::enter(const std::string& name) {
    const auto id = idOf(name);
    if (!id || std::find(above_.begin(), above_.end(), *id) != above_.end()) return;
    if (!addToPath(name)) return;
    levels_.push_back({name, listSubdirectories(name), 0});
    above_.push_back(*id);
}

bool TreeAdder::addToPath(const std::string& name) {
    listed_.reset();
    if (vpGetDirType(vpFindDirFullName(path_, name.c_str())) == vpDirTypePath) return true;
    adding_ = name;
    const vpDir dir = vpAddDir(path_, name.c_str(), vpAddAtEnd);
    adding_.clear();
    return vpGetDirType(dir) == vpDirTypePath;
}

void TreeAdder::onListing(const char* dirName, const char* names, const unsigned int* words) {
    if (!adding_.empty() && adding_ == dirName) listed_ = subdirectories(names, words);
}

std::vector<std::string> TreeAdder::listSubdirectories(const std::string& name) {
    if (listed_) return *std::exchange(listed_, std::nullopt);
    // It was on the path before.
    unsigned int* words = nullptr;
    const std::unique_ptr<char, HkFree> names(vpPosixListDirectory(path_, name.c_str(), &words));
    const std::unique_ptr<unsigned int, HkFree> ownedWords(words);
    return subdirectories(names.get(), words);
}

std::vector<std::string> TreeAdder::subdirectories(const char* names,
                                                   const unsigned int* words) const {
    std::vector<std::string> found;
    if (names == nullptr || words == nullptr) return found;
    for (; *names != '\0'; names += std::strlen(names) + 1, ++words) {
        if ((*words & kDirectoryWord) != 0 && isOrdinary(names)) found.emplace_back(names);
    }
    return found;  // listings are sorted
}

bool TreeAdder::isOrdinary(const char* name) const {
    if (name[0] == '.') return false;
    if ((name[0] == '@' || name[0] == '+') && name[1] != '\0') return false;
    return ignoreCase_ ? !vpIsPrivateDirName(name) : std::strcmp(name, "private") != 0;
}

std::optional<TreeAdder::FileId> TreeAdder::idOf(const std::string& name) {
    struct stat status;
    if (stat(name.c_str(), &status) != 0) return std::nullopt;
    return FileId{status.st_dev, status.st_ino};
}
