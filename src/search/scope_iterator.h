// The iterator of a search without a name: everything in a scope, in path order. Inside one
// directory it goes through files, package directories, class directories, private directory and
// plain subdirectories, and then, where the scope is the path, into the special directories.
#pragma once

#include <memory>

#include "search/name_iterators.h"

class ScopeIterator final : public CandidateIterator {
  public:
    // `start` for the scopes of one directory; may be the null directory.
    ScopeIterator(PathMgr& path, SearchScope scope, PathAllDirItemInfo& start);
    PathItemInfo* next(const SearchMode& mode) override;

  private:
    // A directory that the walk is in, with the place of the next special directory in it. What a
    // re-read drops meanwhile, be it where the walk stands, neither skips nor repeats the others.
    struct Level : HkAllocated {
        Level(PathMgr& path, PathAllDirItemInfo& directory);
        PathAllDirItemInfo* next();

        ChildCursor cursor;
        size_t list = 0;
    };

    void enter(PathAllDirItemInfo* directory);
    bool nextDirectory();
    PathAllDirItemInfo* following();
    bool takesList(ChildList list) const;
    bool takesDirectory(const PathAllDirItemInfo& directory) const;

    PathMgr& path_;
    SearchScope scope_;
    bool walksPath_;                // false while, or when only, a single directory is visited
    ItemRef<PathDirItemInfo> top_;  // the directory of the path beneath which the walk is
    HkVector<std::unique_ptr<Level>> levels_;  // from there down
    ItemRef<PathAllDirItemInfo> at_;           // null at the end
    uint8_t list_ = 0;
    ChildCursor cursor_;
};
