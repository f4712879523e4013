#include "loading/tree_adder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <vpath/pathname.h>
#include <vpath/search.h>

#include "loading/open_search.h"
#include "loading/path_names.h"
#include "output/exit_status.h"
#include "output/interruption.h"

namespace {

constexpr unsigned int kDirectoryWord = 0x4000;

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
        EndIfInterrupted();
        Level& level = levels_.back();
        if (level.next < level.subdirectories.size()) {
            enter(JoinNames(level.name, level.subdirectories[level.next++]));
        } else {
            levels_.pop_back();
            above_.pop_back();
        }
    }
}

void TreeAdder::enter(const std::string& name) {
    const auto id = idOf(name);
    if (!id || std::find(above_.begin(), above_.end(), *id) != above_.end()) return;
    const vpDir dir = addToPath(name);
    if (vpGetDirType(dir) != vpDirTypePath) return;
    levels_.push_back({name, listSubdirectories(dir), 0});
    above_.push_back(*id);
}

vpDir TreeAdder::addToPath(const std::string& name) {
    listed_.reset();
    const vpDir known = vpFindDirFullName(path_, name.c_str());
    if (vpGetDirType(known) == vpDirTypePath) return known;
    adding_ = name;
    const vpDir added = vpAddDir(path_, name.c_str(), vpAddAtEnd);
    adding_.clear();
    return added;
}

void TreeAdder::onListing(const char* dirName, const char* names, const unsigned int* words) {
    if (!adding_.empty() && adding_ == dirName) listed_ = subdirectories(names, words);
}

std::vector<std::string> TreeAdder::listSubdirectories(const vpDir& dir) {
    if (listed_) return *std::exchange(listed_, std::nullopt);
    // It was on the path before, or a cache knew it.
    std::vector<std::string> found;
    const Search search(vpCreateDirSearch(dir, nullptr, nullptr, vpReadCheckSkip));
    char name[kNameRoom];
    while (vpFindNextSubdirectory(search.get(), nullptr, name) != 0) {
        const char* const last = std::strrchr(name, '/') + 1;
        if (isOrdinary(last)) found.emplace_back(last);
    }
    return found;
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
