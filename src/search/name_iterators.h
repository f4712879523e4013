// Iterators of a search for a name. Each yields the items of one scope in its order; a search asks
// its iterators one after another: vpSearch::buildNameIterators says which, the private directory
// first. What comes first within a scope is decided here.
#pragma once

#include <span>
#include <string_view>

#include "dir/cursors.h"
#include "search/search_mode.h"

// What the iterators of one search share. Outlived by the search.
struct NameQuery {
    PathMgr& path;
    PathNameInfo& record;
    std::string_view base;  // compared under the case rule: the record ignores case
    bool caseSensitive;
    SearchScope scope;
};

class CandidateIterator {
  public:
    CandidateIterator(const CandidateIterator&) = delete;
    CandidateIterator& operator=(const CandidateIterator&) = delete;
    virtual ~CandidateIterator() = default;

    // The next item, null at the end. Files have been confirmed to be files: the host is asked once
    // for each whose listing did not say.
    virtual PathItemInfo* next(const SearchMode& mode) = 0;

    // Whether how deep an item lies has to be tested against the name searched for.
    virtual bool reachesDeep() const { return false; }

  protected:
    CandidateIterator() = default;
};

// Whether an item may be yielded. A file that the host has not yet confirmed is put to it; one that
// has become a directory is retired: unlinked, and its directory marked changed.
bool ConfirmCandidate(PathMgr& path, PathItemInfo& item);

// The list of the name record that a search of the scope goes through first.
NameCategory FirstPlaceOf(SearchScope scope);

// Whether there is a class of that name: a constructor then comes before the files of the path.
bool IsClassName(PathNameInfo& record);

// The lists of the name record, one category after another, each across the whole path.
class GeneralNameIterator final : public CandidateIterator {
  public:
    explicit GeneralNameIterator(const NameQuery& query);
    PathItemInfo* next(const SearchMode& mode) override;
    bool reachesDeep() const override { return true; }
    void startAfter(PathItemInfo& item) { cursor_.startAfter(item); }  // of the first list

  private:
    bool matches(const PathItemInfo& item) const;

    NameQuery query_;
    std::span<const NameCategory> remaining_;  // the one in use first
    NameCursor cursor_;
};

// Files of the name in class directories of the same name: constructors.
class ConstructorIterator final : public CandidateIterator {
  public:
    explicit ConstructorIterator(const NameQuery& query);
    PathItemInfo* next(const SearchMode& mode) override;

  private:
    bool matches(const PathItemInfo& item) const;

    NameQuery query_;
    NameCursor cursor_;
};

// What one directory holds under the name, list by list.
class DirectoryNameIterator final : public CandidateIterator {
  public:
    DirectoryNameIterator(const NameQuery& query, PathAllDirItemInfo& directory);
    PathItemInfo* next(const SearchMode& mode) override;

  private:
    NameQuery query_;
    uint8_t list_ = 0;
    ChildCursor cursor_;
};
