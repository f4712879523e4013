#include "dir/listing_reader.h"

#include <cstring>

#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"
#include "pathname/join.h"

namespace {

constexpr unsigned int kWordDirectory = 0x4000;
constexpr unsigned int kWordFile = 0x8000;
constexpr unsigned int kWordClassdef = 0x1;
constexpr unsigned int kWordNotClassdef = 0x2;

// A special directory whose full name is longer could not be named by any call; without this bound
// a host that lists a package directory in every package directory would never be done.
constexpr size_t kLongestDirectoryName = 4096;

EntryKind KindByName(std::string_view name) {
    switch (name.front()) {
        case '+':
            return name.size() > 1 ? EntryKind::kPackageDir : EntryKind::kPlainSubDir;
        case '@':
            return name.size() > 1 ? EntryKind::kClassDir : EntryKind::kPlainSubDir;
        default:
            return IsPrivateName(name) ? EntryKind::kPrivateDir : EntryKind::kPlainSubDir;
    }
}

PathFileItemInfo::ClassdefState ClassdefOf(unsigned int word) {
    if ((word & kWordClassdef) != 0) return PathFileItemInfo::kClassdef;
    if ((word & kWordNotClassdef) != 0) return PathFileItemInfo::kNotClassdef;
    return PathFileItemInfo::kUnknown;
}

// Whether the path hides its current directory and `directoryName` is its name.
bool IsHidden(const PathMgr& path, std::string_view directoryName) {
    return path.hideCwd && path.contents.isCurrent(directoryName);
}

HkBlock<char> EmptyListing() {
    HkBlock<char> listing(static_cast<char*>(hkCalloc(1, 1)));
    if (listing == nullptr) FailOutOfMemory();
    return listing;
}

}  // namespace

ListingReader::ListingReader(PathMgr& path, PathAllDirItemInfo& directory)
    : path_(&path), directoryName_(FullName(directory).view()) {
    if (!IsHidden(path, directoryName_)) {
        unsigned int* words = nullptr;
        try {
            names_.reset(path.listDirectory(directoryName_.c_str(), &words));
        } catch (...) {
            hkFree(words);  // what a callback stored is the library's, though it throws
            throw;
        }
        words_.reset(words);
    }
    if (names_ == nullptr) names_ = EmptyListing();
    cursor_ = names_.get();
}

size_t ListingReader::countFiles() const {
    size_t files = 0;
    size_t index = 0;
    for (const char* name = names_.get(); *name != '\0'; name += std::strlen(name) + 1, ++index) {
        if (words_ == nullptr || (words_.get()[index] & kWordDirectory) == 0) ++files;
    }
    return files;
}

void ListingReader::prefetchNames() { prefetch_.emplace(path_->nameTable, cursor_); }

bool ListingReader::next(ListingEntry& entry) {
    while (*cursor_ != '\0') {
        const std::string_view name(cursor_);
        const unsigned int word = words_ != nullptr ? words_.get()[entryIndex_] : 0;
        cursor_ += name.size() + 1;
        ++entryIndex_;
        if (prefetch_) prefetch_->advance();
        if (name.front() == '.') continue;
        entry = classify(name, word);
        return true;
    }
    return false;
}

ListingEntry ListingReader::classify(std::string_view name, unsigned int word) {
    constexpr auto kUnknown = PathFileItemInfo::kUnknown;
    ListingEntry entry{name, EntryKind::kFile, true, kUnknown};
    if ((word & kWordDirectory) != 0) {
        entry.kind = KindByName(name);
    } else if ((word & kWordFile) != 0) {
        entry.classdef = ClassdefOf(word);
    } else {
        entry.kind = KindByName(name);
        if (entry.kind == EntryKind::kPlainSubDir) {
            entry.kind = EntryKind::kFile;
            entry.kindConfirmed = false;
        }
    }
    const bool special = entry.kind != EntryKind::kFile && entry.kind != EntryKind::kPlainSubDir;
    if (!special) return entry;
    HkString fullName(directoryName_);
    AppendPathName(fullName, name);
    const bool tooLong = fullName.size() > kLongestDirectoryName;
    // A name that is too long stays a file for good: asking about it again would not help.
    if (tooLong) return {name, EntryKind::kFile, true, kUnknown};
    return path_->isDirectory(fullName.c_str())
               ? entry
               : ListingEntry{name, EntryKind::kFile, false, kUnknown};
}
