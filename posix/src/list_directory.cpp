#include "vpath_posix/posix_host.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <hostkit/hostkit.h>

namespace {

constexpr unsigned int kDirectoryWord = 0x4000;
constexpr unsigned int kFileWord = 0x8000;

struct CloseDirectory {
    void operator()(DIR* dir) const {
        const int error = errno;
        closedir(dir);
        errno = error;
    }
};

struct Entry {
    size_t offset;  // of the name in Listing::names
    unsigned int word;
};

struct Listing {
    std::string names;  // one after another, each ended by a NUL
    std::vector<Entry> entries;

    const char* nameOf(const Entry& entry) const { return names.data() + entry.offset; }
};

unsigned int WordOf(DIR* dir, const dirent& entry) {
    switch (entry.d_type) {
        case DT_DIR:
            return kDirectoryWord;
        case DT_REG:
            return kFileWord;
        case DT_LNK:
        case DT_UNKNOWN:
            break;
        default:
            return 0;
    }
    struct stat status;
    if (fstatat(dirfd(dir), entry.d_name, &status, 0) != 0) return 0;
    if (S_ISDIR(status.st_mode)) return kDirectoryWord;
    return S_ISREG(status.st_mode) ? kFileWord : 0;
}

// An error of readdir ends the listing like its end does, and stays in errno.
Listing ReadEntries(DIR* dir) {
    Listing listing;
    const auto next = [dir] {
        errno = 0;
        return readdir(dir);
    };
    while (const dirent* entry = next()) {
        if (entry->d_name[0] == '.') continue;
        listing.entries.push_back({listing.names.size(), WordOf(dir, *entry)});
        listing.names.append(entry->d_name, std::strlen(entry->d_name) + 1);
    }
    return listing;
}

void SortEntries(Listing& listing) {
    // strcmp compares as unsigned char.
    const auto before = [&](const Entry& a, const Entry& b) {
        return std::strcmp(listing.nameOf(a), listing.nameOf(b)) < 0;
    };
    const auto same = [&](const Entry& a, const Entry& b) {
        return std::strcmp(listing.nameOf(a), listing.nameOf(b)) == 0;
    };
    std::vector<Entry>& entries = listing.entries;
    std::sort(entries.begin(), entries.end(), before);
    // A directory that changes while it is read may give a name twice.
    entries.erase(std::unique(entries.begin(), entries.end(), same), entries.end());
}

void* Allocate(size_t size) {
    void* block = hkMalloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

struct FreeBlock {
    void operator()(void* block) const { hkFree(block); }
};

char* HandOver(const Listing& listing, unsigned int** words) {
    std::unique_ptr<char, FreeBlock> names(static_cast<char*>(Allocate(listing.names.size() + 1)));
    auto* word =
        static_cast<unsigned int*>(Allocate(listing.entries.size() * sizeof(unsigned int)));
    *words = word;
    char* end = names.get();
    for (const Entry& entry : listing.entries) {
        end = stpcpy(end, listing.nameOf(entry)) + 1;
        *word++ = entry.word;
    }
    *end = '\0';
    return names.release();
}

}  // namespace

char* vpPosixListDirectory(vpPath, const char* dirName, unsigned int** words) {
    *words = nullptr;
    if (dirName == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    const std::unique_ptr<DIR, CloseDirectory> dir(opendir(dirName));
    if (dir == nullptr) return nullptr;
    try {
        Listing listing = ReadEntries(dir.get());
        const int error = errno;
        char* names = nullptr;
        if (!listing.entries.empty()) {
            SortEntries(listing);
            names = HandOver(listing, words);
        }
        errno = error;
        return names;
    } catch (const std::bad_alloc&) {
        hkOutOfMemoryCheck(nullptr);
        errno = ENOMEM;
        return nullptr;
    }
}
