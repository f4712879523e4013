// Stepping through one listing of a directory, as the host's listing callback answered it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/memory.h"
#include "dir/item.h"
#include "dir/name_prefetch.h"

class PathAllDirItemInfo;
class PathMgr;

enum class EntryKind : uint8_t { kFile, kPlainSubDir, kPrivateDir, kClassDir, kPackageDir };

struct ListingEntry {
    std::string_view name;  // as listed; its bytes end with a NUL
    EntryKind kind;
    bool kindConfirmed;  // known from the host, not from the name alone
    PathFileItemInfo::ClassdefState classdef;

    // The name without the mark of a class or package directory.
    std::string_view bareName() const {
        const bool marked = kind == EntryKind::kClassDir || kind == EntryKind::kPackageDir;
        return marked ? name.substr(1) : name;
    }
};

class ListingReader {
  public:
    // Asks the host for the listing of `directory`. The current directory of a path that hides it
    // has an empty one.
    ListingReader(PathMgr& path, PathAllDirItemInfo& directory);

    // How many entries there can be that are no directories. Cost: one pass over the names.
    size_t countFiles() const;

    // For a reader whose entries will be looked for, or made, in the name table one after another.
    void prefetchNames();

    // The next entry, hidden names left out; false at the end. Asks the host to confirm entries
    // that are named like special directories.
    bool next(ListingEntry& entry);

  private:
    ListingEntry classify(std::string_view name, unsigned int word);

    PathMgr* path_;
    HkString directoryName_;
    HkBlock<char> names_;
    HkBlock<unsigned int> words_;
    const char* cursor_ = "";
    std::optional<NamePrefetch> prefetch_;
    size_t entryIndex_ = 0;  // counts every name passed, those left out included
};
